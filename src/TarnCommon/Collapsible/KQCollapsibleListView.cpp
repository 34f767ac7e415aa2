#include <TarnCommon/KQCollapsibleListView.h>

#include "KQCollapsibleStacking_p.h"
#include "KQGuardedDelegate_p.h"
#include "KQWidgetState_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQSettings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QResizeEvent>

#include <cmath>
#include <limits>

using namespace KQCollapsibleStacking;

namespace {

QList<KQStackItem> stackItems(const QList<KQCollapsibleView *> &views)
{
    QList<KQStackItem> items;
    items.reserve(views.size());
    for (const KQCollapsibleView *view : views) {
        items.append({QRectF(view->geometry()), view->minHeight(), view->maxHeight(), kq_isExplicitlyHidden(view),
                      view->isHeightResizable(), view->isCollapsed()});
    }
    return items;
}

// Widget heights are whole pixels up to QWIDGETSIZE_MAX; "unlimited" (the
// largest double, or infinity from summing two of them) is that maximum.
int widgetHeight(double height)
{
    if (!(height < double(QWIDGETSIZE_MAX)))
        return QWIDGETSIZE_MAX;
    return height > 0.0 ? int(std::lround(height)) : 0;
}

} // namespace

class KQCollapsibleListViewPrivate
{
public:
    explicit KQCollapsibleListViewPrivate(KQCollapsibleListView *q)
        : q(q)
    {
    }

    void applyFrame(const QRect &frame);
    void limitsChanged();
    void setLayoutBlocked(bool blocked, const QObject *view);
    void forgetView(QObject *view);
    int widestView(bool minimum) const;

    KQCollapsibleListView *const q;
    QList<KQCollapsibleView *> collapsableViews;
    QString autosaveName;
    QMetaObject::Connection terminateConnection;
    KQGuardedDelegate<KQCollapsibleListViewDelegate> delegate;
    bool layoutBlocked = false;
    bool widthChangedWhileBlocked = false;
    bool viewLeftWhileBlocked = false; // the running animation's end frames still count it
    QSize laidOutSize; // the size the last stacking was made for
    // The limits the size hints last reported (none yet: not a number).
    double hintedMinHeight = std::numeric_limits<double>::quiet_NaN();
    double hintedMaxHeight = std::numeric_limits<double>::quiet_NaN();
    // The view whose animation blocks the layout: if it dies mid-animation
    // its end never comes, so the block is lifted then. Only compared, never
    // followed (it is cleared when that view is destroyed).
    const QObject *blockingView = nullptr;
};

KQCollapsibleListViewDelegate::~KQCollapsibleListViewDelegate() = default;

KQCollapsibleListView::KQCollapsibleListView(QWidget *parent)
    : KQCollapsibleListView(QRect(), parent)
{
}

KQCollapsibleListView::KQCollapsibleListView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQCollapsibleListViewPrivate>(this))
{
    d->applyFrame(frame);
}

KQCollapsibleListView::~KQCollapsibleListView()
{
    saveToAutosaveName();
    disconnect(d->terminateConnection);
    // The views die with this widget after this destructor has run; their
    // last signals must not reach the half-destroyed list.
    for (KQCollapsibleView *view : std::as_const(d->collapsableViews))
        view->disconnect(this);
}

QString KQCollapsibleListView::autosaveName() const
{
    return d->autosaveName;
}

void KQCollapsibleListView::setAutosaveName(const QString &name)
{
    if (name == d->autosaveName && name.isNull() == d->autosaveName.isNull())
        return;
    if (!name.isNull() && d->autosaveName.isNull() && QCoreApplication::instance()) {
        d->terminateConnection = connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                                         &KQCollapsibleListView::appWillTerminate);
    }
    if (name.isNull() && !d->autosaveName.isNull())
        disconnect(d->terminateConnection);
    d->autosaveName = name;
    Q_EMIT autosaveNameChanged(name);
    loadFromAutosaveName();
}

KQCollapsibleListViewDelegate *KQCollapsibleListView::delegate() const
{
    return d->delegate.get();
}

void KQCollapsibleListView::setDelegate(KQCollapsibleListViewDelegate *delegate)
{
    d->delegate.set(delegate);
}

void KQCollapsibleListView::addCollapsableView(KQCollapsibleView *collapsableView)
{
    KQAssertText("collapsableView", collapsableView != nullptr);
    if (d->collapsableViews.contains(collapsableView))
        return;
    collapsableView->setDelegate(this);
    d->collapsableViews.append(collapsableView);
    kq_adoptWidget(this, collapsableView);
    connect(collapsableView, &QObject::destroyed, this, [this](QObject *view) { d->forgetView(view); });
    connect(collapsableView, &KQCollapsibleView::isHeightResizableChanged, this, [this] { d->limitsChanged(); });
    resizeToFitSubviews();
    layoutSubviews();
}

QList<KQCollapsibleView *> KQCollapsibleListView::collapsableViews() const
{
    return d->collapsableViews;
}

