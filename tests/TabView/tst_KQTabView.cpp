#include "MessageCapture.h"
#include "TabViewTestSupport.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <memory>

class tst_KQTabView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void tabNotifiesOnlyChanges_data();
    void tabNotifiesOnlyChanges();
    void newIconIsRepainted();
    void initWithTabsSizing_data();
    void initWithTabsSizing();
    void subclassDrawsTheBar();
    void hiddenTabViewLaysOutAtOnce_data();
    void hiddenTabViewLaysOutAtOnce();
    void contentWidgetGoesBackToItsOwner_data();
    void contentWidgetGoesBackToItsOwner();
    void delegateMessages_data();
    void delegateMessages();
    void delegateMayDestroyTheTabView_data();
    void delegateMayDestroyTheTabView();
    void selectForeignTabIsRefused();
    void initialFirstResponderGetsFocus();
    void tabOperations_data();
    void tabOperations();
    void tagsActOnFirstTab();
    void destroyedTabDropsOut();
    void widgetReplacedWhileSelected();
    void destroyedViewWithDroppedTabs();
    void toolTipAtPoint_data();
    void toolTipAtPoint();
    void clickSequences_data();
    void clickSequences();
    void pressForgottenWhenHidden();
    void selectedLook();
    void pressedLook();
    void sharpIconsOnHighDpi();
    void noAccessibilityWhenSwitchedOff();

private:
    // A shown 200 x 100 tab view with tabs tagged 1, 2, 3 (tooltips "one",
    // "two", then none).
    KQTabView *makeTabView();
    QImage grabBar(KQTabView *view);

    std::unique_ptr<QWidget> m_window;
};

void tst_KQTabView::initTestCase()
{
    KQSettings::enableTestMode();
}

void tst_KQTabView::cleanup()
{
    m_window.reset();
}

KQTabView *tst_KQTabView::makeTabView()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    auto *view = new KQTabView(QRect(0, 0, 200, 100), m_window.get());
    view->setTabs({makeTab(view, 1, QStringLiteral("one")), makeTab(view, 2, QStringLiteral("two")), makeTab(view, 3)});
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    return view;
}

QImage tst_KQTabView::grabBar(KQTabView *view)
{
    return view->grab(QRect(0, 0, view->width(), 27)).toImage().convertToFormat(QImage::Format_ARGB32);
}

void tst_KQTabView::tabNotifiesOnlyChanges_data()
{
    // A property set to a first value, then to a second: how many
    // notifications the second brings.
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("second");
    QTest::addColumn<int>("notified");

    const QIcon red = makeIcon(Qt::red);
    QTest::newRow("same icon again") << QByteArray("icon") << QVariant(red) << QVariant(red) << 0;
    QTest::newRow("another icon") << QByteArray("icon") << QVariant(red) << QVariant(makeIcon(Qt::red)) << 1;
    QTest::newRow("no icon to no icon") << QByteArray("icon") << QVariant(QIcon()) << QVariant(QIcon()) << 0;
    QTest::newRow("same tag") << QByteArray("tag") << QVariant(qint64(5)) << QVariant(qint64(5)) << 0;
    QTest::newRow("another tag") << QByteArray("tag") << QVariant(qint64(5)) << QVariant(qint64(6)) << 1;
    QTest::newRow("no tooltip to empty tooltip")
        << QByteArray("iconTooltip") << QVariant(QString()) << QVariant(QStringLiteral("")) << 1;
    QTest::newRow("same tooltip") << QByteArray("iconTooltip") << QVariant(QStringLiteral("a"))
                                  << QVariant(QStringLiteral("a")) << 0;
}

void tst_KQTabView::tabNotifiesOnlyChanges()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, first);
    QFETCH(QVariant, second);
    QFETCH(int, notified);

    KQTab tab;
    const QMetaProperty meta = tab.metaObject()->property(tab.metaObject()->indexOfProperty(property));
    QVERIFY(meta.isValid() && meta.hasNotifySignal());
    QVERIFY(meta.write(&tab, first));
    QSignalSpy spy(&tab, meta.notifySignal());
    QVERIFY(meta.write(&tab, second));
    QCOMPARE(spy.count(), notified);
}

