#include "KQTabBarGeometry_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtGui/QAccessible>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>

#include <functional>
#include <memory>

using Tags = QList<qint64>;

// On tabs 1, 2, 3 with 1 selected: set-up operations, then one whose result, tabsChanged
// signal and error report are checked; the visible tags and the selected one (0: none) after.
struct Operation
{
    QStringList setup;
    QString operation;
    bool result, changed;
    Tags visible;
    qint64 selected;
    bool reported = false;
};
Q_DECLARE_METATYPE(Operation)

namespace {

// A tab owned by owner whose content widget ("view<tag>", no parent) it owns.
KQTab *makeTab(QObject *owner, qint64 tag, const QString &tooltip = QString(), QSize viewSize = {100, 50})
{
    auto *tab = new KQTab(owner);
    tab->setView(new QWidget);
    tab->view()->resize(viewSize);
    tab->view()->setObjectName(QStringLiteral("view%1").arg(tag));
    tab->setTag(tag);
    tab->setIconTooltip(tooltip);
    return tab;
}

// A square icon of size device pixels at the given density, coloured by position.
QIcon makeIcon(int size, double ratio, const std::function<QColor(int, int)> &colourAt)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            image.setPixelColor(x, y, colourAt(x, y));
    image.setDevicePixelRatio(ratio);
    return QIcon(QPixmap::fromImage(image));
}

} // namespace

// Logs "will 2<-1 shown:view1": the message, the tags, the visible child.
class RecordingDelegate : public QObject, public KQTabViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(KQTabViewDelegate)
public:
    QStringList log;

    void tabViewWillChangeToTab(KQTabView *view, KQTab *to, KQTab *from) override { hear("will", view, to, from); }
    void tabViewDidChangeToTab(KQTabView *view, KQTab *to, KQTab *from) override { hear("did", view, to, from); }

private:
    void hear(const QString &what, KQTabView *view, KQTab *to, KQTab *from)
    {
        QString shown;
        for (QWidget *child : view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            shown += child->isHidden() ? QString() : child->objectName();
        const auto tag = [](KQTab *tab) { return tab ? QString::number(tab->tag()) : QStringLiteral("-"); };
        log << QStringLiteral("%1 %2<-%3 shown:%4").arg(what, tag(to), tag(from), shown);
    }
};

// Changes the frame rule, as a subclass may.
class CustomTabView : public KQTabView
{
public:
    using KQTabView::KQTabView;
    QSizeF frameSizeForTabViewSize(const QSizeF &size) const override { return size + QSizeF(10, 40); }
};

// Runs "select T", "hide T", "hidesel T", "show T P", "replace OLD NEW P", "set T...",
// "press X", "move X", "release X" (the mouse at y 10) or "close" (the window);
// answers its result, true for those without one.
static bool run(KQTabView *view, const QString &operation)
{
    const QStringList words = operation.split(QLatin1Char(' '));
    const auto arg = [&words](int i) { return words.value(i).toLongLong(); };
    const auto tagged = [view](qint64 tag) {
        for (KQTab *tab : view->findChildren<KQTab *>()) // dropped tabs too
            if (tab->tag() == tag)
                return tab;
        return static_cast<KQTab *>(nullptr);
    };
    const QString &verb = words[0];
    if (verb == QLatin1String("hide"))
        view->hideTab(arg(1));
    else if (verb == QLatin1String("hidesel"))
        return view->hideTabSelection(arg(1));
    else if (verb == QLatin1String("show"))
        view->showTab(arg(1), arg(2));
    else if (verb == QLatin1String("replace"))
        return view->replaceTab(arg(1), arg(2), arg(3));
    else if (verb == QLatin1String("press"))
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(arg(1), 10));
    else if (verb == QLatin1String("move"))
        QTest::mouseMove(view, QPoint(arg(1), 10));
    else if (verb == QLatin1String("release"))
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(arg(1), 10));
    else if (verb == QLatin1String("close"))
        view->window()->hide();
    else if (verb == QLatin1String("set")) {
        QList<KQTab *> tabs;
        for (qsizetype i = 1; i < words.size(); ++i)
            tabs << tagged(arg(i));
        view->setTabs(tabs);
    } else
        view->selectTab(tagged(arg(1)));
    return true;
}

