// The accessibility groups with the automation switch on. The switch is
// read once per process, so this runs in a process of its own.
#include "KQAccessibleWidget_p.h"
#include "TabViewTestSupport.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>

#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include <memory>

// Stands for a proxy element that must not survive attaching a group.
class NSAccessibilityReparentingCellProxy : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;
};

class tst_KQAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void groupTitlesRolesFrames();
    void rebuiltOnEveryQuery();
    void replacedOnEverySetTabs();
    void noVisibleTabKeepsPreviousChildren();
    void proxiesAreStripped();
    void groupChildrenOperations();
    void destroyedTabViewLeavesNoDanglingNodes();

private:
    KQTabView *makeTopLevelTabView(int count); // 200 x 100 at (100, 100)
    QAccessibleInterface *groupOf(KQTabView *view);

    std::unique_ptr<KQTabView> m_view;
};

void tst_KQAccessibility::initTestCase()
{
    KQSettings::enableTestMode();
    KQSettings::userDefaults()->setValue(QStringLiteral("enableScriptingAutomationTesting"), true);
    QVERIFY(KQAccessibility::validForAutomateTesting());
    // Read once: turning the setting off later changes nothing.
    KQSettings::userDefaults()->setValue(QStringLiteral("enableScriptingAutomationTesting"), false);
    QVERIFY(KQAccessibility::validForAutomateTesting());
}

void tst_KQAccessibility::cleanup()
{
    m_view.reset();
}

KQTabView *tst_KQAccessibility::makeTopLevelTabView(int count)
{
    m_view = std::make_unique<KQTabView>();
    QList<KQTab *> tabs;
    const QStringList tooltips{QStringLiteral("Alpha"), QStringLiteral("Beta"), QStringLiteral("Gamma"),
                               QStringLiteral("Delta")};
    for (int i = 0; i < count; ++i)
        tabs << makeTab(m_view.get(), i + 1, tooltips.value(i));
    m_view->setGeometry(100, 100, 200, 100);
    m_view->setTabs(tabs);
    m_view->show();
    if (!QTest::qWaitForWindowExposed(m_view.get()))
        return nullptr;
    return m_view.get();
}

QAccessibleInterface *tst_KQAccessibility::groupOf(KQTabView *view)
{
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    if (!iface || iface->childCount() == 0)
        return nullptr;
    return iface->child(iface->childCount() - 1);
}

void tst_KQAccessibility::groupTitlesRolesFrames()
{
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    QVERIFY(iface);
    QCOMPARE(iface->text(QAccessible::Name), QStringLiteral("TabView"));
    QAccessibleInterface *group = groupOf(view);
    QVERIFY(group);
    QCOMPARE(group->text(QAccessible::Name), QStringLiteral("TabView Group"));
    QCOMPARE(group->role(), QAccessible::Grouping);
    QCOMPARE(group->parent(), iface);
    QCOMPARE(static_cast<QAccessibleInterface *>(view->kqAccessibilityTabView()->groupAccessbility()), group);
    // The selected tab's widget is still there, before the group.
    QCOMPARE(iface->child(0)->object(), view->selectedTab()->view());
    QCOMPARE(iface->indexOfChild(group), iface->childCount() - 1);

    // Window frame (100, 500) in y-up space, 200 x 100: on the 1000 x 700
    // primary screen that is y = 700 - 500 - 100 = 100 in Qt's space. The
    // buttons are at (140 + 40 i, 566, 40, 28) y-up: y = 700 - 594 = 106.
    QCOMPARE(view->frameGeometry(), QRect(100, 100, 200, 100));
    QCOMPARE(group->childCount(), 3);
    const QStringList names{QStringLiteral("Alpha"), QStringLiteral("Beta"), QStringLiteral("Gamma")};
    for (int i = 0; i < 3; ++i) {
        QAccessibleInterface *button = group->child(i);
        QVERIFY(button);
        QCOMPARE(button->role(), QAccessible::Button);
        QCOMPARE(button->text(QAccessible::Name), names[i]);
        QCOMPARE(button->parent(), group);
        QCOMPARE(button->rect(), QRect(140 + 40 * i, 106, 40, 28));
    }
    // Hit testing of the group finds the button under a screen point.
    QCOMPARE(group->childAt(200, 120), group->child(1));
}

void tst_KQAccessibility::rebuiltOnEveryQuery()
{
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    QAccessibleInterface *group = groupOf(view);
    QVERIFY(group);
    QAccessibleInterface *firstButton = group->child(0);

    view->tabs().at(0)->setIconTooltip(QStringLiteral("Renamed"));
    view->hideTab(2);
    view->move(300, 200);
    // The group only changes when the tab view's children are asked for.
    QCOMPARE(group->childCount(), 3);
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    QCOMPARE(iface->child(iface->childCount() - 1), group);
    QCOMPARE(group->childCount(), 2);
    QCOMPARE(group->child(0), firstButton); // the same element, refreshed
    QCOMPARE(group->child(0)->text(QAccessible::Name), QStringLiteral("Renamed"));
    QCOMPARE(group->child(1)->text(QAccessible::Name), QStringLiteral("Gamma"));
    // Moved to (300, 200): y-up window y 400, the second of two cells at
    // x 300 + 60 + 40, y-up 466, so y = 700 - 466 - 28 = 206.
    QCOMPARE(group->child(1)->rect(), QRect(400, 206, 40, 28));
}