// Counts its paint events.
class CountingTabView : public KQTabView
{
public:
    using KQTabView::KQTabView;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        KQTabView::paintEvent(event);
    }
};

void tst_KQTabView::newIconIsRepainted()
{
    m_window = std::make_unique<QWidget>();
    auto *view = new CountingTabView(QRect(0, 0, 200, 100), m_window.get());
    KQTab *tab = makeTab(view, 1);
    view->setTabs({tab});
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCoreApplication::processEvents();
    view->paints = 0;
    tab->setIcon(makeIcon(Qt::blue));
    QCoreApplication::processEvents();
    QVERIFY(view->paints > 0);
}

// Changes the frame rule and the bar's drawing, as a subclass may.
class CustomTabView : public KQTabView
{
public:
    using KQTabView::KQTabView;
    QSizeF frameSizeForTabViewSize(const QSizeF &size) const override
    {
        return QSizeF(size.width() + 10, size.height() + 40);
    }
    void drawTabBarInRect(QPainter &painter, const QRectF &bar) override
    {
        bars << bar;
        KQTabView::drawTabBarInRect(painter, bar);
    }
    void drawTab(QPainter &, KQTab *tab, const QRectF &cell) override { cells << qMakePair(tab->tag(), cell); }

    QList<QRectF> bars;
    QList<QPair<qint64, QRectF>> cells;
};

void tst_KQTabView::initWithTabsSizing_data()
{
    QTest::addColumn<QList<QSize>>("viewSizes");
    QTest::addColumn<bool>("subclass");
    QTest::addColumn<QSize>("frame");

    QTest::newRow("largest width and height independently")
        << QList<QSize>{{200, 100}, {150, 300}} << false << QSize(200, 327);
    QTest::newRow("a tab without a view counts as nothing")
        << QList<QSize>{{-1, -1}, {80, 40}} << false << QSize(80, 67);
    QTest::newRow("no tabs") << QList<QSize>{} << false << QSize(0, 27);
    QTest::newRow("a subclass's frame rule") << QList<QSize>{{200, 100}, {150, 300}} << true << QSize(210, 340);
}

void tst_KQTabView::initWithTabsSizing()
{
    QFETCH(QList<QSize>, viewSizes);
    QFETCH(QSize, frame);

    QObject owner;
    QList<KQTab *> tabs;
    for (const QSize &size : viewSizes) {
        KQTab *tab = makeTab(&owner, tabs.size() + 1, QString(), size.isValid() ? size : QSize(10, 10));
        if (!size.isValid()) {
            delete tab->view();
            QCOMPARE(tab->view(), nullptr);
        }
        tabs << tab;
    }
    QFETCH(bool, subclass);
    const std::unique_ptr<KQTabView> made(subclass ? new CustomTabView(tabs) : new KQTabView(tabs));
    KQTabView &view = *made;
    // The first sizing a subclass's rule can take part in.
    view.ensurePolished();
    QCOMPARE(view.geometry(), QRect(QPoint(0, 0), frame));
    QCOMPARE(view.selectedTab(), tabs.value(0, nullptr));
    QCOMPARE(view.tabs(), tabs);
    if (QWidget *content = view.selectedTab() ? view.selectedTab()->view() : nullptr)
        QCOMPARE(content->geometry(), QRect(0, 27, frame.width(), frame.height() - 27));
}

void tst_KQTabView::subclassDrawsTheBar()
{
    QObject owner;
    CustomTabView view({makeTab(&owner, 1), makeTab(&owner, 2)});
    view.resize(300, 100);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    view.render(&image);
    QCOMPARE(view.bars, QList<QRectF>{QRectF(0, 0, 300, 27)});
    // Two cells centred on the middle: x = 150 - 40 = 110.
    const QList<QPair<qint64, QRectF>> cells{{1, QRectF(110, 0, 40, 26)}, {2, QRectF(150, 0, 40, 26)}};
    QCOMPARE(view.cells, cells);
}

