// The tab view's side of the accessibility groups: the group "TabView Group"
// in which each visible tab's content widget stands for the tab's button,
// rebuilt whenever the tab view's children are asked for and whenever the
// tabs change.
#include <TarnCommon/KQTabView.h>

#include "KQAccessibleWidget_p.h"
#include "KQTabBarGeometry_p.h"
#include "KQTabView_p.h"

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
    if (d->kqAccessibilityTabView)
        d->kqAccessibilityTabView->deleteLater();
    auto *accessibility = new KQAccessibility(this, QStringLiteral("TabView Group"), this);
    setKqAccessibilityTabView(accessibility);

    const QPointer<KQTabView> self(this);
    accessibility->setAccessibilityHierarchy([self] {
        if (self)
            self->setupKQAccessibilityHierarchy();
    });
    accessibility->startInitializeAccessibility([] {});
    accessibility->reloadAccessibilityHierarchy();
    // Clients drop the old group and read the new one.
    KQAccessibleChildren::notify(QAccessible::queryAccessibleInterface(this), QAccessible::ObjectReorder);
}

void KQTabViewPrivate::refreshAccessibility()
{
    if (KQAccessibility::validForAutomateTesting() && kqAccessibilityTabView)
        kqAccessibilityTabView->reloadAccessibilityHierarchy();
}

void KQTabView::setupKQAccessibilityHierarchy()
{
    if (!d->kqAccessibilityTabView)
        return;
    KQAccessibilityNode *group = d->kqAccessibilityTabView->groupAccessbility();
    if (!group)
        return;
    const QList<QAccessibleInterface *> before = group->accessibilityChildren();
    QStringList titlesBefore;
    QList<bool> checkedBefore;
    for (QAccessibleInterface *button : before) {
        titlesBefore << button->text(QAccessible::Name);
        checkedBefore << button->state().checked;
    }

    QList<QAccessibleInterface *> children;
    QList<QPointer<QWidget>> standIns;
    // The rule is stated in y-up screen space: convert in, compute, convert out.
    const QRectF windowFrame = KQScreenSpace::fromGlobal(QRectF(window()->frameGeometry()));
    const QRectF bounds(rect());
    const qsizetype count = d->tabs.size();
    QAccessibleInterface *tabViewInterface = QAccessible::queryAccessibleInterface(this);
    const QPointer<KQTabView> self(this);

    for (qsizetype i = 0; i < d->tabs.size(); ++i) {
        KQTab *tab = d->tabs.at(i);
        // The tab's widget itself is its button, so its controls hang under it.
        QWidget *view = tab->view();
        if (!view)
            continue;
        KQAccessibleChildren::setAccessibilityParent(view, tabViewInterface);
        KQAccessibleChildren::setAccessibilityTitle(view, tab->iconTooltip());
        KQAccessibleChildren::setAccessibilityRole(view, QAccessible::Button);
        KQAccessibleChildren::setAccessibilityChecked(view, tab == d->selectedTab);
        KQAccessibleChildren::setAccessibilityFrame(
            view, KQScreenSpace::toGlobal(KQTabBar::accessibilityButtonFrame(windowFrame, bounds, count, i)));
        // Pressed, it selects the tab as a click does.
        const QPointer<KQTab> pressed(tab);
        KQAccessibleChildren::setPressAction(view, [self, pressed] {
            if (self && pressed && self->d->tabs.contains(pressed.data()))
                self->selectTab(pressed);
        });
        if (QAccessibleInterface *button = QAccessible::queryAccessibleInterface(view)) {
            children.append(button);
            standIns.append(view);
        }
    }
    // With no visible tab the group keeps what it had.
    if (children.isEmpty())
        return;
    // Widgets no longer standing for a button answer as themselves again.
    for (const QPointer<QWidget> &previous : std::as_const(d->accessibilityStandIns)) {
        if (previous && !standIns.contains(previous))
            KQAccessibleChildren::clearAttributes(previous);
    }
    d->accessibilityStandIns = standIns;
    d->kqAccessibilityTabView->setChildrenToGroup(children);

    // Told without polling: a new set of buttons, new titles, a new selection.
    const QList<QAccessibleInterface *> after = group->accessibilityChildren();
    if (after != before) {
        KQAccessibleChildren::notify(group, QAccessible::ObjectReorder);
        return;
    }
    for (qsizetype i = 0; i < after.size(); ++i) {
        if (after.at(i)->text(QAccessible::Name) != titlesBefore.at(i))
            KQAccessibleChildren::notify(after.at(i), QAccessible::NameChanged);
        if (after.at(i)->state().checked != checkedBefore.at(i))
            KQAccessibleChildren::notifyCheckedChanged(after.at(i));
    }
}

QList<QAccessibleInterface *> KQTabView::accessibilityChildren()
{
    if (KQAccessibility::validForAutomateTesting() && d->kqAccessibilityTabView)
        d->kqAccessibilityTabView->reloadAccessibilityHierarchy();
    return KQAccessibleChildren::children(this);
}

KQAccessibility *KQTabView::kqAccessibilityTabView() const
{
    return d->kqAccessibilityTabView;
}

void KQTabView::setKqAccessibilityTabView(KQAccessibility *accessibility)
{
    if (d->kqAccessibilityTabView == accessibility)
        return;
    d->kqAccessibilityTabView = accessibility;
    Q_EMIT kqAccessibilityTabViewChanged();
}
