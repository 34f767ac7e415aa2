// The tab view's side of the accessibility groups: the group "TabView Group"
// with one button per visible tab, rebuilt whenever the tab view's children
// are asked for.
#include <TarnCommon/KQTabView.h>

#include "KQAccessibleWidget_p.h"
#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQTab.h>

#include <QtCore/QCoreApplication>

void KQTabView::initializeAccessibility()
{
    KQAccessibleChildren::installFactory();
    setAccessibleName(QCoreApplication::translate("TarnCommon", "TabView"));

    // The previous group was taken out of the children by setTabs; its node
    // goes with its owner.
    if (_kqAccessibilityTabView)
        _kqAccessibilityTabView->deleteLater();
    auto *accessibility = new KQAccessibility(this, QStringLiteral("TabView Group"), this);
    setKqAccessibilityTabView(accessibility);

    const QPointer<KQTabView> self(this);
    accessibility->setAccessibilityHierarchy([self] {
        if (self)
            self->setupKQAccessibilityHierarchy();
    });
    accessibility->startInitializeAccessibility([] {});
    accessibility->reloadAccessibilityHierarchy();
}

QAccessible::Id KQTabView::accessibilityButtonFor(KQTab *tab)
{
    // One button per tab for its whole life, so clients holding it keep a
    // valid element across rebuilds; a rebuild only refreshes its values.
    if (KQAccessibilityNode *button = KQAccessibilityNode::fromId(m_accessibilityButtons.value(tab, 0)))
        return button->accessibilityId();
    KQAccessibilityNode *button = KQAccessibilityNode::create();
    button->setAccessibilityRole(QAccessible::Button);
    const QAccessible::Id id = button->accessibilityId();
    m_accessibilityButtons.insert(tab, id);
    return id;
}

void KQTabView::setupKQAccessibilityHierarchy()
{
    if (!_kqAccessibilityTabView)
        return;
    QList<QAccessibleInterface *> children;
    // The rule is stated in y-up screen space: convert in, compute, convert out.
    const QRectF windowFrame = KQScreenSpace::fromGlobal(QRectF(window()->frameGeometry()));
    const QRectF bounds(rect());
    const qsizetype count = _tabs.size();
    QAccessibleInterface *tabViewInterface = QAccessible::queryAccessibleInterface(this);

    for (qsizetype i = 0; i < _tabs.size(); ++i) {
        KQTab *tab = _tabs.at(i);
        KQAccessibilityNode *button = KQAccessibilityNode::fromId(accessibilityButtonFor(tab));
        if (!button)
            continue;
        button->setAccessibilityParent(tabViewInterface);
        button->setAccessibilityTitle(tab->iconTooltip());
        button->setAccessibilityRole(QAccessible::Button);
        button->setAccessibilityFrame(
            KQScreenSpace::toGlobal(KQTabBar::accessibilityButtonFrame(windowFrame, bounds, count, i)));
        children.append(button);
    }
    // With no visible tab the group keeps what it had.
    if (!children.isEmpty())
        _kqAccessibilityTabView->setChildrenToGroup(children);
}

QList<QAccessibleInterface *> KQTabView::accessibilityChildren()
{
    if (KQAccessibility::validForAutomateTesting() && _kqAccessibilityTabView)
        _kqAccessibilityTabView->reloadAccessibilityHierarchy();
    return KQAccessibleChildren::children(this);
}

KQAccessibility *KQTabView::kqAccessibilityTabView() const
{
    return _kqAccessibilityTabView;
}

void KQTabView::setKqAccessibilityTabView(KQAccessibility *accessibility)
{
    if (_kqAccessibilityTabView == accessibility)
        return;
    _kqAccessibilityTabView = accessibility;
    Q_EMIT kqAccessibilityTabViewChanged();
}