void tst_KQTabView::hiddenTabViewLaysOutAtOnce_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("shownBefore");
    QTest::newRow("resize, never shown") << "resize" << false;
    QTest::newRow("setGeometry, never shown") << "setGeometry" << false;
    QTest::newRow("geometry property") << "geometry" << false;
    QTest::newRow("size property") << "size" << false;
    QTest::newRow("resize, hidden after showing") << "resize" << true;
}

void tst_KQTabView::hiddenTabViewLaysOutAtOnce()
{
    QFETCH(QString, how);
    QFETCH(bool, shownBefore);
    KQTabView view(QRect(0, 0, 200, 100));
    view.setTabs({makeTab(&view, 1)});
    if (shownBefore) {
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.hide();
    }
    if (how == QLatin1String("resize"))
        view.resize(300, 150);
    else if (how == QLatin1String("setGeometry"))
        view.setGeometry(0, 0, 300, 150);
    else if (how == QLatin1String("geometry"))
        view.setProperty("geometry", QRect(0, 0, 300, 150));
    else
        view.setProperty("size", QSize(300, 150));
    QVERIFY(view.isHidden());
    QCOMPARE(view.selectedTab()->view()->geometry(), QRect(0, 27, 300, 123));
}

void tst_KQTabView::contentWidgetGoesBackToItsOwner_data()
{
    QTest::addColumn<QString>("owner"); // of the content widget: "tab", "caller" or "tab view"
    QTest::addColumn<QString>("leaving"); // how the tab view stops showing it
    QTest::addColumn<bool>("outlivesTabView");
    QTest::addColumn<bool>("outlivesTab");

    QTest::newRow("its tab's, deselected") << "tab" << "select" << true << false;
    QTest::newRow("its tab's, tab dropped") << "tab" << "set" << true << false;
    QTest::newRow("the caller's, deselected") << "caller" << "select" << true << true;
    QTest::newRow("the caller's, tab dropped") << "caller" << "set" << true << true;
    QTest::newRow("made the tab view's by the caller") << "tab view" << "select" << false << false;
}

void tst_KQTabView::contentWidgetGoesBackToItsOwner()
{
    QFETCH(QString, owner);
    QFETCH(QString, leaving);
    QFETCH(bool, outlivesTabView);
    QFETCH(bool, outlivesTab);

    QWidget caller;
    auto view = std::make_unique<KQTabView>(QRect(0, 0, 200, 100));
    auto tabOwner = std::make_unique<QObject>();
    KQTab *tab = makeTab(tabOwner.get(), 1);
    QWidget *parent = owner == QLatin1String("caller")     ? &caller
                      : owner == QLatin1String("tab view") ? static_cast<QWidget *>(view.get())
                                                           : nullptr;
    delete tab->view();
    const QPointer<QWidget> content = new QWidget(parent);
    tab->setView(content);
    KQTab *other = makeTab(tabOwner.get(), 2);
    view->setTabs({tab, other});
    QCOMPARE(content->parentWidget(), view.get());

    if (leaving == QLatin1String("select"))
        view->selectTab(other);
    else
        view->setTabs({other});
    QCOMPARE(content->parentWidget(), parent);
    QVERIFY(content->isHidden());

    view.reset();
    QCOMPARE(!content.isNull(), outlivesTabView);
    tabOwner.reset();
    QCOMPARE(!content.isNull(), outlivesTab);
}

// Runs one operation written as "select T", "hide T", "hidesel T",
// "show T P", "replace OLD NEW P", "set T..." or "destroy T" (T: tags);
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
    if (verb == QLatin1String("hide")) {
        view->hideTab(arg(1));
    } else if (verb == QLatin1String("hidesel")) {
        return view->hideTabSelection(arg(1));
    } else if (verb == QLatin1String("show")) {
        view->showTab(arg(1), arg(2));
    } else if (verb == QLatin1String("replace")) {
        return view->replaceTab(arg(1), arg(2), arg(3));
    } else if (verb == QLatin1String("set")) {
        QList<KQTab *> tabs;
        for (qsizetype i = 1; i < words.size(); ++i)
            tabs << tagged(arg(i));
        view->setTabs(tabs);
    } else if (verb == QLatin1String("destroy")) {
        delete tagged(arg(1));
    } else {
        view->selectTab(tagged(arg(1)));
    }
    return true;
}

