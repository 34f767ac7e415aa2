#pragma once

#include <TarnCommon/KQCollapsibleView.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <limits>

class KQCollapsibleListView;

// Told when the list takes part in a view's height animation, for example by
// a window that resizes together with the list. Must be a QObject as well.
class TARNCOMMON_EXPORT KQCollapsibleListViewDelegate
{
public:
    virtual ~KQCollapsibleListViewDelegate();

    // The list's own entry is already in animations; the delegate may append
    // entries of its own.
    virtual void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *list, double fromHeight,
                                                          double toHeight, KQViewAnimations &animations) = 0;
};

// Stacks collapsible views top to bottom at full width, shares the spare
// height among those that can grow, moves its views (and itself) along when
// one collapses or expands, and remembers under an autosave name which views
// were collapsed. The list is the delegate of every view it holds and
// becomes their parent.
//
// Its height is brought between the sums of its visible views' limits when
// its frame is set with setFrame() (the minimum winning on a conflict),
// except while an animation runs. Laying out only places the views: the
// list never changes its own height for that. Layouts learn the limits from
// the size hints: minimumSizeHint() is the minimum, and while the maximum is
// finite the vertical size policy is Maximum with sizeHint() at it.
class TARNCOMMON_EXPORT KQCollapsibleListView : public QWidget, public KQCollapsibleViewDelegate
{
    Q_OBJECT
    Q_PROPERTY(QString autosaveName READ autosaveName WRITE setAutosaveName NOTIFY autosaveNameChanged)
    Q_PROPERTY(bool isLayoutBlocked READ isLayoutBlocked NOTIFY layoutBlockedChanged)

public:
    // A list of zero size, which takes the size of its first view.
    explicit KQCollapsibleListView(QWidget *parent = nullptr);
    explicit KQCollapsibleListView(const QRect &frame, QWidget *parent = nullptr);
    // Saves the collapsed views under the autosave name.
    ~KQCollapsibleListView() override;

    // The settings key (exactly this name) under which the titles of the
    // collapsed views are kept. Setting a name loads the saved state into
    // the views already added; a null name stops saving at exit.
    QString autosaveName() const { return m_autosaveName; }
    void setAutosaveName(const QString &name);

    KQCollapsibleListViewDelegate *delegate() const;
    void setDelegate(KQCollapsibleListViewDelegate *delegate);

    // Appends a view at the bottom (a view already held is ignored), becomes
    // its parent and delegate, and fits and stacks again. The saved state is
    // not applied to a view added after the autosave name was set.
    void addCollapsableView(KQCollapsibleView *collapsableView);
    // The views in display order, hidden ones included.
    QList<KQCollapsibleView *> collapsableViews() const { return m_collapsableViews; }
    // The first view whose content is that very widget, or nullptr.
    KQCollapsibleView *collapsableViewWithContentView(const QWidget *contentView) const;
    // A hidden view takes no room and no part in the limits, but keeps its
    // place and its saved state.
    void setHiddenForCollapsableView(bool hidden, KQCollapsibleView *view);

    // Sets the geometry, its height clamped to the limits unless an
    // animation runs, and stacks the views at once, shown or not. Qt holds
    // back the resize events of hidden widgets, so a frame set with
    // QWidget::setGeometry() or resize() is neither clamped nor, while the
    // list is hidden, laid out until it shows or loads its saved state.
    void setFrame(const QRect &frame);
    // Stacks the visible views at full width; the spare height (or the
    // shortfall) goes to the resizable, expanded views in list order.
    void layoutSubviews();
    // Brings the list's height within its views' limits (the maximum winning
    // on a conflict); a list of zero size takes its last view's size.
    void resizeToFitSubviews();
    // Collapses exactly the views whose titles are saved, without animation.
    void loadFromAutosaveName();
    // Saves the titles of the collapsed views, hidden ones included.
    void saveToAutosaveName();
    // Sums of the visible views' limits; either pointer may be null.
    void getMinHeight(double *minHeight, double *maxHeight) const;

    // True while a view's height animation runs: the list neither stacks
    // its views nor holds its own height within the limits then. The change
    // back to false is the moment to size the list anew after a collapse.
    bool isLayoutBlocked() const { return m_blockSubviewLayout; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight, double toHeight,
                                              KQViewAnimations &animations) override;
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override;

public Q_SLOTS:
    void appWillTerminate();

Q_SIGNALS:
    void autosaveNameChanged(const QString &name);
    void layoutBlockedChanged(bool blocked);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void applyFrame(const QRect &frame);
    void limitsChanged();
    void setLayoutBlocked(bool blocked, const QObject *view);
    void forgetView(QObject *view);

    QList<KQCollapsibleView *> m_collapsableViews;
    QString m_autosaveName;
    QMetaObject::Connection m_terminateConnection;
    std::unique_ptr<KQGuardedDelegate<KQCollapsibleListViewDelegate>> m_delegate;
    bool m_blockSubviewLayout = false;
    bool m_widthChangedWhileBlocked = false;
    QSize m_laidOutSize; // the size the last stacking was made for
    // The limits the size hints last reported (none yet: not a number).
    double m_hintedMinHeight = std::numeric_limits<double>::quiet_NaN();
    double m_hintedMaxHeight = std::numeric_limits<double>::quiet_NaN();
    // The view whose animation blocks the layout: if it dies mid-animation
    // its end never comes, so the block is lifted then. Only compared, never
    // followed (it is cleared when that view is destroyed).
    const QObject *m_blockingView = nullptr;
};
