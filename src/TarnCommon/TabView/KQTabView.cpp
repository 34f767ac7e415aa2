#include <TarnCommon/KQTabView.h>

#include "KQAccessibleWidget_p.h"
#include "KQTabBarGeometry_p.h"
#include "KQTabView_p.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQTab.h>

#include <QtGui/QAccessible>
#include <QtGui/QImage>
#include <QtGui/QKeyEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFocusRect>

#include <cmath>

static_assert(KQTabView::kTabBarHeight == KQTabBar::kBarHeight, "one bar height for the widget and its geometry");

KQTabViewDelegate::~KQTabViewDelegate() = default;

QSizeF KQTabView::frameSizeForTabViewSize(const QSizeF &size) const
{
    return QSizeF(size.width(), size.height() + kTabBarHeight);
}

KQTabViewPrivate::KQTabViewPrivate(KQTabView *q)
    : q(q)
{
}

KQTabView::KQTabView(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQTabViewPrivate>(this))
{
    d->init();
}

KQTabView::KQTabView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQTabViewPrivate>(this))
{
    d->init();
    setGeometry(frame);
}

KQTabView::KQTabView(const QList<KQTab *> &tabs, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQTabViewPrivate>(this))
{
    d->init();
    QSizeF largest(0, 0);
    for (KQTab *tab : tabs) {
        const QWidget *view = tab ? tab->view() : nullptr;
        if (!view)
            continue;
        largest.setWidth(std::max(largest.width(), double(view->width())));
        largest.setHeight(std::max(largest.height(), double(view->height())));
    }
    // A constructor reaches only this class's rule; a subclass's follows at
    // the first polish.
    const QSizeF frame = KQTabView::frameSizeForTabViewSize(largest);
    setGeometry(QRect(0, 0, int(std::ceil(frame.width())), int(std::ceil(frame.height()))));
    d->initialContentSize = largest;
    d->constructedSize = size();
    setTabs(tabs);
}

void KQTabViewPrivate::init()
{
    // Like a tab widget: grows with its container, reached with Tab only, so
    // a click on the bar leaves the focus in the content.
    q->setSizePolicy(QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding, QSizePolicy::TabWidget));
    q->setFocusPolicy(Qt::TabFocus);
    QObject::connect(q, &KQTabView::tabsChanged, tabWatcher.get(), [this] { q->updateGeometry(); });
    // Before Qt makes an interface for this widget, so ours is the one it keeps.
    if (KQAccessibility::validForAutomateTesting()) {
        KQAccessibleChildren::installFactory();
        QObject::connect(q, &KQTabView::tabsChanged, tabWatcher.get(), [this] { refreshAccessibility(); });
        QObject::connect(q, &KQTabView::selectedTabChanged, tabWatcher.get(), [this] { refreshAccessibility(); });
    }
}

KQTabView::~KQTabView()
{
    // The widget on show goes back to its owner rather than dying with us.
    if (d->installedView && d->installedView->parentWidget() == this) {
        d->installedView->hide();
        d->giveBackInstalledView();
    }
    d->installedView = nullptr;
    // The widgets that stood for the buttons outlive the group.
    for (const QPointer<QWidget> &standIn : std::as_const(d->accessibilityStandIns))
        KQAccessibleChildren::clearAttributes(standIn);
    d->accessibilityStandIns.clear();
}

void KQTabView::setGeometry(const QRect &rect)
{
    d->initialContentSize.reset();
    QWidget::setGeometry(rect);
    d->layoutContent();
}

void KQTabView::setGeometry(int x, int y, int w, int h)
{
    setGeometry(QRect(x, y, w, h));
}

void KQTabView::resize(const QSize &size)
{
    d->initialContentSize.reset();
    QWidget::resize(size);
    d->layoutContent();
}

void KQTabView::resize(int w, int h)
{
    resize(QSize(w, h));
}

void KQTabViewPrivate::layoutContent()
{
    // The selected widget follows the tab view's size in both directions.
    if (installedView && installedView->parentWidget() == q)
        installedView->setGeometry(KQTabBar::contentFrameForBounds(QRectF(q->rect())).toRect());
}