static QList<qint64> tagsOf(const QList<KQTab *> &tabs)
{
    QList<qint64> tags;
    for (KQTab *tab : tabs)
        tags << tab->tag();
    return tags;
}

void tst_KQTabView::delegateMessages_data()
{
    // Operations on tabs 1, 2, 3 with 1 selected; the messages, each with
    // the widget on show when it came.
    QTest::addColumn<QStringList>("operations");
    QTest::addColumn<QString>("log");

    QTest::newRow("old widget up at will, new one at did")
        << QStringList{QStringLiteral("select 3")} << QStringLiteral("will 3<-1 shown:view1; did 3<-1 shown:view3");
    QTest::newRow("reselecting is not short-cut")
        << QStringList{QStringLiteral("select 1")} << QStringLiteral("will 1<-1 shown:view1; did 1<-1 shown:view1");
    QTest::newRow("no tabs select nothing, new tabs select the first")
        << QStringList{QStringLiteral("set"), QStringLiteral("set 2 3")}
        << QStringLiteral("will -<-1 shown:view1; did -<-1 shown:; will 2<-- shown:; did 2<-- shown:view2");
}

void tst_KQTabView::delegateMessages()
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

void tst_KQTabView::delegateMayDestroyTheTabView_data()
{
    QTest::addColumn<bool>("inWill");
    QTest::addColumn<QString>("how"); // "click" on the second tab, or an operation for run()

    for (const bool inWill : {true, false}) {
        for (const char *how : {"select 2", "click", "hide 1", "set 2 3"})
            QTest::addRow("%s, %s", inWill ? "in will" : "in did", how) << inWill << QString::fromLatin1(how);
    }
}

void tst_KQTabView::delegateMayDestroyTheTabView()
{
    QFETCH(bool, inWill);
    QFETCH(QString, how);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    RecordingDelegate delegate;
    delegate.destroyIn = inWill ? "will" : "did";
    view->setDelegate(&delegate);
    const QPointer<KQTabView> watched(view);
    if (how == QLatin1String("click")) {
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(90, 10));
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(90, 10));
    } else {
        run(view, how);
    }
    // Nothing of the tab view may be touched once it is gone (run under
    // valgrind or ASan to see the difference).
    QVERIFY(watched.isNull());
    QVERIFY(m_window->findChildren<KQTabView *>().isEmpty());
}

void tst_KQTabView::selectForeignTabIsRefused()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    KQTabView other(QRect(0, 0, 100, 100));
    KQTab *foreign = makeTab(&other, 9);
    other.setTabs({foreign});
    RecordingDelegate delegate;
    view->setDelegate(&delegate);

    MessageCapture capture;
    view->selectTab(foreign);
    const QString report = QString::fromUtf8(capture.text());
    QVERIFY2(report.contains(QStringLiteral("tab == nil || [_tabs containsObject:tab]")), qPrintable(report));
    QCOMPARE(view->selectedTab(), view->tabs().at(0));
    QVERIFY(delegate.log.isEmpty());
    QCOMPARE(foreign->view()->parentWidget(), &other);
}

void tst_KQTabView::initialFirstResponderGetsFocus()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    KQTab *second = view->tabs().at(1);
    auto *field = new QLineEdit(second->view());
    second->setInitialFirstResponder(field);
    view->selectTab(second);
    QCOMPARE(QApplication::focusWidget(), field);
}