class tst_TabView : public QObject
{
    Q_OBJECT

    std::unique_ptr<QWidget> m_window;

    // A shown 200 x 100 tab view, tabs 1, 2, 3 with tooltips "one", "two", none.
    KQTabView *makeTabView()
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(200, 100);
        auto *view = new KQTabView(QRect(0, 0, 200, 100), m_window.get());
        view->setTabs({makeTab(view, 1, QStringLiteral("one")), makeTab(view, 2, QStringLiteral("two")), makeTab(view, 3)});
        m_window->show();
        return QTest::qWaitForWindowExposed(m_window.get()) ? view : nullptr;
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void cleanup() { m_window.reset(); }

    void cells_data()
    {
        QTest::addColumn<QRectF>("bounds");
        QTest::addColumn<int>("count");
        QTest::addColumn<QList<double>>("xs");
        QTest::newRow("3 in 200") << QRectF(0, 0, 200, 100) << 3 << QList<double>{40, 80, 120};
        QTest::newRow("fractional origin") << QRectF(3.25, 7.5, 190.5, 60) << 4 << QList<double>{18, 58, 98, 138};
        QTest::newRow("7 spill both ends") << QRectF(0, 0, 200, 40) << 7 << QList<double>{-40, 0, 40, 80, 120, 160, 200};
        QTest::newRow("none") << QRectF(0, 0, 200, 100) << 0 << QList<double>{};
    }
    void cells()
    {
        QFETCH(QRectF, bounds);
        QFETCH(int, count);
        QFETCH(QList<double>, xs);
        QList<QRectF> expected;
        for (double x : xs)
            expected << QRectF(x, bounds.y(), 40, 26);
        const QList<QRectF> cells = KQTabBar::tabRectsForTabBarRect(KQTabBar::tabBarRectForBounds(bounds), count);
        QCOMPARE(cells, expected);
        // The hit test never disagrees with the drawn cells, edges and the separator row included.
        for (double y = bounds.y() - 1; y < bounds.y() + 30; y += 0.5) {
            for (double x = bounds.x() - 160; x < bounds.right() + 160; x += 0.5) {
                const auto hit = std::find_if(cells.begin(), cells.end(), [&](const QRectF &c) { return kq_pointInRect(QPointF(x, y), c); });
                QCOMPARE(KQTabBar::tabIndexAtPoint(bounds, count, QPointF(x, y)), hit == cells.end() ? -1 : hit - cells.begin());
            }
        }
    }

    void placement()
    {
        QCOMPARE(KQTabBar::iconRectForCell(QRectF(17.5, 0.25, 40, 26)), QRectF(29, 5, 16, 16)); // centred, floored
        QCOMPARE(KQTabBar::contentFrameForBounds(QRectF(5, 10, 100, 50)), QRectF(5, 37, 100, 23));
        QCOMPARE(KQTabBar::contentFrameForBounds(QRectF(0, 0, 200, 20)), QRectF(0, 27, 200, 0)); // too short
        // Tab 1 of 3: y = window y + (H - 27) + 20 - (bounds y + 27), y-up.
        QCOMPARE(KQTabBar::accessibilityButtonFrame(QRectF(100, 500, 300, 200), QRectF(0, 0, 200, 100), 3, 1),
                 QRectF(180, 566, 40, 28));
        QCOMPARE(KQTabBar::accessibilityButtonFrame(QRectF(0, 0, 300, 200), QRectF(0, 10, 100, 100), 1, 0), QRectF(30, 56, 40, 28));
    }

