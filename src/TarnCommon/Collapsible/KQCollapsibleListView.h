#pragma once

#include <TarnCommon/KQCollapsibleView.h>

#include <QtCore/QList>
#include <QtCore/QString>

/*! \file KQCollapsibleListView.h
    \brief A list stacking collapsible views, sharing its height among them and remembering which were collapsed. */

class KQCollapsibleListView;
class KQCollapsibleListViewPrivate;

/*!
    Told when a KQCollapsibleListView takes part in a view's height
    animation, for example by a window that resizes together with the list.

    Implement it in a class that is also a QObject: the list holds its
    delegate through a guarded pointer and never owns it.
*/
class TARNCOMMON_EXPORT KQCollapsibleListViewDelegate
{
public:
    /*! Destroys the delegate; a list holding it simply stops calling it. */
    virtual ~KQCollapsibleListViewDelegate();

    /*!
        Sent when one of the views of \a list announces a height animation.
        \a fromHeight is the list's current height and \a toHeight the height
        it will have at the end (pixels, not clamped to its limits). The
        list's own entry, and those of the views sliding along, are already in
        \a animations; the delegate may append entries of its own.
    */
    virtual void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *list, double fromHeight,
                                                          double toHeight, KQViewAnimations &animations) = 0;
};

/*!
    Stacks collapsible views top to bottom at full width.

    The spare height (or the shortfall) goes to the resizable, expanded views
    in list order, each taking what its limits allow. When a view collapses
    or expands, the views below it and the list itself move along in the same
    animation. Under an autosave name the list remembers, in the user's
    settings (KQSettings::userDefaults()), the titles of the collapsed views.
    The list becomes the parent (and owner) and the delegate of every view it
    holds.

    Its height is brought between the sums of its visible views' limits when
    its frame is set with setFrame() (the minimum winning on a conflict),
    except while an animation runs. Laying out only places the views: the
    list never changes its own height for that. Layouts learn the limits from
    the size hints: minimumSizeHint() is the minimum, and while the maximum
    is finite the vertical size policy is QSizePolicy::Maximum with
    sizeHint() at it.

    \code
    auto *list = new KQCollapsibleListView(QRect(0, 0, 240, 400), panel);
    list->addCollapsableView(new KQCollapsibleView(tr("General"), general, true, false));
    list->addCollapsableView(new KQCollapsibleView(tr("Details"), details, true, true));
    list->setAutosaveName(QStringLiteral("InfoPanelSections")); // restores the saved state
    QScrollArea *area = ZLWrapVerticalScrollViewAroundView(list);
    \endcode
*/
class TARNCOMMON_EXPORT KQCollapsibleListView : public QWidget, public KQCollapsibleViewDelegate
{
    Q_OBJECT
    /*! The settings key under which the titles of the collapsed views are
        kept; null (the default) for no saving. */
    Q_PROPERTY(QString autosaveName READ autosaveName WRITE setAutosaveName NOTIFY autosaveNameChanged)
    /*! True while a view's height animation runs: the list then neither
        stacks its views nor holds its height within its limits. */
    Q_PROPERTY(bool isLayoutBlocked READ isLayoutBlocked NOTIFY layoutBlockedChanged)

public:
    /*! Makes an empty list of zero size, which takes the size of its first view. */
    explicit KQCollapsibleListView(QWidget *parent = nullptr);
    /*! Makes an empty list with geometry \a frame (a null rectangle gives a
        list of zero size, which takes the size of its first view). */
    explicit KQCollapsibleListView(const QRect &frame, QWidget *parent = nullptr);
    /*! Saves the collapsed views under the autosave name, then destroys the
        list with its views. */
    ~KQCollapsibleListView() override;

    /*! The settings key of the saved state, or a null string for none. */
    QString autosaveName() const;
    /*!
        Sets the settings key (used exactly as given) under which the titles
        of the collapsed views are kept, saved at application exit and when
        the list is destroyed. A new name loads its saved state into the
        views already added (see loadFromAutosaveName()) and emits
        autosaveNameChanged(); the same name again does nothing. The old
        name's state is not saved first. A null name stops saving, leaving
        what was stored in place.
    */
    void setAutosaveName(const QString &name);

    /*! The delegate, or nullptr when none is set or it was destroyed. */
    KQCollapsibleListViewDelegate *delegate() const;
    /*! Sets the delegate told about animations; not owned. It must also be a
        QObject, otherwise it is refused with a report. nullptr removes it. */
    void setDelegate(KQCollapsibleListViewDelegate *delegate);