void tst_KQAccessibility::replacedOnEverySetTabs()
{
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    const QAccessible::Id oldGroup = QAccessible::uniqueId(groupOf(view));
    const int before = iface->childCount();

    view->setTabs({view->tabs().at(2), view->tabs().at(0)});
    QAccessibleInterface *group = groupOf(view);
    QVERIFY(group);
    QVERIFY(QAccessible::uniqueId(group) != oldGroup);
    QCOMPARE(iface->childCount(), before); // replaced, not added
    QCOMPARE(group->childCount(), 2);
    QCOMPARE(group->child(0)->text(QAccessible::Name), QStringLiteral("Gamma"));
    QCOMPARE(group->child(1)->text(QAccessible::Name), QStringLiteral("Alpha"));
}

void tst_KQAccessibility::noVisibleTabKeepsPreviousChildren()
{
    KQTabView *view = makeTopLevelTabView(2);
    QVERIFY(view);
    QAccessibleInterface *group = groupOf(view);
    QVERIFY(group);
    QCOMPARE(group->childCount(), 2);
    view->hideTab(1);
    view->hideTab(2);
    QVERIFY(view->tabs().isEmpty());
    QCOMPARE(groupOf(view), group);
    QCOMPARE(group->childCount(), 2);
    QCOMPARE(group->child(1)->text(QAccessible::Name), QStringLiteral("Beta"));
}

void tst_KQAccessibility::proxiesAreStripped()
{
    QWidget host;
    auto *label = new QWidget(&host);
    label->setObjectName(QStringLiteral("kept"));
    auto *proxy = new NSAccessibilityReparentingCellProxy(&host);
    QAccessibleInterface *hostInterface = QAccessible::queryAccessibleInterface(&host);
    QCOMPARE(hostInterface->childCount(), 2);

    const QList<QAccessibleInterface *> stripped =
        KQAccessibility::stripeOffNSAccessibilityReparentingCellProxyObjectFromArray(
            {QAccessible::queryAccessibleInterface(proxy), QAccessible::queryAccessibleInterface(label)});
    QCOMPARE(stripped, QList<QAccessibleInterface *>{QAccessible::queryAccessibleInterface(label)});

    KQAccessibility accessibility(&host, QStringLiteral("Group"));
    hostInterface = QAccessible::queryAccessibleInterface(&host);
    QCOMPARE(hostInterface->childCount(), 2);
    QCOMPARE(hostInterface->child(0)->object(), label);
    QCOMPARE(hostInterface->child(1)->text(QAccessible::Name), QStringLiteral("Group"));
    QCOMPARE(accessibility.accessedObject(), &host);
}

void tst_KQAccessibility::groupChildrenOperations()
{
    QWidget host;
    KQAccessibility accessibility(&host, QStringLiteral("Group"));
    KQAccessibilityNode *group = accessibility.groupAccessbility();
    QVERIFY(group);
    QVERIFY(!group->isRootNode() && !group->isEndNode());

    KQAccessibilityNode *a = KQAccessibilityNode::create();
    KQAccessibilityNode *b = KQAccessibilityNode::create();
    KQAccessibilityNode *c = KQAccessibilityNode::create();
    accessibility.setChildrenToGroup({a});
    accessibility.addChildrenToGroup({b, c});
    QCOMPARE(group->accessibilityChildren(), (QList<QAccessibleInterface *>{a, b, c}));
    QCOMPARE(c->parent(), group);
    QCOMPARE(group->indexOfChild(b), 1);

    QAccessible::deleteAccessibleInterface(b->accessibilityId());
    QCOMPARE(group->childCount(), 2); // a node that is gone drops out
    accessibility.resetGroupChildren();
    QCOMPARE(group->childCount(), 0);

    int runs = 0;
    accessibility.setAccessibilityHierarchy([&runs] { ++runs; });
    accessibility.startInitializeAccessibility([&runs] { runs += 10; });
    accessibility.reloadAccessibilityHierarchy();
    accessibility.reloadAccessibilityHierarchy();
    QCOMPARE(runs, 12);
    QAccessible::deleteAccessibleInterface(a->accessibilityId());
    QAccessible::deleteAccessibleInterface(c->accessibilityId());
}

void tst_KQAccessibility::destroyedTabViewLeavesNoDanglingNodes()
{
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    QAccessibleInterface *group = groupOf(view);
    QVERIFY(group);
    const QAccessible::Id groupId = QAccessible::uniqueId(group);
    const QAccessible::Id buttonId = QAccessible::uniqueId(group->child(0));
    delete view->tabs().at(1);
    QCOMPARE(groupOf(view)->childCount(), 2);
    m_view.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(QAccessible::accessibleInterface(groupId), nullptr);
    QCOMPARE(QAccessible::accessibleInterface(buttonId), nullptr);
}

QTEST_MAIN(tst_KQAccessibility)
#include "tst_KQAccessibility.moc"