void tst_KQTabView::tabOperations_data()
{
    // On tabs 1, 2, 3 with 1 selected: set-up operations, then one more
    // whose result, tabsChanged signal and error report are checked; the
    // visible tags and the selected one (0: none) after it.
    QTest::addColumn<QStringList>("setup");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("result");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<QList<qint64>>("visible");
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("reported");

    using Tags = QList<qint64>;
    const auto row = [](const char *name, std::initializer_list<const char *> setup, const char *operation,
                        bool result, bool changed, const Tags &visible, int selected, bool reported = false) {
        QStringList steps;
        for (const char *step : setup)
            steps << QString::fromLatin1(step);
        QTest::newRow(name) << steps << QString::fromLatin1(operation) << result << changed << visible << selected
                            << reported;
    };

    // hideTab
    row("hide the selected: the first left is selected", {}, "hide 1", true, true, Tags{2, 3}, 2);
    row("hide another: selection kept", {"select 2"}, "hide 1", true, true, Tags{2, 3}, 2);
    row("hide every tab: nothing selected", {"select 3", "hide 3", "hide 1"}, "hide 2", true, true, Tags{}, 0);
    row("hide an unknown tag", {"select 2"}, "hide 42", true, false, Tags{1, 2, 3}, 2);
    row("hide a hidden tab", {"hide 3"}, "hide 3", true, false, Tags{1, 2}, 1);
    // hideTabSelection
    row("hide the selection: widget stays", {}, "hidesel 1", true, true, Tags{2, 3}, 1);
    row("hide selection of an unselected tab: hidden all the same", {}, "hidesel 2", false, true, Tags{1, 3}, 1);
    row("hide selection of an unknown tag", {}, "hidesel 42", false, false, Tags{1, 2, 3}, 1);
    // showTab
    row("show at given places, selection kept",
        {"hide 2", "hide 3", "show 3 0"}, "show 2 2", true, true, Tags{3, 1, 2}, 1);
    row("show an unknown tag", {"hide 3"}, "show 42 0", true, false, Tags{1, 2}, 1);
    row("show a visible tab", {"hide 3"}, "show 1 0", true, false, Tags{1, 2}, 1);
    row("show past the end: reported, stays hidden", {"hide 3"}, "show 3 5", true, false, Tags{1, 2}, 1, true);
    // replaceTab
    row("replace, new tab already in place: nothing happens", {}, "replace 1 2 1", false, false, Tags{1, 2, 3}, 1);
    row("replace, visible new tab moves, selected old one is replaced", {}, "replace 1 3 0", true, true, Tags{3, 2}, 3);
    row("replace, hidden new tab comes back, unselected old one hides",
        {"hide 3"}, "replace 2 3 1", true, true, Tags{1, 3}, 1);
    row("replace, hidden new tab replaces the selected old one",
        {"select 2", "hide 3"}, "replace 2 3 0", true, true, Tags{3, 1}, 3);
    row("replace, unknown new tag: the selected old tab hides, nothing selected",
        {"select 2"}, "replace 2 42 0", false, true, Tags{1, 3}, 0);
    row("replace, unknown new tag, unselected old tab", {}, "replace 2 42 0", false, true, Tags{1, 3}, 1);
    row("replace, unknown tags", {"hide 3"}, "replace 41 42 0", false, false, Tags{1, 2}, 1);
    // other operations
    row("set the same tabs", {"hide 3"}, "set 1 2", true, true, Tags{1, 2}, 1);
    row("destroy a visible tab", {"hide 3"}, "destroy 2", true, true, Tags{1}, 1);
    row("destroy a hidden tab", {"hide 3"}, "destroy 3", true, false, Tags{1, 2}, 1);
    row("select another tab", {"hide 3"}, "select 2", true, false, Tags{1, 2}, 2);
}

void tst_KQTabView::tabOperations()
{
    QFETCH(QStringList, setup);
    QFETCH(QString, operation);
    QFETCH(bool, result);
    QFETCH(bool, changed);
    QFETCH(QList<qint64>, visible);
    QFETCH(int, selected);
    QFETCH(bool, reported);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    for (const QString &step : setup)
        run(view, step);
    QSignalSpy spy(view, &KQTabView::tabsChanged);
    MessageCapture capture;
    QCOMPARE(run(view, operation), result);
    QCOMPARE(!capture.text().isEmpty(), reported);
    QCOMPARE(!spy.isEmpty(), changed);
    QCOMPARE(tagsOf(view->tabs()), visible);
    KQTab *selection = view->selectedTab();
    QCOMPARE(selection ? selection->tag() : 0, qint64(selected));
    if (selection)
        QVERIFY(!selection->view()->isHidden());
    // Hiding and showing lose no tab.
    if (!operation.startsWith(QLatin1String("set")) && !operation.startsWith(QLatin1String("destroy")))
        QCOMPARE(view->hiddenTabs().size() + view->tabs().size(), qsizetype(3));
    // The property reads what the signal announced.
    QCOMPARE(view->property("tabs").value<QList<KQTab *>>(), view->tabs());
}