    /*!
        Appends \a collapsableView at the bottom, becomes its parent and
        delegate (without changing whether it shows), fits its own height and
        stacks the views again. A null view is reported and ignored; a view
        already held is ignored. The saved state is not applied to a view
        added after the autosave name was set.
    */
    void addCollapsableView(KQCollapsibleView *collapsableView);
    /*! The views in display order, hidden ones included. A view destroyed
        elsewhere leaves the list at once. */
    QList<KQCollapsibleView *> collapsableViews() const;
    /*! The first view (hidden ones included) whose content is that very
        widget, or nullptr. */
    KQCollapsibleView *collapsableViewWithContentView(const QWidget *contentView) const;
    /*!
        Hides or shows \a view, then fits and stacks the list again. A hidden
        view takes no room and no part in the limits, but keeps its place and
        its saved state. A view not in the list is reported and nothing
        changes; asking for the current state does nothing.
    */
    void setHiddenForCollapsableView(bool hidden, KQCollapsibleView *view);

    /*!
        Sets the geometry to \a frame, its height brought within the limits
        (the minimum winning on a conflict) unless an animation runs, and
        stacks the views at once, shown or not. Qt holds back the resize
        events of hidden widgets, so a frame set with QWidget::setGeometry()
        or resize() is neither clamped nor, while the list is hidden, laid out
        until it shows or loads its saved state.
    */
    void setFrame(const QRect &frame);
    /*!
        Stacks the visible views from the top at full width; the spare height
        (or the shortfall) goes to the first resizable, expanded view as far
        as its limits allow, the rest to the next one. Does nothing while an
        animation runs or while the list has no width or height. Called on
        every resize. Reimplement to place widgets of a subclass; call this
        implementation first.
    */
    virtual void layoutSubviews();
    /*!
        Brings the list's height within its views' limits (the maximum winning
        on a conflict). A list of zero size takes its last view's size
        instead; an empty list of zero size is reported and left as it is.
    */
    void resizeToFitSubviews();
    /*!
        Collapses, without animation, exactly the views whose titles are saved
        under the autosave name, and expands the others; nothing saved expands
        them all. Does nothing without an autosave name. A damaged saved value
        is reported and only the titles it holds are used.
    */
    void loadFromAutosaveName();
    /*! Saves the titles of the collapsed views (hidden ones included, in list
        order) under the autosave name, and writes the settings out at once
        (a settings file that cannot be written is reported). Does nothing
        without an autosave name. */
    void saveToAutosaveName();
    /*!
        Stores the sums of the visible views' minHeight() and maxHeight()
        (pixels; 0 and 0 without a visible view) through whichever pointer is
        not null. An unlimited view makes the maximum the largest finite
        double, or infinity once summed with another. A maximum below the
        minimum is reported, the sums being stored all the same.
    */
    void getMinHeight(double *minHeight, double *maxHeight) const;

    /*! True while a view's height animation runs. The change back to false
        (see layoutBlockedChanged()) is the moment to size the list anew
        after a collapse. */
    bool isLayoutBlocked() const;
    /*! The widest size hint of its visible views, and the sum of their
        maxima while that is below QWIDGETSIZE_MAX, otherwise the sum of their
        heights (at least the sum of their minima). */
    QSize sizeHint() const override;
    /*! The widest minimum size hint of the visible views, and the sum of
        their minima. */
    QSize minimumSizeHint() const override;

    /*!
        Adds the list's part to the animation of \a view: the visible views
        below it slide by the change of height, and the list ends at the sum
        of the visible heights after the change. Then tells the list's
        delegate, and blocks the layout until the animation ends. Called by
        the view.
    */
    void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight, double toHeight,
                                              KQViewAnimations &animations) override;
    /*! Lifts the layout block when a view's animation has ended (the list is
        not stacked again then). Called by the view. */
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override;

public Q_SLOTS:
    /*! Saves the state under the autosave name; connected to
        QCoreApplication::aboutToQuit while the list has an autosave name. */
    void appWillTerminate();

Q_SIGNALS:
    /*! Emitted when the autosave name changes, with the new name. */
    void autosaveNameChanged(const QString &name);
    /*! Emitted when the layout block starts (true) or ends (false). */
    void layoutBlockedChanged(bool blocked);

protected:
    /*! Stacks the views for the new size (see layoutSubviews()). */
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class KQCollapsibleListViewPrivate;
    std::unique_ptr<KQCollapsibleListViewPrivate> const d;
};
