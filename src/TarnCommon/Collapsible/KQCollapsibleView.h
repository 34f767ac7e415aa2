#pragma once

#include <TarnCommon/KQViewAnimationEntry.h>
#include <TarnCommon/TarnCommonExport.h>

#include <QtWidgets/QWidget>

#include <memory>

/*! \file KQCollapsibleView.h
    \brief A content widget under a title header that collapses to the header, and its delegate. */

class KQCollapsibleView;
class KQCollapsibleViewPrivate;
class QVariantAnimation;

/*!
    Told about every height animation of a KQCollapsibleView.

    Implement it in a class that is also a QObject: the view holds its
    delegate through a guarded pointer, never owns it, and stops sending
    messages once the QObject is destroyed. A delegate that is not a QObject
    is refused with a report. KQCollapsibleListView is the usual delegate.
*/
class TARNCOMMON_EXPORT KQCollapsibleViewDelegate
{
public:
    /*! Destroys the delegate; a view holding it simply stops calling it. */
    virtual ~KQCollapsibleViewDelegate();

    /*!
        Sent before \a view builds an animation from \a fromHeight to
        \a toHeight (pixels), animated or not. The delegate may append entries
        to \a animations for other widgets that are to move in the same
        animation; the view's own entry is appended after them.
    */
    virtual void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight, double toHeight,
                                                      KQViewAnimations &animations) = 0;
    /*!
        Sent once the animation of \a view has ended and the view has laid
        itself out again; \a animations holds every entry the animation ran.
        Sent last, so the delegate may destroy the view here.
    */
    virtual void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) = 0;
};

/*!
    One content widget under an optional title header with a disclosure
    button.

    Clicking the button collapses the view to its HeaderHeight header, or
    expands it to show the content again, with an animation of
    AnimationDurationMs. The view reports its height limits (minHeight(),
    maxHeight()) so that a container, normally KQCollapsibleListView, can
    stack several views and share the spare height among them; the
    container hears of every height change through KQCollapsibleViewDelegate.

    \code
    auto *list = new KQCollapsibleListView(panel);
    list->addCollapsableView(new KQCollapsibleView(tr("Colours"), coloursWidget, true, false));
    list->addCollapsableView(new KQCollapsibleView(tr("Notes"), notesEditor, true, true));
    list->setAutosaveName(QStringLiteral("InspectorSections"));
    \endcode
*/
class TARNCOMMON_EXPORT KQCollapsibleView : public QWidget
{
    Q_OBJECT
    /*! The header's title; null for a view without header. A view made
        without header cannot be given one (see setTitle()). */
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    /*! Whether the content follows the view's height while expanded (the
        view may then shrink to its header and grow without end). */
    Q_PROPERTY(bool isHeightResizable READ isHeightResizable WRITE setIsHeightResizable NOTIFY isHeightResizableChanged)
    /*! Whether a one-pixel separator is drawn along the top edge; false by
        default. A list sets it on every view but the first. */
    Q_PROPERTY(bool drawTopLine READ drawTopLine WRITE setDrawTopLine NOTIFY drawTopLineChanged)
    /*! Whether the view is collapsed, from the moment a collapse starts;
        false after construction. Changed with setCollapsed(). */
    Q_PROPERTY(bool isCollapsed READ isCollapsed NOTIFY isCollapsedChanged)
    /*! The smallest height a container may give the view, in pixels.
        Computed from the height and the state whenever asked: no change signal. */
    Q_PROPERTY(double minHeight READ minHeight)
    /*! The largest height a container may give the view, in pixels.
        Computed from the height and the state whenever asked: no change signal. */
    Q_PROPERTY(double maxHeight READ maxHeight)

public:
    /*! The height in pixels of the header band, of the button's side and of a
        collapsed view; also the minimum height of a resizable view. */
    static constexpr double HeaderHeight = 18.0;
    /*! The length of an animated collapse or expansion, in milliseconds. */
    static constexpr int AnimationDurationMs = 200;

    /*!
        Makes a view holding \a contentView under a header titled \a title.

        A null \a title makes a view without header (no button, no title, the
        content at the top). The view takes the content's size plus the
        header, and becomes the content's parent (and so its owner) without
        changing whether it shows; \a contentView may be null. A view that is
        not \a collapsable shows no button and refuses to collapse.
        \a heightResizable sets isHeightResizable.
    */
    KQCollapsibleView(const QString &title, QWidget *contentView, bool collapsable, bool heightResizable,
                      QWidget *parent = nullptr);
    /*!
        A collapsible view with an empty title and no content, not
        height-resizable: the form Qt Designer and uic make, to be given its
        title with setTitle() (the "title" property of a form).
    */
    explicit KQCollapsibleView(QWidget *parent = nullptr);
    /*!
        Not a valid way to make the view: reports "Invalid initializer method
        called" and leaves an empty view of geometry \a frame without header
        or content.
    */
    explicit KQCollapsibleView(const QRect &frame, QWidget *parent = nullptr);
    /*! Destroys the view and its children; a running animation stops where it
        is, without telling the delegate. */
    ~KQCollapsibleView() override;

