#include <TarnCommon/KQCollapsibleListView.h>

#include "KQCollapsibleStacking_p.h"
#include "KQGuardedDelegate_p.h"
#include "KQWidgetState_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQSettings.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QResizeEvent>

#include <cmath>

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

KQCollapsibleListViewDelegate::~KQCollapsibleListViewDelegate() = default;

KQCollapsibleListView::KQCollapsibleListView(QWidget *parent)
    : KQCollapsibleListView(QRect(), parent)
{
}

KQCollapsibleListView::KQCollapsibleListView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , m_delegate(std::make_unique<KQGuardedDelegate<KQCollapsibleListViewDelegate>>())
{
    applyFrame(frame);
}

KQCollapsibleListView::~KQCollapsibleListView()
{
    saveToAutosaveName();
    disconnect(m_terminateConnection);
    // The views die with this widget after this destructor has run; their
    // last signals must not reach the half-destroyed list.
    for (KQCollapsibleView *view : std::as_const(m_collapsableViews))
        view->disconnect(this);
}

void KQCollapsibleListView::setAutosaveName(const QString &name)
{
    if (name == m_autosaveName && name.isNull() == m_autosaveName.isNull())
        return;
    if (!name.isNull() && m_autosaveName.isNull() && QCoreApplication::instance()) {
        m_terminateConnection = connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                                        &KQCollapsibleListView::appWillTerminate);
    }
    if (name.isNull() && !m_autosaveName.isNull())
        disconnect(m_terminateConnection);
    m_autosaveName = name;
    Q_EMIT autosaveNameChanged(name);
    loadFromAutosaveName();
}

KQCollapsibleListViewDelegate *KQCollapsibleListView::delegate() const
{
    return m_delegate->get();
}

void KQCollapsibleListView::setDelegate(KQCollapsibleListViewDelegate *delegate)
{
    m_delegate->set(delegate);
}

void KQCollapsibleListView::addCollapsableView(KQCollapsibleView *collapsableView)
{
    KQAssertText("collapsableView", collapsableView != nullptr);
    if (m_collapsableViews.contains(collapsableView))
        return;
    collapsableView->setDelegate(this);
    m_collapsableViews.append(collapsableView);
    kq_adoptWidget(this, collapsableView);
    connect(collapsableView, &QObject::destroyed, this, &KQCollapsibleListView::forgetView);
    connect(collapsableView, &KQCollapsibleView::isHeightResizableChanged, this,
            &KQCollapsibleListView::limitsChanged);
    resizeToFitSubviews();
    layoutSubviews();
}

KQCollapsibleView *KQCollapsibleListView::collapsableViewWithContentView(const QWidget *contentView) const
{
    for (KQCollapsibleView *view : m_collapsableViews) {
        if (view->contentView() == contentView)
            return view;
    }
    return nullptr;
}

void KQCollapsibleListView::setHiddenForCollapsableView(bool hidden, KQCollapsibleView *view)
{
    KQAssertText("view && [_collapsableViews containsObject:view]", view && m_collapsableViews.contains(view));
    if (kq_isExplicitlyHidden(view) == hidden)
        return;
    view->setHidden(hidden);
    resizeToFitSubviews();
    layoutSubviews();
}

void KQCollapsibleListView::setFrame(const QRect &frame)
{
    QRect clamped = frame;
    if (!m_blockSubviewLayout) {
        KQHeightLimits limits;
        getMinHeight(&limits.minHeight, &limits.maxHeight);
        // The minimum wins a conflict.
        const double height = std::max(limits.minHeight, std::min(double(frame.height()), limits.maxHeight));
        clamped.setHeight(widgetHeight(height));
    }
    applyFrame(clamped);
}

void KQCollapsibleListView::applyFrame(const QRect &frame)
{
    setGeometry(frame);
    layoutSubviews();
}

void KQCollapsibleListView::layoutSubviews()
{
    if (m_blockSubviewLayout)
        return;
    m_laidOutSize = size();
    const std::optional<QList<QRectF>> frames = stackFrames(stackItems(m_collapsableViews), width(), height());
    if (!frames)
        return;
    bool first = true;
    for (qsizetype i = 0; i < m_collapsableViews.size(); ++i) {
        KQCollapsibleView *view = m_collapsableViews.at(i);
        if (kq_isExplicitlyHidden(view))
            continue;
        view->setFrame(frames->at(i).toRect());
        view->setDrawTopLine(!first);
        first = false;
    }
    limitsChanged();
}

void KQCollapsibleListView::resizeToFitSubviews()
{
    const QSize size = this->size();
    if (size.width() == 0 && size.height() == 0) {
        KQAssertText("[_collapsableViews count] > 0", !m_collapsableViews.isEmpty());
        applyFrame(QRect(pos(), m_collapsableViews.last()->size()));
        return;
    }
    KQHeightLimits limits;
    getMinHeight(&limits.minHeight, &limits.maxHeight);
    const double fitted = fittedListHeight(size.height(), limits);
    limitsChanged();
    if (!(fitted > 0.0))
        return;
    const QSize fittedSize(size.width(), widgetHeight(fitted));
    // Fitting sets the size only: no clamp, so here the maximum wins.
    if (fittedSize != this->size())
        applyFrame(QRect(pos(), fittedSize));
}

void KQCollapsibleListView::getMinHeight(double *minHeight, double *maxHeight) const
{
    const KQHeightLimits limits = listHeightLimits(stackItems(m_collapsableViews));
    if (minHeight)
        *minHeight = limits.minHeight;
    if (maxHeight)
        *maxHeight = limits.maxHeight;
    KQAssertText("minHeight <= maxHeight", limits.minHeight <= limits.maxHeight);
}