void KQTabViewPrivate::applyInitialFrameSize()
{
    // Sized by someone else in between (a layout, through a QWidget pointer):
    // that size stands.
    if (!initialContentSize || q->size() != constructedSize) {
        initialContentSize.reset();
        return;
    }
    const QSizeF frame = q->frameSizeForTabViewSize(*initialContentSize);
    q->resize(int(std::ceil(frame.width())), int(std::ceil(frame.height())));
}

bool KQTabView::event(QEvent *event)
{
    // The first moment a subclass's frame rule can be asked.
    if (event->type() == QEvent::Polish)
        d->applyInitialFrameSize();
    // The content's size hint changed: ours follows it.
    if (event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QWidget::event(event);
}

void KQTabViewPrivate::adopt(KQTab *tab)
{
    if (!tab->parent())
        tab->setParent(q);
    // Once per tab, however often it is set.
    QObject::disconnect(tab, nullptr, tabWatcher.get(), nullptr);
    QObject::connect(tab, &QObject::destroyed, tabWatcher.get(), [this](QObject *gone) { forgetTab(gone); });
    // The bar shows the icon: a new one must be drawn.
    QObject::connect(tab, &KQTab::iconChanged, tabWatcher.get(), [this] { q->update(); });
    if (KQAccessibility::validForAutomateTesting()) {
        // The buttons are the tabs' widgets, titled with their tooltips.
        QObject::connect(tab, &KQTab::viewChanged, tabWatcher.get(), [this] { refreshAccessibility(); });
        QObject::connect(tab, &KQTab::iconTooltipChanged, tabWatcher.get(), [this] { refreshAccessibility(); });
    }
}

void KQTabViewPrivate::forgetTab(QObject *tab)
{
    // Only the address is compared: the tab is already half destroyed.
    const auto matches = [tab](KQTab *candidate) { return static_cast<QObject *>(candidate) == tab; };
    const bool wasVisible = tabs.removeIf(matches) > 0;
    hiddenTabs.removeIf(matches);
    // The selected tab went (its pointer has already cleared itself): its
    // widget must not stay on show with nothing selected.
    if (!selectedTab && installedView) {
        QPointer<QWidget> view = installedView;
        if (view && view->parentWidget() == q) {
            view->hide();
            // A widget its tab owned has no one left to go back to.
            if (giveBackInstalledView())
                delete view.data();
        }
        installedView = nullptr;
        Q_EMIT q->selectedTabChanged(nullptr);
    }
    if (wasVisible)
        Q_EMIT q->tabsChanged();
    q->update();
}

void KQTabView::setTabs(const QList<KQTab *> &tabs)
{
    QList<KQTab *> accepted;
    accepted.reserve(tabs.size());
    for (KQTab *tab : tabs) {
        if (!KQVerify(tab != nullptr))
            continue;
        d->adopt(tab);
        accepted.append(tab);
    }
    d->tabs = accepted;
    const QPointer<KQTabView> alive(this);
    Q_EMIT tabsChanged();
    if (!alive)
        return;
    selectTab(d->tabs.isEmpty() ? nullptr : d->tabs.first());
    if (!alive)
        return;

    if (KQAccessibility::validForAutomateTesting()) {
        // The previous group goes; initializeAccessibility attaches a new one.
        QList<QAccessibleInterface *> children = KQAccessibleChildren::children(this);
        if (!children.isEmpty() && d->kqAccessibilityTabView
            && children.last() == d->kqAccessibilityTabView->groupAccessbility()) {
            children.removeLast();
            KQAccessibleChildren::setChildren(this, children);
        }
        initializeAccessibility();
    }
}

QList<KQTab *> KQTabView::tabs() const
{
    return d->tabs;
}

QList<KQTab *> KQTabView::hiddenTabs() const
{
    return d->hiddenTabs;
}

KQTab *KQTabView::selectedTab() const
{
    return d->selectedTab;
}

void KQTabView::selectTab(KQTab *tab)
{
    KQAssertText("tab == nil || [_tabs containsObject:tab]", tab == nullptr || d->tabs.contains(tab));

    // Held weakly: a delegate may destroy the old tab while being told.
    const QPointer<KQTab> old = d->selectedTab;
    const QPointer<KQTab> next = tab;
    // ...and may destroy the tab view itself, as a panel closing on a choice does.
    const QPointer<KQTabView> alive(this);
    if (auto *delegate = qobject_cast<KQTabViewDelegate *>(d->delegate.data()))
        delegate->tabViewWillChangeToTab(this, next, old);
    if (!alive)
        return;
    tearDownSelectedTab();
    d->selectedTab = next;
    setUpSelectedTab();
    if (auto *delegate = qobject_cast<KQTabViewDelegate *>(d->delegate.data()))
        delegate->tabViewDidChangeToTab(this, next, old);
    if (!alive)
        return;
    Q_EMIT selectedTabChanged(d->selectedTab);
    updateGeometry();
    update();
}

void KQTabView::tearDownSelectedTab()
{
    if (d->installedView && d->installedView->parentWidget() == this) {
        d->installedView->hide();
        d->giveBackInstalledView();
    }
    d->installedView = nullptr;
}

bool KQTabViewPrivate::giveBackInstalledView()
{
    QWidget *view = installedView;
    const bool parentless = installedWasParentless;
    QWidget *owner = installedOwner;
    installedOwner = nullptr;
    installedWasParentless = false;
    if (!view || owner == q)
        return false;
    // Reparenting keeps the widget hidden.
    view->setParent(owner);
    return parentless;
}

void KQTabView::setUpSelectedTab()
{
    if (!d->selectedTab)
        return;
    QWidget *view = d->selectedTab->view();
    if (!view)
        return;
    d->installedOwner = view->parentWidget();
    d->installedWasParentless = view->parentWidget() == nullptr;
    if (view->parentWidget() != this)
        view->setParent(this);
    view->setGeometry(KQTabBar::contentFrameForBounds(QRectF(rect())).toRect());
    view->show();
    d->installedView = view;
    if (QWidget *focus = d->selectedTab->initialFirstResponder())
        focus->setFocus(Qt::OtherFocusReason);
}

void KQTabView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Sizes set through a QWidget pointer arrive here (for a hidden tab view,
    // once it is shown).
    d->layoutContent();
}

void KQTabView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    // A hidden widget never gets the release of a press it was tracking:
    // forget the press, so the pressed look does not come back with it.
    if (d->tracker.pressedDownTab()) {
        d->tracker.reset();
        update();
    }
}