    void initWithTabsSizing_data()
    {
        QTest::addColumn<QList<QSize>>("viewSizes"); // invalid: a tab without a view
        QTest::addColumn<bool>("subclass");
        QTest::addColumn<QSize>("frame");
        QTest::newRow("largest width and height") << QList<QSize>{{200, 100}, {150, 300}} << false << QSize(200, 327);
        QTest::newRow("no view counts as nothing") << QList<QSize>{{-1, -1}, {80, 40}} << false << QSize(80, 67);
        QTest::newRow("no tabs") << QList<QSize>{} << false << QSize(0, 27);
        QTest::newRow("a subclass's frame rule") << QList<QSize>{{200, 100}, {150, 300}} << true << QSize(210, 340);
    }
    void initWithTabsSizing()
    {
        QFETCH(QList<QSize>, viewSizes);
        QFETCH(bool, subclass);
        QFETCH(QSize, frame);
        QObject owner;
        QList<KQTab *> tabs;
        for (const QSize &size : viewSizes) {
            tabs << makeTab(&owner, tabs.size() + 1, QString(), size.isValid() ? size : QSize(10, 10));
            if (!size.isValid())
                delete tabs.last()->view();
        }
        const std::unique_ptr<KQTabView> view(subclass ? new CustomTabView(tabs) : new KQTabView(tabs));
        view->ensurePolished(); // the first sizing a subclass's rule takes part in
        QCOMPARE(view->geometry(), QRect(QPoint(0, 0), frame));
        QCOMPARE(view->selectedTab(), tabs.value(0, nullptr));
        view->resize(300, 150); // never shown: laid out at once all the same
        if (QWidget *content = view->selectedTab() ? view->selectedTab()->view() : nullptr)
            QCOMPARE(content->geometry(), QRect(0, 27, 300, 123));
    }

    void contentWidgetGoesBackToItsOwner_data()
    {
        QTest::addColumn<QString>("owner"); // of the content widget
        QTest::addColumn<bool>("deselect"); // or drop the tab
        QTest::addColumn<bool>("outlivesTab");
        QTest::newRow("its tab's, deselected") << "tab" << true << false;
        QTest::newRow("the caller's, tab dropped") << "caller" << false << true;
        QTest::newRow("the tab view's") << "tab view" << true << false;
    }
    void contentWidgetGoesBackToItsOwner()
    {
        QFETCH(QString, owner);
        QFETCH(bool, deselect);
        QFETCH(bool, outlivesTab);
        QWidget caller;
        auto view = std::make_unique<KQTabView>(QRect(0, 0, 200, 100));
        auto tabOwner = std::make_unique<QObject>();
        KQTab *tab = makeTab(tabOwner.get(), 1);
        QWidget *parent = owner == QLatin1String("caller") ? &caller : owner == QLatin1String("tab view") ? view.get() : nullptr;
        delete tab->view();
        const QPointer<QWidget> content = new QWidget(parent);
        tab->setView(content);
        KQTab *other = makeTab(tabOwner.get(), 2);
        view->setTabs({tab, other});
        QCOMPARE(content->parentWidget(), view.get());
        if (deselect)
            view->selectTab(other);
        else
            view->setTabs({other});
        QCOMPARE(content->parentWidget(), parent);
        QVERIFY(content->isHidden());
        QCOMPARE(tab->parent(), tabOwner.get()); // the view adopts only tabs nobody owns
        view.reset();
        tabOwner.reset();
        QCOMPARE(!content.isNull(), outlivesTab);
    }

