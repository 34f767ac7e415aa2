#include <TarnCommon/KQMenuExtensions.h>

#include "MessageCapture.h"

#include <QtGui/QAction>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

// Answers two menu actions and records who called it with what.
class Receiver : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    QStringList calls;

public Q_SLOTS:
    void open() { calls << QStringLiteral("open"); }
    void save(QAction *sender) { calls << QStringLiteral("save:") + sender->text(); }
};

class SpecialMenu : public QMenu
{
    Q_OBJECT

public:
    using QMenu::QMenu;
};

class TestMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemFromProperties_data();
    void itemFromProperties();
    void menuFromList();
    void actionReachesItsReceiver_data();
    void actionReachesItsReceiver();
    void keyEquivalentIsAShortcut();
};

void TestMenus::itemFromProperties_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<int>("checkState"); // -1 not checkable, 0 unchecked, 1 checked
    QTest::addColumn<QVariant>("data");
    QTest::addColumn<QString>("report");

    const QString none;
    QTest::newRow("empty map, defaults") << QVariantMap{} << none << none << -1 << QVariant() << none;
    QTest::newRow("title and key equivalent")
        << QVariantMap{{"title", "Open"}, {"keyEquivalent", "o"}} << "Open" << "Ctrl+O" << -1 << QVariant() << none;
    QTest::newRow("upper-case key equivalent adds Shift")
        << QVariantMap{{"keyEquivalent", "S"}} << none << "Ctrl+Shift+S" << -1 << QVariant() << none;
    QTest::newRow("key equivalent as a sequence")
        << QVariantMap{{"keyEquivalent", "Ctrl+Alt+P"}} << none << "Ctrl+Alt+P" << -1 << QVariant() << none;
    QTest::newRow("Qt names") << QVariantMap{{"text", "Quit"}, {"shortcut", "Ctrl+Q"}, {"checkable", true}}
                              << "Quit" << "Ctrl+Q" << 0 << QVariant() << none;
    QTest::newRow("state on") << QVariantMap{{"state", 1}} << none << none << 1 << QVariant() << none;
    QTest::newRow("state off") << QVariantMap{{"state", 0}} << none << none << 0 << QVariant() << none;
    QTest::newRow("later key wins: text then title")
        << QVariantMap{{"text", "A"}, {"title", "B"}} << "B" << none << -1 << QVariant() << none;
    QTest::newRow("tag is the data") << QVariantMap{{"tag", 7}} << none << none << -1 << QVariant(7) << none;
    QTest::newRow("unknown key refused, others kept")
        << QVariantMap{{"bogus", 1}, {"title", "Kept"}} << "Kept" << none << -1 << QVariant()
        << "QAction has no property \"bogus\"";
    QTest::newRow("wrong type for a property")
        << QVariantMap{{"enabled", QVariantList{1}}, {"title", "Kept"}} << "Kept" << none << -1 << QVariant()
        << "\"enabled\" cannot take a value of type QVariantList";
    QTest::newRow("wrong type for a key equivalent")
        << QVariantMap{{"keyEquivalent", 5}} << none << none << -1 << QVariant()
        << "\"keyEquivalent\" cannot take a value of type int";
    QTest::newRow("wrong type for the action")
        << QVariantMap{{"action", 3.5}} << none << none << -1 << QVariant() << "\"action\" cannot take";
}

void TestMenus::itemFromProperties()
{
    QFETCH(QVariantMap, properties);
    QFETCH(QString, text);
    QFETCH(QString, shortcut);
    QFETCH(int, checkState);
    QFETCH(QVariant, data);
    QFETCH(QString, report);

    MessageCapture capture;
    std::unique_ptr<QAction> item(kq_menuItemWithProperties(properties));
    const QByteArray messages = capture.text();

    QCOMPARE(item->metaObject(), &QAction::staticMetaObject);
    QCOMPARE(item->text(), text);
    QCOMPARE(item->shortcut().toString(QKeySequence::PortableText), shortcut);
    QCOMPARE(item->isCheckable() ? int(item->isChecked()) : -1, checkState);
    QCOMPARE(item->data(), data);
    if (report.isEmpty())
        QVERIFY2(messages.isEmpty(), messages);
    else
        QVERIFY2(messages.contains(report.toUtf8()), messages);
}