bool KQTabView::hideTabSelection(qint64 tag)
{
    const QList<KQTab *> snapshot = d->tabs;
    for (KQTab *tab : snapshot) {
        if (tab->tag() != tag)
            continue;
        const bool wasSelected = tab == d->selectedTab;
        d->tabs.removeOne(tab);
        d->hiddenTabs.append(tab);
        Q_EMIT tabsChanged();
        return wasSelected;
    }
    return false;
}

void KQTabView::hideTab(qint64 tag)
{
    if (hideTabSelection(tag)) {
        const QPointer<KQTabView> alive(this);
        selectTab(d->tabs.isEmpty() ? nullptr : d->tabs.first());
        if (!alive)
            return;
    }
    update();
}

void KQTabView::showTab(qint64 tag, qsizetype position)
{
    for (qsizetype i = 0; i < d->hiddenTabs.size(); ++i) {
        KQTab *tab = d->hiddenTabs.at(i);
        if (tab->tag() != tag)
            continue;
        // An index past the end would corrupt the list: report and keep the tab hidden.
        KQAssert(position >= 0 && position <= d->tabs.size());
        d->hiddenTabs.removeAt(i);
        d->tabs.insert(position, tab);
        Q_EMIT tabsChanged();
        break;
    }
    update();
}

bool KQTabView::replaceTab(qint64 oldTag, qint64 newTag, qsizetype position)
{
    KQTab *shown = nullptr;
    const QList<KQTab *> snapshot = d->tabs;
    for (qsizetype i = 0; i < snapshot.size(); ++i) {
        if (snapshot.at(i)->tag() != newTag)
            continue;
        // Already where it should be: leave everything, the old tab included.
        if (i == position)
            return false;
        KQAssert(position >= 0 && position < d->tabs.size(), false);
        shown = snapshot.at(i);
        d->tabs.removeAt(i);
        d->tabs.insert(position, shown);
        break;
    }
    if (!shown) {
        for (qsizetype i = 0; i < d->hiddenTabs.size(); ++i) {
            if (d->hiddenTabs.at(i)->tag() != newTag)
                continue;
            KQAssert(position >= 0 && position <= d->tabs.size(), false);
            shown = d->hiddenTabs.takeAt(i);
            d->tabs.insert(position, shown);
            break;
        }
    }
    if (shown)
        Q_EMIT tabsChanged();
    if (hideTabSelection(oldTag))
        selectTab(shown);
    else
        update();
    return shown != nullptr;
}