    /*! The delegate, or nullptr when none is set or it was destroyed. */
    KQCollapsibleViewDelegate *delegate() const;
    /*! Sets the delegate told about height animations; not owned. It must
        also be a QObject, otherwise it is refused with a report and the view
        has no delegate. nullptr removes the delegate. */
    void setDelegate(KQCollapsibleViewDelegate *delegate);

    /*! The header's title, or a null string for a view without header. */
    QString title() const;
    /*! Shows \a title in the header (a null string is taken as empty) and
        names the disclosure button after it; emits titleChanged() when it
        changes. A view made without header has no place for a title: the
        call is refused with an assertion report. */
    void setTitle(const QString &title);
    /*! The content widget, or nullptr when there is none or it was destroyed. */
    QWidget *contentView() const;
    /*! Whether the view may collapse, as given at construction. */
    bool canCollapse() const;

    /*! Whether the content follows the view's height while expanded. */
    bool isHeightResizable() const;
    /*! Sets isHeightResizable; on a change, lays the view out again and emits
        isHeightResizableChanged(). */
    void setIsHeightResizable(bool resizable);
    /*! Whether a separator is drawn along the top edge. */
    bool drawTopLine() const;
    /*! Sets drawTopLine and repaints; emits drawTopLineChanged() on a change. */
    void setDrawTopLine(bool draw);
    /*! Whether the view is collapsed, or collapsing. */
    bool isCollapsed() const;
    /*! True while a height animation runs, until it has ended. */
    bool isAnimating() const;

    /*!
        The smallest height a container may give the view: HeaderHeight for a
        resizable view, otherwise its current height.

        Reimplement (with maxHeight()) to narrow the limits, for example to
        give a resizable view a finite maximum: a list stacking it then passes
        the spare height it cannot take on to the next resizable view.
    */
    virtual double minHeight() const;
    /*!
        The largest height a container may give the view: the largest finite
        double (not infinity) for a resizable, expanded view, otherwise its
        current height. See minHeight() on reimplementing it.
    */
    virtual double maxHeight() const;

    /*!
        Collapses the view to its header, or expands it back to its content's
        height. The state (and with it the limits and the layout) changes at
        once and isCollapsedChanged() is emitted; the height follows through an
        animation, of 0 ms when \a animate is false, which still tells the
        delegate both messages. Asking for the current state does nothing;
        collapsing a view that cannot collapse is reported and changes nothing.
    */
    void setCollapsed(bool collapsed, bool animate);
    /*!
        Animates the view's height to \a height pixels (0 ms when \a animate is
        false), the top edge staying put; the delegate may add widgets to the
        animation. A running animation is first taken to its end. A change
        below the single-precision epsilon does nothing at all.
    */
    void setHeight(double height, bool animate);
    /*!
        Places the button, the title and the content. The content spans the
        full width below the header; a resizable content follows the view's
        height only while expanded and idle, otherwise it keeps its height.
        Called on every resize. Reimplement to place widgets of a subclass;
        call this implementation first.
    */
    virtual void layoutSubviews();
    /*!
        Sets the geometry to \a frame and lays the view out at once, shown or
        not. Qt holds back the resize events of hidden widgets, so a frame set
        with QWidget::setGeometry() or resize() while the view is hidden is
        laid out only when it shows, or before the view next collapses.
    */
    void setFrame(const QRect &frame);

    /*! The running height animation, or nullptr. Owned by the view, and
        deleted when it stops; lets callers drive or observe it. */
    QVariantAnimation *currentAnimation() const;

    /*! The width of the header's button and title or of the content's size
        hint, whichever is wider; the height of the header plus, unless
        collapsed, the content's height (its size hint's height when the view
        is height-resizable). While animating, the height reached so far, so
        a layout holding the view follows the animation. The vertical size
        policy is QSizePolicy::Expanding for an expanded resizable view and
        QSizePolicy::Fixed otherwise. */
    QSize sizeHint() const override;
    /*! The button's width (the title elides) or the content's minimum width;
        the header's height for an expanded resizable view, otherwise the
        height of sizeHint(). */
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /*! Collapses an expanded view or expands a collapsed one, animated: the
        button's action. */
    void toggleCollapsed();

Q_SIGNALS:
    /*! Emitted when the title changes, with the new one. */
    void titleChanged(const QString &title);
    /*! Emitted when isHeightResizable changes, with the new value. */
    void isHeightResizableChanged(bool resizable);
    /*! Emitted when drawTopLine changes, with the new value. */
    void drawTopLineChanged(bool draw);
    /*! Emitted when a collapse or expansion starts, before its animation,
        with the new state. */
    void isCollapsedChanged(bool collapsed);

protected:
    /*! Draws the header band, the separator along the top when drawTopLine is
        set, and the line under the header (absent once collapsed). */
    void paintEvent(QPaintEvent *event) override;
    /*! Lays the view out for its new size. */
    void resizeEvent(QResizeEvent *event) override;
    /*! Describes the button in the application's new language. */
    void changeEvent(QEvent *event) override;

private:
    friend class KQCollapsibleViewPrivate;
    std::unique_ptr<KQCollapsibleViewPrivate> const d;
};
