// The accessibility groups with the automation switch on. The switch is
// read once per process, so this runs in a process of its own.
#include "KQAccessibleWidget_p.h"
#include "TabViewTestSupport.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>

#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include <QtWidgets/QLineEdit>

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
    void keptCurrent_data();
    void keptCurrent();
    void selectedTabControlsReachable_data();
    void selectedTabControlsReachable();
    void pressSelectsAsAClick_data();
    void pressSelectsAsAClick();
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
        // The tab's own widget stands for its button.
        QCOMPARE(button->object(), view->tabs().at(i)->view());
        QCOMPARE(button->role(), QAccessible::Button);
        QCOMPARE(button->text(QAccessible::Name), names[i]);
        QCOMPARE(button->parent(), group);
        QCOMPARE(button->rect(), QRect(140 + 40 * i, 106, 40, 28));
    }
    // Hit testing of the group finds the button under a screen point.
    QCOMPARE(group->childAt(200, 120), group->child(1));

    // Frames follow the window when the tree is read again. Moved to (300,
    // 200): y-up window y 400, the second cell at x 300 + 40 + 40, y-up 466,
    // so y = 700 - 466 - 28 = 206.
    view->move(300, 200);
    QCOMPARE(iface->child(iface->childCount() - 1), group);
    QCOMPARE(group->child(1)->rect(), QRect(380, 206, 40, 28));
}

void tst_KQAccessibility::keptCurrent_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QStringList>("buttons");

    const QString a = QStringLiteral("Alpha"), b = QStringLiteral("Beta"), g = QStringLiteral("Gamma");
    QTest::newRow("tooltip renamed") << "rename" << QStringList{QStringLiteral("Renamed"), b, g};
    QTest::newRow("tab hidden") << "hide" << QStringList{a, g};
    QTest::newRow("tab shown") << "hide and show" << QStringList{b, a, g};
    QTest::newRow("widget replaced") << "replace widget" << QStringList{a, b, g};
    QTest::newRow("tabs set") << "set tabs" << QStringList{g, a};
}

void tst_KQAccessibility::keptCurrent()
{
    QFETCH(QString, change);
    QFETCH(QStringList, buttons);

    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    QVERIFY(groupOf(view));
    const QList<KQTab *> tabs = view->tabs();
    auto *replacement = new QWidget;
    const QPointer<QWidget> replaced = tabs.at(0)->view();
    if (change == QLatin1String("rename"))
        tabs.at(0)->setIconTooltip(QStringLiteral("Renamed"));
    else if (change == QLatin1String("hide"))
        view->hideTab(2);
    else if (change == QLatin1String("hide and show")) {
        view->hideTab(2);
        view->showTab(2, 0);
    } else if (change == QLatin1String("replace widget"))
        tabs.at(0)->setView(replacement);
    else if (change == QLatin1String("set tabs"))
        view->setTabs({tabs.at(2), tabs.at(0)});

    // Read from the group as a client holding it would, without asking the
    // tab view first.
    KQAccessibilityNode *group = view->kqAccessibilityTabView()->groupAccessbility();
    QVERIFY(group);
    QStringList names;
    const QList<QAccessibleInterface *> children = group->accessibilityChildren();
    for (qsizetype i = 0; i < children.size(); ++i) {
        names << children.at(i)->text(QAccessible::Name);
        QCOMPARE(children.at(i)->object(), view->tabs().value(i)->view());
    }
    QCOMPARE(names, buttons);
    if (change == QLatin1String("replace widget")) {
        QCOMPARE(group->child(0)->object(), replacement);
        delete replaced; // the caller's again
    } else {
        delete replacement;
    }
}

void tst_KQAccessibility::selectedTabControlsReachable_data()
{
    QTest::addColumn<int>("selected");
    QTest::newRow("first, selected when the group was made") << 0;
    QTest::newRow("second, selected later") << 1;
    QTest::newRow("third, selected later") << 2;
}

void tst_KQAccessibility::selectedTabControlsReachable()
{
    QFETCH(int, selected);
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    for (KQTab *tab : view->tabs()) {
        auto *field = new QLineEdit(tab->view());
        field->setAccessibleName(QStringLiteral("field %1").arg(tab->tag()));
        field->show(); // on show wherever its page is
    }
    view->selectTab(view->tabs().at(selected));

    // Walk down from the tab view, as a client does, collecting every field.
    QHash<QString, QAccessibleInterface *> fields;
    QList<QAccessibleInterface *> pending{QAccessible::queryAccessibleInterface(view)};
    while (!pending.isEmpty()) {
        QAccessibleInterface *node = pending.takeFirst();
        if (node->role() == QAccessible::EditableText)
            fields.insert(node->text(QAccessible::Name), node);
        for (int i = 0; i < node->childCount(); ++i)
            pending << node->child(i);
    }
    QCOMPARE(fields.size(), 3);
    QAccessibleInterface *group = groupOf(view);
    for (int i = 0; i < 3; ++i) {
        QAccessibleInterface *field = fields.value(QStringLiteral("field %1").arg(i + 1));
        QVERIFY(field);
        // Under the tab's button, which is under the group.
        QCOMPARE(field->parent()->object(), view->tabs().at(i)->view());
        QCOMPARE(field->parent()->parent(), group);
        QCOMPARE(field->state().invisible, i != selected);
        QCOMPARE(field->parent()->state().checked, i == selected);
    }
}

void tst_KQAccessibility::pressSelectsAsAClick_data()
{
    QTest::addColumn<bool>("hiddenFirst");
    QTest::addColumn<QStringList>("delegateLog");
    QTest::newRow("visible tab") << false
                                 << QStringList{QStringLiteral("will 2<-1 shown:view1"),
                                                QStringLiteral("did 2<-1 shown:view2")};
    // Hidden, it is no button any more: nothing to press.
    QTest::newRow("tab hidden since") << true << QStringList{};
}

void tst_KQAccessibility::pressSelectsAsAClick()
{
    QFETCH(bool, hiddenFirst);
    QFETCH(QStringList, delegateLog);
    KQTabView *view = makeTopLevelTabView(3);
    QVERIFY(view);
    RecordingDelegate delegate;
    view->setDelegate(&delegate);
    QAccessibleInterface *button = groupOf(view)->child(1);
    QVERIFY(button);
    QWidget *page = view->tabs().at(1)->view();
    if (hiddenFirst)
        view->hideTab(2);
    button = QAccessible::queryAccessibleInterface(page);
    QAccessibleActionInterface *actions = button->actionInterface();
    QVERIFY(actions);
    QCOMPARE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()), !hiddenFirst);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(delegate.log, delegateLog);
    QCOMPARE(view->selectedTab()->tag(), hiddenFirst ? 1 : 2);
    view->setDelegate(nullptr);
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
    QCOMPARE(group->childCount(), 1);
    view->hideTab(2);
    QVERIFY(view->tabs().isEmpty());
    QCOMPARE(groupOf(view), group);
    QCOMPARE(group->childCount(), 1);
    QCOMPARE(group->child(0)->text(QAccessible::Name), QStringLiteral("Beta"));
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