void KQCollapsibleListView::limitsChanged()
{
    // Only hints: Qt applies a minimum or maximum height at once, and the
    // list must not resize itself behind its owner's back.
    const KQHeightLimits limits = listHeightLimits(stackItems(m_collapsableViews));
    // Told only when the limits move: stacking alone changes the hinted
    // height too, and a layout asked again after every stacking would feed
    // the list's own height back into it.
    if (m_hintedMinHeight == limits.minHeight && m_hintedMaxHeight == limits.maxHeight)
        return;
    m_hintedMinHeight = limits.minHeight;
    m_hintedMaxHeight = limits.maxHeight;
    const QSizePolicy::Policy vertical =
        limits.maxHeight < double(QWIDGETSIZE_MAX) ? QSizePolicy::Maximum : QSizePolicy::Preferred;
    if (sizePolicy().verticalPolicy() != vertical) {
        QSizePolicy policy = sizePolicy();
        policy.setVerticalPolicy(vertical);
        setSizePolicy(policy); // updates the geometry too
    } else {
        updateGeometry();
    }
}

void KQCollapsibleListView::loadFromAutosaveName()
{
    if (m_autosaveName.isNull())
        return;
    // A frame set while hidden has had no resize event: the views must
    // stand where the frame puts them before they collapse or expand.
    if (size() != m_laidOutSize)
        layoutSubviews();
    bool damaged = false;
    const QStringList titles = storedTitles(KQSettings::userDefaults()->value(m_autosaveName), &damaged);
    if (damaged)
        ZLLogWarning("The saved state under \"%s\" is not a list of titles; only its titles are used",
                     qUtf8Printable(m_autosaveName));
    // Guarded copies: a delegate told about one view's animation may destroy
    // another view of the list.
    QList<QPointer<KQCollapsibleView>> views;
    views.reserve(m_collapsableViews.size());
    for (KQCollapsibleView *view : std::as_const(m_collapsableViews))
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
    if (m_autosaveName.isNull())
        return;
    QList<std::pair<QString, bool>> states;
    states.reserve(m_collapsableViews.size());
    for (const KQCollapsibleView *view : std::as_const(m_collapsableViews))
        states.append({view->title(), view->isCollapsed()});
    const std::unique_ptr<QSettings> settings = KQSettings::userDefaults();
    settings->setValue(m_autosaveName, collapsedTitlesToSave(states));
    settings->sync();
}

void KQCollapsibleListView::appWillTerminate()
{
    saveToAutosaveName();
}

QSize KQCollapsibleListView::sizeHint() const
{
    const KQHeightLimits limits = listHeightLimits(stackItems(m_collapsableViews));
    if (limits.maxHeight < double(QWIDGETSIZE_MAX))
        return QSize(width(), widgetHeight(limits.maxHeight));
    double height = 0.0;
    for (const KQCollapsibleView *view : m_collapsableViews) {
        if (!kq_isExplicitlyHidden(view))
            height += view->height();
    }
    return QSize(width(), widgetHeight(std::max(height, limits.minHeight)));
}

QSize KQCollapsibleListView::minimumSizeHint() const
{
    return QSize(0, widgetHeight(listHeightLimits(stackItems(m_collapsableViews)).minHeight));
}

void KQCollapsibleListView::collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight,
                                                                 double toHeight, KQViewAnimations &animations)
{
    const KQAnimationPlan plan =
        animationPlan(stackItems(m_collapsableViews), m_collapsableViews.indexOf(view), fromHeight, toHeight);
    for (const auto &[index, endFrame] : plan.moves)
        animations.append({m_collapsableViews.at(index), endFrame});
    QRectF listFrame(geometry());
    listFrame.setHeight(plan.listHeight);
    animations.append({this, listFrame});

    if (KQCollapsibleListViewDelegate *delegate = m_delegate->get())
        delegate->collapsableListViewWillAnimateFromHeight(this, height(), plan.listHeight, animations);
    setLayoutBlocked(true, view);
}

void KQCollapsibleListView::collapsableViewFinishedAnimations(KQCollapsibleView *, const KQViewAnimations &)
{
    setLayoutBlocked(false, nullptr);
}

void KQCollapsibleListView::setLayoutBlocked(bool blocked, const QObject *view)
{
    const bool changed = blocked != m_blockSubviewLayout;
    m_blockSubviewLayout = blocked;
    m_blockingView = view;
    if (!blocked)
        limitsChanged();
    // The animations keep every width, so a new width came from outside
    // (a scroll area following its viewport) and its layout was skipped.
    if (!blocked && m_widthChangedWhileBlocked) {
        m_widthChangedWhileBlocked = false;
        layoutSubviews();
    }
    if (changed)
        Q_EMIT layoutBlockedChanged(blocked);
}

void KQCollapsibleListView::resizeEvent(QResizeEvent *event)
{
    if (m_blockSubviewLayout && event->oldSize().width() != width())
        m_widthChangedWhileBlocked = true;
    layoutSubviews();
}

void KQCollapsibleListView::forgetView(QObject *view)
{
    m_collapsableViews.removeIf([view](KQCollapsibleView *held) { return static_cast<QObject *>(held) == view; });
    if (m_blockSubviewLayout && m_blockingView == view)
        collapsableViewFinishedAnimations(nullptr, {});
    else
        limitsChanged();
}