KQCollapsibleView *KQCollapsibleListView::collapsableViewWithContentView(const QWidget *contentView) const
{
    for (KQCollapsibleView *view : d->collapsableViews) {
        if (view->contentView() == contentView)
            return view;
    }
    return nullptr;
}

void KQCollapsibleListView::setHiddenForCollapsableView(bool hidden, KQCollapsibleView *view)
{
    KQAssertText("view && [_collapsableViews containsObject:view]", view && d->collapsableViews.contains(view));
    if (kq_isExplicitlyHidden(view) == hidden)
        return;
    view->setHidden(hidden);
    resizeToFitSubviews();
    layoutSubviews();
}

void KQCollapsibleListView::setFrame(const QRect &frame)
{
    QRect clamped = frame;
    if (!d->layoutBlocked) {
        KQHeightLimits limits;
        getMinHeight(&limits.minHeight, &limits.maxHeight);
        // The minimum wins a conflict.
        const double height = std::max(limits.minHeight, std::min(double(frame.height()), limits.maxHeight));
        clamped.setHeight(widgetHeight(height));
    }
    d->applyFrame(clamped);
}

void KQCollapsibleListViewPrivate::applyFrame(const QRect &frame)
{
    q->setGeometry(frame);
    q->layoutSubviews();
}

void KQCollapsibleListView::layoutSubviews()
{
    if (d->layoutBlocked)
        return;
    d->laidOutSize = size();
    const std::optional<QList<QRectF>> frames = stackFrames(stackItems(d->collapsableViews), width(), height());
    if (!frames)
        return;
    bool first = true;
    for (qsizetype i = 0; i < d->collapsableViews.size(); ++i) {
        KQCollapsibleView *view = d->collapsableViews.at(i);
        if (kq_isExplicitlyHidden(view))
            continue;
        view->setFrame(frames->at(i).toRect());
        view->setDrawTopLine(!first);
        first = false;
    }
    d->limitsChanged();
}

void KQCollapsibleListView::resizeToFitSubviews()
{
    const QSize size = this->size();
    if (size.width() == 0 && size.height() == 0) {
        KQAssertText("[_collapsableViews count] > 0", !d->collapsableViews.isEmpty());
        d->applyFrame(QRect(pos(), d->collapsableViews.last()->size()));
        return;
    }
    KQHeightLimits limits;
    getMinHeight(&limits.minHeight, &limits.maxHeight);
    const double fitted = fittedListHeight(size.height(), limits);
    d->limitsChanged();
    if (!(fitted > 0.0))
        return;
    const QSize fittedSize(size.width(), widgetHeight(fitted));
    // Fitting sets the size only: no clamp, so here the maximum wins.
    if (fittedSize != this->size())
        d->applyFrame(QRect(pos(), fittedSize));
}

void KQCollapsibleListView::getMinHeight(double *minHeight, double *maxHeight) const
{
    const KQHeightLimits limits = listHeightLimits(stackItems(d->collapsableViews));
    if (minHeight)
        *minHeight = limits.minHeight;
    if (maxHeight)
        *maxHeight = limits.maxHeight;
    KQAssertText("minHeight <= maxHeight", limits.minHeight <= limits.maxHeight);
}

void KQCollapsibleListViewPrivate::limitsChanged()
{
    // Only hints: Qt applies a minimum or maximum height at once, and the
    // list must not resize itself behind its owner's back.
    const KQHeightLimits limits = listHeightLimits(stackItems(collapsableViews));
    // Told only when the limits move: stacking alone changes the hinted
    // height too, and a layout asked again after every stacking would feed
    // the list's own height back into it.
    if (hintedMinHeight == limits.minHeight && hintedMaxHeight == limits.maxHeight)
        return;
    hintedMinHeight = limits.minHeight;
    hintedMaxHeight = limits.maxHeight;
    const QSizePolicy::Policy vertical =
        limits.maxHeight < double(QWIDGETSIZE_MAX) ? QSizePolicy::Maximum : QSizePolicy::Preferred;
    if (q->sizePolicy().verticalPolicy() != vertical) {
        QSizePolicy policy = q->sizePolicy();
        policy.setVerticalPolicy(vertical);
        q->setSizePolicy(policy); // updates the geometry too
    } else {
        q->updateGeometry();
    }
}

void KQCollapsibleListView::loadFromAutosaveName()
{
    if (d->autosaveName.isNull())
        return;
    // A frame set while hidden has had no resize event: the views must
    // stand where the frame puts them before they collapse or expand.
    if (size() != d->laidOutSize)
        layoutSubviews();
    bool damaged = false;
    const QStringList titles = storedTitles(KQSettings::userDefaults()->value(d->autosaveName), &damaged);
    if (damaged)
        ZLLogWarning("The saved state under \"%s\" is not a list of titles; only its titles are used",
                     qUtf8Printable(d->autosaveName));
    // Guarded copies: a delegate told about one view's animation may destroy
    // another view of the list.
    QList<QPointer<KQCollapsibleView>> views;
    views.reserve(d->collapsableViews.size());
    for (KQCollapsibleView *view : std::as_const(d->collapsableViews))
        views.append(view);
    for (const QPointer<KQCollapsibleView> &view : std::as_const(views)) {
        if (!view)
            continue;
        const QString title = view->title();
        view->setCollapsed(!title.isNull() && titles.contains(title), false);
    }
}