QObject *KQTabView::delegate() const
{
    return d->delegate;
}

void KQTabView::setDelegate(QObject *delegate)
{
    KQAssert(delegate == nullptr || qobject_cast<KQTabViewDelegate *>(delegate) != nullptr);
    if (d->delegate == delegate)
        return;
    d->delegate = delegate;
    Q_EMIT delegateChanged();
}

QVariant KQTabView::toolTipAtPoint(QPointF point, bool *wrapText)
{
    Q_UNUSED(wrapText);
    const KQTab *tab = tabAtPoint(point);
    if (!tab || tab->iconTooltip().isNull())
        return QVariant();
    return tab->iconTooltip();
}

QRectF KQTabView::tabBarRectForBounds(const QRectF &bounds)
{
    return KQTabBar::tabBarRectForBounds(bounds);
}

QList<QRectF> KQTabView::tabRectsForTabBarRect(const QRectF &bar) const
{
    return KQTabBar::tabRectsForTabBarRect(bar, d->tabs.size());
}

KQTab *KQTabView::tabAtPoint(const QPointF &point) const
{
    const qsizetype index = KQTabBar::tabIndexAtPoint(QRectF(rect()), d->tabs.size(), point);
    return index < 0 ? nullptr : d->tabs.at(index);
}

KQTab *KQTabView::pressedDownTab() const
{
    return d->tracker.pressedDownTab();
}

bool KQTabViewPrivate::needsToDraw(const QRectF &rect) const
{
    return dirtyRegion.isEmpty() || dirtyRegion.intersects(rect.toAlignedRect());
}

void KQTabView::paintEvent(QPaintEvent *event)
{
    const QRectF bar = tabBarRectForBounds(QRectF(rect()));
    d->dirtyRegion = event->region();
    if (d->needsToDraw(bar)) {
        QPainter painter(this);
        drawTabBarInRect(painter, bar);
        // After the bar, so a subclass drawing its own bar keeps the frame.
        const qsizetype focused = d->focusedIndex();
        const QList<QRectF> cells = tabRectsForTabBarRect(bar);
        if (hasFocus() && focused >= 0 && focused < cells.size()) {
            QStyleOptionFocusRect option;
            option.initFrom(this);
            option.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
            option.rect = cells.at(focused).toRect().adjusted(2, 2, -2, -2);
            option.backgroundColor = palette().color(QPalette::Button);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
        }
    }
    d->dirtyRegion = QRegion();
}

void KQTabView::drawTabBarInRect(QPainter &painter, const QRectF &bar)
{
    painter.save();
    const KQTabBar::Colors colors = KQTabBar::colorsForPalette(palette());
    painter.fillRect(bar, colors.background);

    const QList<QRectF> cells = tabRectsForTabBarRect(bar);
    // The count is read again after every cell: drawing may not assume the
    // list stays as it was.
    for (qsizetype i = 0; i < d->tabs.size() && i < cells.size(); ++i) {
        if (d->needsToDraw(cells.at(i)))
            drawTab(painter, d->tabs.at(i), cells.at(i));
    }

    QPen separator(colors.separator, 1.0);
    separator.setCapStyle(Qt::FlatCap);
    painter.setPen(separator);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const double y = bar.y() + bar.height() - 0.5;
    painter.drawLine(QPointF(bar.x(), y), QPointF(bar.x() + bar.width(), y));
    painter.restore();
}