void tst_KQTabView::tagsActOnFirstTab()
{
    KQTabView view(QRect(0, 0, 200, 100));
    KQTab *a = makeTab(&view, 7);
    KQTab *b = makeTab(&view, 7);
    view.setTabs({a, b});
    view.hideTab(7);
    QCOMPARE(view.tabs(), QList<KQTab *>{b});
    QCOMPARE(view.selectedTab(), b);
    view.showTab(7, 1);
    QCOMPARE(view.tabs(), (QList<KQTab *>{b, a}));
}

void tst_KQTabView::destroyedTabDropsOut()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->hideTab(3);
    delete view->tabs().at(1);
    delete view->hiddenTabs().at(0);
    QCOMPARE(view->tabs().size(), qsizetype(1));
    QVERIFY(view->hiddenTabs().isEmpty());
    const QPointer<QWidget> shown = view->selectedTab()->view();
    QVERIFY(!shown->isHidden());
    QSignalSpy changed(view, &KQTabView::selectedTabChanged);
    delete view->selectedTab();
    QCOMPARE(view->selectedTab(), nullptr);
    QVERIFY(view->tabs().isEmpty());
    // Its widget does not stay on show for a selection that is gone: its
    // tab owned it, so it went too.
    QVERIFY(shown.isNull());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).value<KQTab *>(), nullptr);
    QCOMPARE(view->tabAtPoint(QPointF(100, 10)), nullptr);
    // With nothing left the bar and its separator are still drawn.
    const QImage bar = grabBar(view);
    QCOMPARE(bar.pixel(100, 25), view->palette().color(QPalette::Button).rgba());
    QCOMPARE(bar.pixel(100, 26), view->palette().color(QPalette::Dark).rgba());
}

void tst_KQTabView::widgetReplacedWhileSelected()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    KQTab *first = view->tabs().at(0);
    QWidget *installed = first->view();
    auto *replacement = new QWidget(m_window.get());
    first->setView(replacement);
    // The widget on show is the one taken down, not the tab's new one.
    view->selectTab(view->tabs().at(1));
    QVERIFY(installed->isHidden());
    // The tab let go of it when given another: back to the caller.
    QCOMPARE(installed->parentWidget(), nullptr);
    delete installed;
    QVERIFY(!view->tabs().at(1)->view()->isHidden());
    view->resize(260, 120);
    QCOMPARE(view->tabs().at(1)->view()->geometry(), QRect(0, 27, 260, 93));
    // Selected again, the tab installs its new widget.
    view->selectTab(first);
    QCOMPARE(replacement->parentWidget(), view);
    QVERIFY(!replacement->isHidden());
    QCOMPARE(replacement->geometry(), QRect(0, 27, 260, 93));
    QVERIFY(view->tabs().at(1)->view()->isHidden());
}

void tst_KQTabView::destroyedViewWithDroppedTabs()
{
    // Tabs the view adopted and setTabs later dropped are still its children:
    // they die with it and must not call back into it (valgrind/ASan show it).
    auto view = std::make_unique<KQTabView>(QRect(0, 0, 200, 100));
    KQTab *kept = makeTab(nullptr, 1);
    KQTab *dropped = makeTab(nullptr, 2);
    view->setTabs({kept, dropped});
    view->setTabs({kept});
    view->setTabs({kept});
    QCOMPARE(dropped->parent(), view.get());
    const QPointer<KQTab> watched(dropped);
    view.reset();
    QVERIFY(watched.isNull());
}

void tst_KQTabView::toolTipAtPoint_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QVariant>("tooltip");

    QTest::newRow("first cell") << QPointF(50, 10) << QVariant(QStringLiteral("one"));
    QTest::newRow("shared edge") << QPointF(80, 10) << QVariant(QStringLiteral("two"));
    QTest::newRow("tab without tooltip") << QPointF(130, 10) << QVariant();
    QTest::newRow("content area") << QPointF(50, 60) << QVariant();
}