void KQCollapsibleListView::saveToAutosaveName()
{
    if (d->autosaveName.isNull())
        return;
    QList<std::pair<QString, bool>> states;
    states.reserve(d->collapsableViews.size());
    for (const KQCollapsibleView *view : std::as_const(d->collapsableViews))
        states.append({view->title(), view->isCollapsed()});
    const std::unique_ptr<QSettings> settings = KQSettings::userDefaults();
    settings->setValue(d->autosaveName, collapsedTitlesToSave(states));
    settings->sync();
    if (settings->status() != QSettings::NoError)
        ZLLogWarning("The state under \"%s\" could not be saved to %s", qUtf8Printable(d->autosaveName),
                     qUtf8Printable(settings->fileName()));
}

void KQCollapsibleListView::appWillTerminate()
{
    saveToAutosaveName();
}

bool KQCollapsibleListView::isLayoutBlocked() const
{
    return d->layoutBlocked;
}

int KQCollapsibleListViewPrivate::widestView(bool minimum) const
{
    // The views stand at full width: the list is as wide as the widest asks.
    int widest = 0;
    for (const KQCollapsibleView *view : collapsableViews) {
        if (!kq_isExplicitlyHidden(view))
            widest = std::max(widest, minimum ? view->minimumSizeHint().width() : view->sizeHint().width());
    }
    return widest;
}

QSize KQCollapsibleListView::sizeHint() const
{
    const KQHeightLimits limits = listHeightLimits(stackItems(d->collapsableViews));
    if (limits.maxHeight < double(QWIDGETSIZE_MAX))
        return QSize(d->widestView(false), widgetHeight(limits.maxHeight));
    double height = 0.0;
    for (const KQCollapsibleView *view : d->collapsableViews) {
        if (!kq_isExplicitlyHidden(view))
            height += view->height();
    }
    return QSize(d->widestView(false), widgetHeight(std::max(height, limits.minHeight)));
}

QSize KQCollapsibleListView::minimumSizeHint() const
{
    return QSize(d->widestView(true), widgetHeight(listHeightLimits(stackItems(d->collapsableViews)).minHeight));
}

void KQCollapsibleListView::collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight,
                                                                 double toHeight, KQViewAnimations &animations)
{
    const KQAnimationPlan plan = animationPlan(stackItems(d->collapsableViews), d->collapsableViews.indexOf(view),
                                               fromHeight, toHeight);
    for (const auto &[index, endFrame] : plan.moves)
        animations.append({d->collapsableViews.at(index), endFrame});
    QRectF listFrame(geometry());
    listFrame.setHeight(plan.listHeight);
    animations.append({this, listFrame});

    const qsizetype viewCount = d->collapsableViews.size();
    if (KQCollapsibleListViewDelegate *delegate = d->delegate.get()) {
        // The delegate may destroy the list or the view: no animation then.
        const QPointer<KQCollapsibleListView> self(this);
        const QPointer<KQCollapsibleView> animated(view);
        delegate->collapsableListViewWillAnimateFromHeight(this, height(), plan.listHeight, animations);
        if (!self || !animated)
            return;
    }
    d->setLayoutBlocked(true, view);
    // Another view went in the delegate's hands: the plan still counts it.
    if (d->collapsableViews.size() != viewCount)
        d->viewLeftWhileBlocked = true;
}

void KQCollapsibleListView::collapsableViewFinishedAnimations(KQCollapsibleView *, const KQViewAnimations &)
{
    d->setLayoutBlocked(false, nullptr);
}

void KQCollapsibleListViewPrivate::setLayoutBlocked(bool blocked, const QObject *view)
{
    const bool changed = blocked != layoutBlocked;
    layoutBlocked = blocked;
    blockingView = view;
    if (!blocked)
        limitsChanged();
    // The animations keep every width, so a new width came from outside
    // (a scroll area following its viewport) and its layout was skipped.
    if (!blocked && (widthChangedWhileBlocked || viewLeftWhileBlocked)) {
        widthChangedWhileBlocked = false;
        viewLeftWhileBlocked = false;
        q->layoutSubviews();
    }
    if (changed)
        Q_EMIT q->layoutBlockedChanged(blocked);
}

void KQCollapsibleListView::resizeEvent(QResizeEvent *event)
{
    if (d->layoutBlocked && event->oldSize().width() != width())
        d->widthChangedWhileBlocked = true;
    layoutSubviews();
}

void KQCollapsibleListViewPrivate::forgetView(QObject *view)
{
    collapsableViews.removeIf([view](KQCollapsibleView *held) { return static_cast<QObject *>(held) == view; });
    // The survivors close the gap it leaves, now or once the running
    // animation ends.
    if (layoutBlocked && blockingView != view) {
        viewLeftWhileBlocked = true;
        limitsChanged();
        return;
    }
    if (layoutBlocked)
        q->collapsableViewFinishedAnimations(nullptr, {});
    if (!layoutBlocked)
        q->layoutSubviews();
}