namespace {

// A transparency layer over cell: a transparent image at the device's pixel
// density, painted in the tab view's coordinates and composed as one piece.
QImage beginLayer(const QRectF &cell, qreal dpr)
{
    QImage layer(QSize(int(std::ceil(cell.width() * dpr)), int(std::ceil(cell.height() * dpr))),
                 QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(dpr);
    layer.fill(Qt::transparent);
    return layer;
}

void prepareLayerPainter(QPainter &layerPainter, const QRectF &cell)
{
    layerPainter.translate(-cell.topLeft());
}

} // namespace

void KQTabView::drawTab(QPainter &painter, KQTab *tab, const QRectF &cell)
{
    KQAssert(tab != nullptr);
    // Pixels per point: the device's own density, or the painter's scale when
    // the widget is rendered into a denser image (QWidget::render, grab).
    const QTransform toDevice = painter.deviceTransform();
    const qreal dpr = std::max(painter.device() ? painter.device()->devicePixelRatioF() : 1.0,
                               std::hypot(toDevice.m11(), toDevice.m12()));

    const KQTabBar::Colors colors = KQTabBar::colorsForPalette(palette());
    if (tab == d->selectedTab) {
        const auto shade = [&colors](double alpha) {
            QColor color = colors.shade;
            color.setAlpha(qRound(alpha * 255));
            return color;
        };
        QImage layer = beginLayer(cell, dpr);
        {
            QPainter layerPainter(&layer);
            prepareLayerPainter(layerPainter, cell);
            // Darker at the left and right edges, clear in the middle...
            QLinearGradient across(cell.left(), 0, cell.right(), 0);
            across.setColorAt(0.0, shade(0.2));
            across.setColorAt(0.1, shade(0.1));
            across.setColorAt(0.5, shade(0.0));
            across.setColorAt(0.9, shade(0.1));
            across.setColorAt(1.0, shade(0.2));
            layerPainter.fillRect(cell, across);
            // ...kept only where the vertical mask is opaque, so the shading
            // fades out toward the top and bottom of the cell.
            QLinearGradient down(0, cell.top(), 0, cell.bottom());
            down.setColorAt(0.0, QColor(255, 255, 255, 0));
            down.setColorAt(0.5, QColor(255, 255, 255, 255));
            down.setColorAt(1.0, QColor(255, 255, 255, 0));
            layerPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            layerPainter.fillRect(cell, down);
        }
        painter.drawImage(cell.topLeft(), layer);
    }

    const QIcon icon = tab->icon();
    if (icon.isNull())
        return;
    const QRectF iconRect = KQTabBar::iconRectForCell(cell);
    const QSize iconSize(int(KQTabBar::kIconSize), int(KQTabBar::kIconSize));
    // Asked for at the device's density, so the icon stays sharp on high-DPI screens.
    const QPixmap pixmap = icon.pixmap(iconSize, dpr);
    QImage layer = beginLayer(cell, dpr);
    {
        QPainter layerPainter(&layer);
        prepareLayerPainter(layerPainter, cell);
        layerPainter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        layerPainter.drawPixmap(iconRect, pixmap, QRectF(QPointF(0, 0), QSizeF(pixmap.size())));
        if (tab == d->tracker.pressedDownTab()) {
            // Only where the icon has painted does the darkening land.
            layerPainter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
            layerPainter.fillRect(cell, colors.pressed);
        }
    }
    painter.drawImage(cell.topLeft(), layer);
}

void KQTabView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    modalClickTrackingLoop(event);
}

void KQTabView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return QWidget::mouseMoveEvent(event);
    modalClickTrackingLoop(event);
}

void KQTabView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    modalClickTrackingLoop(event);
}