void TestMenus::menuFromList()
{
    QWidget owner;
    auto *ready = new QAction(QStringLiteral("Ready"), &owner);
    auto *separator = new QAction(&owner);
    separator->setSeparator(true);

    MessageCapture capture;
    SpecialMenu *menu = kq_menuWithItemProperties<SpecialMenu>(
        {QVariantMap{{"title", "First"}}, QVariant::fromValue(ready), QVariant::fromValue(separator),
         QVariant(42), QVariantMap{{"title", "Last"}, {"submenu", QVariantList{QVariantMap{{"title", "Inner"}}}}}},
        &owner);
    const QByteArray messages = capture.text();

    QVERIFY(qobject_cast<SpecialMenu *>(menu));
    QCOMPARE(menu->parentWidget(), &owner);
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("First"));
    QCOMPARE(actions.at(1), ready);
    QCOMPARE(actions.at(2), separator);
    QCOMPARE(actions.at(3)->text(), QStringLiteral("Last"));
    QVERIFY(actions.at(3)->menu());
    QCOMPARE(actions.at(3)->menu()->actions().constFirst()->text(), QStringLiteral("Inner"));
    QVERIFY2(messages.contains("Menu element 3 is neither a property map nor a QAction"), messages);

    QVERIFY(kq_menuWithItemProperties({}, &owner)->actions().isEmpty());
}

void TestMenus::actionReachesItsReceiver_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QStringList>("targetCalls");
    QTest::addColumn<QStringList>("chainCalls");
    QTest::addColumn<QString>("report");

    QTest::newRow("explicit target") << "target" << QByteArray("open") << QStringList{"open"} << QStringList{}
                                     << QString();
    QTest::newRow("target given the item") << "target" << QByteArray("save") << QStringList{"save:Item"}
                                           << QStringList{} << QString();
    QTest::newRow("focus widget's ancestors") << "focus" << QByteArray("open") << QStringList{}
                                              << QStringList{"open"} << QString();
    QTest::newRow("context menu's owner") << "context" << QByteArray("save") << QStringList{}
                                          << QStringList{"save:Item"} << QString();
    QTest::newRow("tool button's menu") << "toolbutton" << QByteArray("open") << QStringList{}
                                        << QStringList{"open"} << QString();
    QTest::newRow("nobody answers") << "context" << QByteArray("missing") << QStringList{} << QStringList{}
                                    << "No object along the responder chain answers the menu action \"missing\"";
}

void TestMenus::actionReachesItsReceiver()
{
    QFETCH(QString, how);
    QFETCH(QByteArray, action);
    QFETCH(QStringList, targetCalls);
    QFETCH(QStringList, chainCalls);
    QFETCH(QString, report);

    Receiver target;
    Receiver window;
    auto *layout = new QVBoxLayout(&window);
    auto *edit = new QLineEdit(&window);
    auto *button = new QToolButton(&window);
    layout->addWidget(edit);
    layout->addWidget(button);

    QMenu *menu = nullptr;
    if (how == QLatin1String("focus")) {
        menu = new QMenu; // no owner: only the focus can lead to the window
        window.show();
        QApplication::setActiveWindow(&window);
        edit->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(QApplication::focusWidget(), edit);
    } else if (how == QLatin1String("toolbutton")) {
        menu = new QMenu(button);
        button->setMenu(menu);
    } else {
        menu = new QMenu(&window);
    }
    QAction *item = kq_addItemWithTitle(menu, QStringLiteral("Item"), action,
                                        how == QLatin1String("target") ? &target : nullptr);
    QCOMPARE(kq_action(item), action);

    MessageCapture capture;
    item->trigger();
    const QByteArray messages = capture.text();
    QCOMPARE(target.calls, targetCalls);
    QCOMPARE(window.calls, chainCalls);
    if (report.isEmpty())
        QVERIFY2(messages.isEmpty(), messages);
    else
        QVERIFY2(messages.contains(report.toUtf8()), messages);
    if (!menu->parent())
        delete menu;
}

void TestMenus::keyEquivalentIsAShortcut()
{
    const QVariantList bar{QVariantMap{
        {"title", "File"},
        {"submenu", QVariantList{QVariantMap{{"title", "Open"}, {"action", "open"}, {"keyEquivalent", "o"}},
                                 QVariantMap{{"title", "Save As"}, {"action", "save"}, {"keyEquivalent", "S"}}}}}};
    QMainWindow window;
    auto *receiver = new Receiver(&window);
    receiver->setFocusPolicy(Qt::StrongFocus);
    window.setCentralWidget(receiver);
    kq_addItemsWithProperties(window.menuBar(), bar);
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    receiver->setFocus(); // the first responder

    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(receiver->calls, (QStringList{"open", "save:Save As"}));
}

QTEST_MAIN(TestMenus)
#include "tst_menus.moc"