void tst_KQTabView::toolTipAtPoint()
{
    QFETCH(QPointF, point);
    QFETCH(QVariant, tooltip);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    auto *tipping = qobject_cast<ToolTipping_ZL *>(view);
    QVERIFY(tipping);
    bool wrap = true;
    const QVariant answer = tipping->toolTipAtPoint(point, &wrap);
    QCOMPARE(answer.isValid(), tooltip.isValid());
    if (tooltip.isValid()) {
        QCOMPARE(answer.typeId(), QMetaType::QString);
        QCOMPARE(answer.toString(), tooltip.toString());
    }
    QVERIFY(wrap);
}

void tst_KQTabView::clickSequences_data()
{
    // Steps "pX" (press), "mX" (move with the button down), "rX" (release),
    // all at y = 10; the pressed tag after each step; the selected tag at
    // the end; whether the delegate hears of it.
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QList<int>>("pressed");
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("told");

    QTest::newRow("click the third") << QStringLiteral("p130 r130") << QList<int>{3, 0} << 3 << true;
    QTest::newRow("press first, drag to second, release") << QStringLiteral("p50 m90 r90") << QList<int>{1, 2, 0}
                                                          << 2 << true;
    QTest::newRow("drag off the cells, release: nothing selected") << QStringLiteral("p130 m190 r190")
                                                                   << QList<int>{3, 0, 0} << 1 << false;
    QTest::newRow("off and back on") << QStringLiteral("p130 m10 m125 r125") << QList<int>{3, 0, 3, 0} << 3 << true;
    QTest::newRow("stray release over a cell") << QStringLiteral("r90") << QList<int>{0} << 2 << true;
}

void tst_KQTabView::clickSequences()
{
    QFETCH(QString, steps);
    QFETCH(QList<int>, pressed);
    QFETCH(int, selected);
    QFETCH(bool, told);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    RecordingDelegate delegate;
    view->setDelegate(&delegate);
    const QStringList list = steps.split(QLatin1Char(' '));
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QPoint point(list[i].mid(1).toInt(), 10);
        if (list[i].startsWith(QLatin1Char('p')))
            QTest::mousePress(view, Qt::LeftButton, {}, point);
        else if (list[i].startsWith(QLatin1Char('m')))
            QTest::mouseMove(view, point);
        else
            QTest::mouseRelease(view, Qt::LeftButton, {}, point);
        const KQTab *down = view->pressedDownTab();
        QCOMPARE(down ? int(down->tag()) : 0, pressed[i]);
    }
    QCOMPARE(view->selectedTab()->tag(), qint64(selected));
    QCOMPARE(!delegate.log.isEmpty(), told);
}

void tst_KQTabView::pressForgottenWhenHidden()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(130, 10));
    QCOMPARE(view->pressedDownTab(), view->tabs().at(2));
    m_window->hide();
    QCOMPARE(view->pressedDownTab(), nullptr);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCOMPARE(view->pressedDownTab(), nullptr);
    QCOMPARE(view->selectedTab(), view->tabs().at(0));
}

void tst_KQTabView::selectedLook()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->selectTab(view->tabs().at(1)); // cell x 80..120, no icon
    const QImage bar = grabBar(view);
    const QRgb background = view->palette().color(QPalette::Button).rgba();

    // Unselected cell and the space beside the cells: plain bar colour.
    QCOMPARE(bar.pixel(50, 13), background);
    QCOMPARE(bar.pixel(5, 13), background);
    // The separator runs along the bottom row of the whole bar.
    QCOMPARE(bar.pixel(0, 26), view->palette().color(QPalette::Dark).rgba());
    // Selected cell: darker at the left and right edges in the middle row...
    const int edgeLeft = bar.pixelColor(80, 13).lightness();
    const int edgeRight = bar.pixelColor(119, 13).lightness();
    const int middle = bar.pixelColor(100, 13).lightness();
    const int plain = QColor(background).lightness();
    QVERIFY2(edgeLeft < plain - 20, qPrintable(QString::number(edgeLeft)));
    QVERIFY2(edgeRight < plain - 20, qPrintable(QString::number(edgeRight)));
    QVERIFY2(qAbs(middle - plain) <= 2, qPrintable(QString::number(middle)));
    // ...fading out toward the top and bottom of the cell.
    const int edgeTop = bar.pixelColor(80, 0).lightness();
    QVERIFY2(qAbs(edgeTop - plain) <= 3, qPrintable(QString::number(edgeTop)));
    const int edgeQuarter = bar.pixelColor(80, 6).lightness();
    QVERIFY(edgeQuarter > edgeLeft && edgeQuarter < plain);
}