void KQTabView::modalClickTrackingLoop(QMouseEvent *event)
{
    // Qt hands the press, the drags and the release to this widget one by one
    // (it grabs the mouse on press), so the loop runs as one step per event.
    KQTab *underPointer = tabAtPoint(event->position());
    const KQTabClickTracker::Step step =
        d->tracker.track(underPointer, event->type() == QEvent::MouseButtonRelease);
    if (step.pressedChanged)
        update(tabBarRectForBounds(QRectF(rect())).toAlignedRect());
    if (!step.finished)
        return;
    const QPointer<KQTab> selection = step.selection;
    if (selection) {
        const QPointer<KQTabView> alive(this);
        selectTab(selection);
        if (!alive)
            return;
    }
    d->tracker.reset();
    if (selection)
        update(tabBarRectForBounds(QRectF(rect())).toAlignedRect());
    event->accept();
}

qsizetype KQTabViewPrivate::focusedIndex() const
{
    if (tabs.isEmpty())
        return -1;
    const qsizetype selected = selectedTab ? tabs.indexOf(selectedTab.data()) : -1;
    return selected >= 0 ? selected : 0;
}

bool KQTabViewPrivate::handleNavigationKey(int key)
{
    qsizetype target = -1;
    if (key == Qt::Key_Space || key == Qt::Key_Enter || key == Qt::Key_Return)
        target = focusedIndex();
    else
        target = KQTabBar::keyboardTargetIndex(focusedIndex(), tabs.size(), key);
    if (target < 0)
        return false;
    const QPointer<KQTabView> alive(q);
    q->selectTab(tabs.at(target));
    if (!alive)
        return true;
    // Selecting focuses the tab's first responder; the keyboard user is
    // still walking the bar, so the focus stays here.
    if (q->isVisible() && !q->hasFocus())
        q->setFocus(Qt::TabFocusReason);
    notifyAccessibilityFocus();
    q->update(KQTabView::tabBarRectForBounds(QRectF(q->rect())).toAlignedRect());
    return true;
}

void KQTabViewPrivate::notifyAccessibilityFocus()
{
    if (!q->hasFocus())
        return;
    // With the accessibility group, the focused tab's widget stands for its
    // button: a screen reader follows it; otherwise the bar itself speaks.
    QObject *target = q;
    const qsizetype index = focusedIndex();
    if (index >= 0) {
        QWidget *view = tabs.at(index)->view();
        for (const QPointer<QWidget> &standIn : std::as_const(accessibilityStandIns)) {
            if (standIn && standIn == view)
                target = view;
        }
    }
    QAccessibleEvent event(target, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

QSizeF KQTabViewPrivate::contentSizeHint(bool minimum) const
{
    // Every tab counts, hidden ones too, so the hint does not jump as tabs
    // come and go.
    QSize largest(0, 0);
    const QList<KQTab *> all = tabs + hiddenTabs;
    for (const KQTab *tab : all) {
        const QWidget *view = tab ? tab->view() : nullptr;
        if (!view)
            continue;
        QSize hint = minimum ? view->minimumSizeHint() : view->sizeHint();
        // A widget without a hint (no layout) keeps the size it was given.
        if (!hint.isValid())
            hint = minimum ? QSize(0, 0) : view->size();
        hint = hint.expandedTo(view->minimumSize()).boundedTo(view->maximumSize());
        largest = largest.expandedTo(hint);
    }
    return QSizeF(largest);
}

QSize KQTabView::sizeHint() const
{
    const QSizeF frame = frameSizeForTabViewSize(d->contentSizeHint(false));
    return QSize(int(std::ceil(std::max(frame.width(), KQTabBar::minimumBarWidth(d->tabs.size())))),
                 int(std::ceil(frame.height())));
}

QSize KQTabView::minimumSizeHint() const
{
    const QSizeF frame = frameSizeForTabViewSize(d->contentSizeHint(true));
    return QSize(int(std::ceil(std::max(frame.width(), KQTabBar::minimumBarWidth(d->tabs.size())))),
                 int(std::ceil(frame.height())));
}

void KQTabView::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)
        || !d->handleNavigationKey(event->key()))
        return QWidget::keyPressEvent(event);
    event->accept();
}

void KQTabView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    d->notifyAccessibilityFocus();
    update(tabBarRectForBounds(QRectF(rect())).toAlignedRect());
}

void KQTabView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update(tabBarRectForBounds(QRectF(rect())).toAlignedRect());
}