    void delegateMessages_data()
    {
        // On tabs 1, 2, 3 with 1 selected; each message with the widget on show.
        QTest::addColumn<QStringList>("operations");
        QTest::addColumn<QString>("log");
        QTest::newRow("old widget up at will, new one at did") << QStringList{"select 3"} << "will 3<-1 shown:view1; did 3<-1 shown:view3";
        QTest::newRow("no tabs select nothing, new tabs the first")
            << QStringList{"set", "set 2 3"} << "will -<-1 shown:view1; did -<-1 shown:; will 2<-- shown:; did 2<-- shown:view2";
    }
    void delegateMessages()
    {
        QFETCH(QStringList, operations);
        QFETCH(QString, log);
        KQTabView *view = makeTabView();
        QVERIFY(view);
        RecordingDelegate delegate;
        view->setDelegate(&delegate);
        QSignalSpy changed(view, &KQTabView::selectedTabChanged);
        for (const QString &operation : operations)
            run(view, operation);
        QCOMPARE(delegate.log.join(QStringLiteral("; ")), log);
        QCOMPARE(changed.count(), log.count(QStringLiteral("did ")));
    }

    void tabOperations_data()
    {
        QTest::addColumn<Operation>("o");
        const auto row = [](const char *name, const Operation &o) { QTest::newRow(name) << o; };
        row("hide the selected: the first left selected", {{}, "hide 1", true, true, {2, 3}, 2});
        row("hide every tab", {{"select 3", "hide 3", "hide 1"}, "hide 2", true, true, {}, 0});
        row("hide an unknown tag", {{"select 2"}, "hide 42", true, false, {1, 2, 3}, 2});
        row("hide the selection: widget stays", {{}, "hidesel 1", true, true, {2, 3}, 1});
        row("hidesel of an unselected tab hides it", {{}, "hidesel 2", false, true, {1, 3}, 1});
        row("show at given places", {{"hide 2", "hide 3", "show 3 0"}, "show 2 2", true, true, {3, 1, 2}, 1});
        row("show past the end: reported", {{"hide 3"}, "show 3 5", true, false, {1, 2}, 1, true});
        row("replace selected by a visible tab", {{}, "replace 1 3 0", true, true, {3, 2}, 3});
        row("replace selected by a hidden tab", {{"select 2", "hide 3"}, "replace 2 3 0", true, true, {3, 1}, 3});
        row("replace selected by an unknown tag", {{"select 2"}, "replace 2 42 0", false, true, {1, 3}, 0});
        row("replace unknown tags", {{"hide 3"}, "replace 41 42 0", false, false, {1, 2}, 1});
        row("select another tab", {{"hide 3"}, "select 2", true, false, {1, 2}, 2});
        row("press, drag to the third, release", {{"press 90", "move 130"}, "release 130", true, false, {1, 2, 3}, 3});
        row("dragged off the cells: nothing chosen", {{"press 130", "move 190"}, "release 190", true, false, {1, 2, 3}, 1});
        row("pressed, then the window closes", {{"press 130"}, "close", true, false, {1, 2, 3}, 1});
    }
    void tabOperations()
    {
        QFETCH(Operation, o);
        KQTabView *view = makeTabView();
        QVERIFY(view);
        for (const QString &step : o.setup)
            run(view, step);
        QSignalSpy spy(view, &KQTabView::tabsChanged);
        MessageCapture capture;
        QCOMPARE(run(view, o.operation), o.result);
        QCOMPARE(!capture.text().isEmpty(), o.reported);
        QCOMPARE(!spy.isEmpty(), o.changed);
        Tags tags;
        for (KQTab *tab : view->tabs())
            tags << tab->tag();
        QCOMPARE(tags, o.visible);
        KQTab *selection = view->selectedTab();
        QCOMPARE(selection ? selection->tag() : 0, o.selected);
        // The selection's widget, and no other, is on show.
        for (QWidget *child : view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            QCOMPARE(!child->isHidden(), selection && child == selection->view());
        QCOMPARE(view->hiddenTabs().size() + view->tabs().size(), qsizetype(3)); // no tab lost
        QCOMPARE(view->pressedDownTab(), nullptr);
    }

    void toolTipAtPoint()
    {
        KQTabView *view = makeTabView();
        QVERIFY(view);
        auto *tipping = qobject_cast<ToolTipping_ZL *>(view);
        bool wrap = true;
        QCOMPARE(tipping->toolTipAtPoint(QPointF(80, 10), &wrap), QVariant(QStringLiteral("two"))); // a shared edge
        QCOMPARE(tipping->toolTipAtPoint(QPointF(130, 10), &wrap), QVariant()); // a tab without one
        QCOMPARE(tipping->toolTipAtPoint(QPointF(50, 60), &wrap), QVariant()); // the content area
    }

    void selectionAndFocus()
    {
        KQTabView *view = makeTabView();
        QVERIFY(view);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        // A tab of another tab view is refused and reported.
        KQTabView other(QRect(0, 0, 100, 100));
        KQTab *foreign = makeTab(&other, 9);
        other.setTabs({foreign});
        MessageCapture capture;
        view->selectTab(foreign);
        QVERIFY(capture.text().contains("tab == nil || [_tabs containsObject:tab]"));
        QCOMPARE(view->selectedTab(), view->tabs().at(0));
        // A selected tab's initial first responder takes the focus.
        KQTab *second = view->tabs().at(1);
        auto *field = new QLineEdit(second->view());
        second->setInitialFirstResponder(field);
        view->selectTab(second);
        QCOMPARE(QApplication::focusWidget(), field);
    }

    void destroyedTabsDropOut()
    {
        KQTabView *view = makeTabView();
        QVERIFY(view);
        QSignalSpy changed(view, &KQTabView::selectedTabChanged);
        delete view->selectedTab();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).value<KQTab *>(), nullptr);
        // A tab it adopted and then dropped dies with it without calling back into it.
        const QPointer<KQTab> dropped = makeTab(nullptr, 4);
        view->setTabs({dropped});
        view->setTabs({});
        m_window.reset();
        QVERIFY(dropped.isNull());
    }

    // Pixels of the bar (tab 2 selected, red icons with a transparent quadrant on tabs 1 and 3,
    // cells at x 40, 80, 120) in each visibly different state: a colour, a palette role's or "darker".
    void drawing_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QPoint>("pixel"); // in device pixels
        QTest::addColumn<QVariant>("colour");
        QTest::newRow("background") << "" << QPoint(5, 13) << QVariant(QPalette::Button);
        QTest::newRow("separator") << "" << QPoint(0, 26) << QVariant(QPalette::Dark);
        QTest::newRow("selected: darker at its sides") << "" << QPoint(80, 13) << QVariant("darker");
        QTest::newRow("pressed: opaque icon pixels 40 % black") << "pressed" << QPoint(135, 15) << QVariant(QColor(153, 0, 0));
        QTest::newRow("pressed: transparent quadrant") << "pressed" << QPoint(133, 6) << QVariant(QPalette::Button);
        QTest::newRow("no tabs: separator still drawn") << "empty" << QPoint(100, 26) << QVariant(QPalette::Dark);
        // Stripes one device pixel wide in tab 3's density-2 icon (at x 132) stay so.
        QTest::newRow("high DPI: a yellow stripe") << "high DPI" << QPoint(2 * 132 + 4, 20) << QVariant(QColor(255, 255, 0));
        QTest::newRow("high DPI: the blue beside it") << "high DPI" << QPoint(2 * 132 + 5, 20) << QVariant(QColor(0, 0, 255));
    }
    void drawing()
    {
        QFETCH(QString, state);
        QFETCH(QPoint, pixel);
        QFETCH(QVariant, colour);
        KQTabView *view = makeTabView();
        QVERIFY(view);
        for (KQTab *tab : view->tabs())
            tab->setIcon(makeIcon(16, 1.0, [](int x, int y) { return x < 8 && y < 8 ? QColor(Qt::transparent) : QColor(255, 0, 0); }));
        view->tabs().at(1)->setIcon(QIcon()); // so the selected cell shows its shading alone
        view->selectTab(view->tabs().at(1));
        view->clearFocus(); // the style's focus frame may fill the cell
        MessageCapture capture;
        if (state == u"pressed")
            QTest::mousePress(view, Qt::LeftButton, {}, QPoint(140, 10));
        if (state == u"high DPI")
            view->tabs().at(2)->setIcon(makeIcon(32, 2.0, [](int x, int) { return x % 2 ? QColor(0, 0, 255) : QColor(255, 255, 0); }));
        if (state == u"empty") { // and the keys that walk the bar find nothing
            view->setTabs({});
            for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Right, Qt::Key_End})
                QTest::keyClick(view, key);
            QCOMPARE(view->selectedTab(), nullptr);
        }
        const double ratio = state == u"high DPI" ? 2.0 : 1.0;
        QImage image(QSize(200, 27) * ratio, QImage::Format_ARGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        view->render(&image, {}, QRegion(0, 0, 200, 27));
        if (state == u"pressed")
            QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(190, 10));
        const QColor background = view->palette().color(QPalette::Button);
        if (colour.typeId() == QMetaType::QColor)
            QCOMPARE(image.pixelColor(pixel), colour.value<QColor>());
        else if (colour.typeId() == QMetaType::QString)
            QVERIFY(image.pixelColor(pixel).lightness() < background.lightness() - 20);
        else
            QCOMPARE(image.pixel(pixel), view->palette().color(QPalette::ColorRole(colour.toInt())).rgba());
        QCOMPARE(capture.text(), QByteArray());
    }

    // Switch off (the usual run): only widgets in the tree. On (--accessibility): a client
    // holding the tree sees it change, the group kept current, and no node left dangling.
    void accessibility()
    {
        KQTabView *view = makeTabView();
        QVERIFY(view);
        QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
        if (!KQAccessibility::validForAutomateTesting()) {
            for (int i = 0; i < iface->childCount(); ++i)
                QVERIFY(iface->child(i)->object()); // no group
            QCOMPARE(view->kqAccessibilityTabView(), nullptr);
            return;
        }
        const QList<KQTab *> tabs = view->tabs();
        tabs.at(2)->setIconTooltip(QStringLiteral("three"));
        const int children = iface->childCount();
        const QAccessible::Id groupId = QAccessible::uniqueId(iface->child(children - 1)); // the last child
        tabs.at(0)->setIconTooltip(QStringLiteral("Renamed"));
        view->hideTab(2);
        KQAccessibilityNode *group = view->kqAccessibilityTabView()->groupAccessbility();
        QStringList names;
        for (QAccessibleInterface *child : group->accessibilityChildren())
            names << child->text(QAccessible::Name);
        QCOMPARE(names, (QStringList{"Renamed", "three"}));
        QCOMPARE(group->child(1)->object(), tabs.at(2)->view());
        QCOMPARE(QAccessible::uniqueId(iface->child(children - 1)), groupId);
        view->setTabs({tabs.at(2), tabs.at(0)}); // a new group, replacing the old one
        QCOMPARE(iface->childCount(), children);
        const QAccessible::Id newGroupId = QAccessible::uniqueId(iface->child(children - 1));
        const QAccessible::Id buttonId = QAccessible::uniqueId(iface->child(children - 1)->child(0));
        QVERIFY(newGroupId != groupId);
        m_window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(QAccessible::accessibleInterface(newGroupId), nullptr);
        QCOMPARE(QAccessible::accessibleInterface(buttonId), nullptr);
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    QStringList arguments = QApplication::arguments();
    if (arguments.removeAll(QStringLiteral("--accessibility")) > 0) { // the switch is read once per process
        // Its own settings file, apart from the plain run that ctest may start beside it.
        QApplication::setApplicationName(QStringLiteral("tst_tabview-accessibility"));
        KQSettings::enableTestMode();
        KQSettings::userDefaults()->setValue(QStringLiteral("enableScriptingAutomationTesting"), true);
        if (!KQAccessibility::validForAutomateTesting())
            return 1;
        arguments << QStringLiteral("accessibility");
    }
    tst_TabView test;
    return QTest::qExec(&test, arguments);
}

#include "tst_tabview.moc"