void tst_KQTabView::pressedLook()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    for (KQTab *tab : view->tabs())
        tab->setIcon(makeIcon(QColor(255, 0, 0)));
    const QRgb background = view->palette().color(QPalette::Button).rgba();

    // Icon of the first cell (40..80) at (52, 5) 16 x 16; its top-left
    // quadrant is transparent. The first tab is selected: test the second.
    QImage bar = grabBar(view);
    QCOMPARE(bar.pixelColor(95, 15), QColor(255, 0, 0));
    QCOMPARE(bar.pixel(93, 6), background);

    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(100, 10));
    QCOMPARE(view->pressedDownTab(), view->tabs().at(1));
    bar = grabBar(view);
    // Only the icon's opaque pixels darken, by 40 % black.
    QCOMPARE(bar.pixelColor(95, 15), QColor(153, 0, 0));
    QCOMPARE(bar.pixel(93, 6), background);  // transparent quadrant
    QCOMPARE(bar.pixel(85, 15), background); // beside the icon
    QCOMPARE(bar.pixelColor(135, 15), QColor(255, 0, 0)); // the third tab is not pressed

    QTest::mouseMove(view, QPoint(190, 10));
    bar = grabBar(view);
    QCOMPARE(bar.pixelColor(95, 15), QColor(255, 0, 0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(190, 10));
}

void tst_KQTabView::sharpIconsOnHighDpi()
{
    // An icon with a 32 x 32 version for density 2 in stripes one device
    // pixel wide: drawn at density 2 they must stay one pixel wide.
    QImage stripes(32, 32, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            stripes.setPixelColor(x, y, x % 2 ? QColor(0, 0, 255) : QColor(255, 255, 0));
    QPixmap high = QPixmap::fromImage(stripes);
    high.setDevicePixelRatio(2.0);
    QIcon icon;
    icon.addPixmap(QPixmap::fromImage(stripes.scaled(16, 16)));
    icon.addPixmap(high);

    KQTabView view(QRect(0, 0, 200, 100));
    KQTab *tab = makeTab(&view, 1);
    tab->setIcon(icon);
    view.setTabs({tab}); // one cell at x 80, icon at (92, 5)
    QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2.0);
    image.fill(Qt::white);
    view.render(&image);
    const int y = 2 * 5 + 10;
    for (int x = 2 * 92 + 4; x < 2 * 92 + 12; ++x) {
        const QColor expected = (x - 2 * 92) % 2 ? QColor(0, 0, 255) : QColor(255, 255, 0);
        QCOMPARE(image.pixelColor(x, y), expected);
    }
}

void tst_KQTabView::noAccessibilityWhenSwitchedOff()
{
    QVERIFY(!KQAccessibility::validForAutomateTesting());
    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->setTabs(view->tabs());
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    QVERIFY(iface);
    for (int i = 0; i < iface->childCount(); ++i) {
        QVERIFY(iface->child(i));
        QVERIFY(iface->child(i)->text(QAccessible::Name) != QStringLiteral("TabView Group"));
        QVERIFY(iface->child(i)->object()); // only widgets
    }
    QCOMPARE(view->accessibilityChildren().size(), qsizetype(iface->childCount()));
    QCOMPARE(view->kqAccessibilityTabView(), nullptr);
}

QTEST_MAIN(tst_KQTabView)
#include "tst_KQTabView.moc"
