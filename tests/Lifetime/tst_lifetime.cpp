// Every participant of the interactive components destroyed at an awkward
// moment (mid-animation, with a timer pending, inside its own delegate message,
// during a drag, while a tooltip fades): the survivors carry on and nothing is
// reported; the sanitizer build adds that nothing freed is read and nothing
// leaks. Then bad input from outside: damaged or unwritable settings, a screen
// that goes away, an application that quits mid-animation.
#include "MessageCapture.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQApplication.h>
#include <TarnCommon/TarnCommon.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <qpa/qplatformnativeinterface.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>

namespace {

// What runs when a participant gets a message, by message; it may destroy the participant.
std::map<QByteArray, std::function<void()>> g_hooks;
void fire(const char *message)
{
    if (const auto hook = std::exchange(g_hooks[message], {}))
        hook();
}

// Takes every running animation under root to its end, as the clock would.
void finishAnimations(QObject *root)
{
    QList<QPointer<QVariantAnimation>> animations;
    for (QVariantAnimation *animation : root ? root->findChildren<QVariantAnimation *>() : QList<QVariantAnimation *>())
        animations.append(animation);
    for (const QPointer<QVariantAnimation> &animation : animations)
        if (animation && animation->state() == QAbstractAnimation::Running)
            animation->setCurrentTime(animation->totalDuration());
}

// Every victim at every moment, then the extra pairs.
void addRows(std::initializer_list<const char *> victims, std::initializer_list<const char *> moments,
             std::initializer_list<std::pair<const char *, const char *>> extra = {})
{
    QTest::addColumn<QByteArray>("victim");
    QTest::addColumn<QByteArray>("moment");
    for (const char *victim : victims)
        for (const char *moment : moments)
            QTest::addRow("%s, %s", victim, moment) << QByteArray(victim) << QByteArray(moment);
    for (const auto &[victim, moment] : extra)
        QTest::addRow("%s, %s", victim, moment) << QByteArray(victim) << QByteArray(moment);
}

// Keeps the first count of the offscreen platform's screens as configured at start.
bool keepScreens(qsizetype count)
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    using Get = QJsonObject (*)(QPlatformNativeInterface *);
    using Set = void (*)(const QJsonObject &, QPlatformNativeInterface *);
    auto get = native ? reinterpret_cast<Get>(native->nativeResourceForIntegration("configuration")) : nullptr;
    auto set = native ? reinterpret_cast<Set>(native->nativeResourceForIntegration("setConfiguration")) : nullptr;
    if (!get || !set)
        return false;
    static const QJsonArray all = get(native).value(QStringLiteral("screens")).toArray();
    QJsonObject configuration = get(native);
    QJsonArray kept;
    for (qsizetype i = 0; i < count && i < all.size(); ++i)
        kept.append(all[i]);
    configuration[QStringLiteral("screens")] = kept;
    set(configuration, native);
    QCoreApplication::processEvents();
    return QGuiApplication::screens().size() == count;
}

class HookMode : public KQInspectorMode
{
public:
    using KQInspectorMode::KQInspectorMode;
    void modeWillShow() override { fire("in willShow"); }
    QSizeF minSize() const override { return QSizeF(100, 60); }
    void loadView() override { setView(new QWidget); }
};

class HookOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)
public:
    explicit HookOwner(QObject *parent) : QObject(parent), mode(new HookMode(this)) {}
    QPointer<KQInspectorMode> mode;
    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        const QPointer<HookOwner> self(this);
        fire("in willGain");
        return self ? self->mode.data() : nullptr;
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { fire("in didGain"); }
};

// The delegate of a tab view or of a collapsible list.
class HookDelegate : public QObject, public KQTabViewDelegate, public KQCollapsibleListViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(KQTabViewDelegate)
    void tabViewWillChangeToTab(KQTabView *, KQTab *, KQTab *) override { fire("in will"); }
    void tabViewDidChangeToTab(KQTabView *, KQTab *, KQTab *) override { fire("in did"); }
    void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double, double, KQViewAnimations &) override
    {
        fire("in list delegate");
    }
};

// The list is the views' delegate: its own messages carry hooks too.
class HookList : public KQCollapsibleListView
{
public:
    using KQCollapsibleListView::KQCollapsibleListView;
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override
    {
        KQCollapsibleListView::collapsableViewFinishedAnimations(view, animations);
        fire("in finished");
    }
};

// A widget answering its own name as its tooltip, filling a window of its own at (100, 100).
class HookAnswering : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    explicit HookAnswering(const char *name) : QWidget(new QWidget)
    {
        setObjectName(QLatin1String(name));
        window()->setGeometry(100, 100, 300, 200);
        setGeometry(0, 0, 300, 200);
        window()->show();
    }
    QVariant toolTipAtPoint(QPointF, bool *) override
    {
        const QVariant answer = objectName();
        fire("in answer");
        return answer;
    }
};

// An application that quits while a collapse animation runs, with the shared
// inspector on screen and the shared tooltip showing: the list's state is
// saved, and all the library made is gone with the application object.
int quitMidAnimation(int argc, char *argv[])
{
    const auto fail = [](const char *what) {
        std::fprintf(stderr, "%s\n", what);
        return 1;
    };
    QList<QPointer<QObject>> made; // the shared objects and the animation
    QPointer<QVariantAnimation> animation;
    QStringList saved;
    {
        KQApplication application(argc, argv);
        KQSettings::enableTestMode();
        KQInspectorWindow::sharedInspectorWindow()->orderFont();
        ToolTipController_ZL *controller = ToolTipController_ZL::sharedToolTipController();
        controller->startup();
        controller->toolTipWindow()->setString(QStringLiteral("shown at exit"), true);
        controller->toolTipWindow()->show();
        made = {KQInspectorWindow::sharedInspectorWindow(), controller, controller->toolTipWindow()};
        KQCollapsibleListView list(QRect(100, 100, 200, 300));
        auto *view = new KQCollapsibleView(QStringLiteral("Details"), new QWidget, true, false);
        list.addCollapsableView(view);
        list.setAutosaveName(QStringLiteral("QuitList"));
        list.show();
        QTimer::singleShot(0, view, [&] {
            view->setCollapsed(true, true);
            animation = view->currentAnimation();
            QCoreApplication::quit();
        });
        application.exec();
        if (!animation || animation->state() != QAbstractAnimation::Running)
            return fail("the collapse animation was not running at the quit");
        made.append(animation.data());
        saved = KQSettings::userDefaults()->value(QStringLiteral("QuitList")).toStringList();
    }
    if (saved != QStringList{QStringLiteral("Details")})
        return fail("the collapsed view was not saved at the quit");
    const bool outlived = std::any_of(made.cbegin(), made.cend(), [](const QPointer<QObject> &object) { return object; });
    return outlived ? fail("a shared object or the animation outlived the application") : 0;
}

} // namespace

class TestLifetime : public QObject
{
    Q_OBJECT

    double now = 100.0;
    QByteArray victim, moment;
    std::map<QByteArray, QPointer<QObject>> cast; // the row's participants by name
    bool killed = false;
    std::optional<MessageCapture> capture; // nothing may be reported unless a test captures it itself

    // Reads the row and names its participants; a moment that is a message
    // (its name starts with "in ") destroys the victim when the message comes.
    void fetchRow(std::map<QByteArray, QPointer<QObject>> participants)
    {
        victim = *static_cast<QByteArray *>(QTest::qData("victim", qMetaTypeId<QByteArray>()));
        moment = *static_cast<QByteArray *>(QTest::qData("moment", qMetaTypeId<QByteArray>()));
        cast = std::move(participants);
        killed = false;
        if (moment.startsWith("in "))
            g_hooks[moment] = [this] { kill(); };
    }
    void kill()
    {
        killed = true;
        delete cast.at(victim).data();
    }
    // Destroys the victim unless its moment did, then what was deleted later; false when a message never came.
    bool victimGone()
    {
        if (!killed && !moment.startsWith("in "))
            kill();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        return killed;
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void init() { capture.emplace(); }
    void cleanup()
    {
        g_hooks.clear();
        for (auto &[name, part] : std::exchange(cast, {}))
            delete part.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        KQSettings::userDefaults()->clear();
        QCOMPARE(capture->text(), QByteArray());
    }

    void inspector_data()
    {
        addRows({"mode", "owner", "document"}, {"shown", "in willGain", "in didGain", "in willShow"},
                {{"inspector", "shown"}, {"inspector", "frame save pending"}, {"inspector", "refresh pending"},
                 {"document", "refresh pending"}});
    }

    void inspector()
    {
        QPointer<QWidget> document = new QWidget;
        QPointer<HookOwner> owner = new HookOwner(document);
        QPointer<KQInspectorWindow> inspector = new KQInspectorWindow;
        inspector->setClock([this] { return now; });
        inspector->setFrameAutosaveName(QStringLiteral("LifetimeInspector"));
        document->show();
        QVERIFY(QTest::qWaitForWindowExposed(document));
        fetchRow({{"mode", owner->mode.data()}, {"owner", owner.data()}, {"document", document.data()},
                  {"inspector", inspector.data()}});
        inspector->orderFont();
        inspector->setFocusOwner(owner);
        if (moment == "refresh pending") {
            inspector->setFocusOwner(nullptr);
            auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
            QVERIFY(empty && empty->refreshTimer()->isActive());
            const QPointer<QTimer> refresh = empty->refreshTimer();
            kill();
            QVERIFY(!refresh || QMetaObject::invokeMethod(refresh, "timeout"));
        } else if (moment == "frame save pending") {
            inspector->move(inspector->pos() + QPoint(7, 5));
            QVERIFY(inspector->hasUnsavedFrame());
        }
        QVERIFY(victimGone());
        if (!inspector && moment == "frame save pending") // its last frame was kept on the way out
            QVERIFY(!KQSettings::userDefaults()->value(QStringLiteral("LifetimeInspector")).toByteArray().isEmpty());
        if (inspector) {
            now += 1;
            inspector->poll();
            QVERIFY(!inspector->hasUnsavedFrame());
            QVERIFY(owner || !inspector->focusOwner());
            auto *next = new HookOwner(inspector); // it carries on: a new owner brings its mode in
            inspector->setFocusOwner(next);
            QCOMPARE(inspector->mode(), next->mode.data());
            QVERIFY(inspector->mode()->view()->isVisibleTo(inspector));
        }
    }

    void tabView_data() { addRows({"delegate", "target tab", "selected tab", "content", "tab view"}, {"in will", "in did", "drag"}); }

    void tabView()
    {
        QWidget window;
        QPointer<KQTabView> tabView = new KQTabView(&window);
        const QList<KQTab *> tabs{new KQTab, new KQTab, new KQTab};
        for (KQTab *tab : tabs)
            tab->setView(new QWidget);
        tabView->setTabs(tabs);
        tabView->setGeometry(0, 0, 300, 200);
        QPointer<HookDelegate> delegate = new HookDelegate;
        tabView->setDelegate(delegate);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto cell = [&](int i) {
            const auto cells = tabView->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(tabView->rect())));
            return cells.value(i < 0 ? cells.size() - 1 : i).center().toPoint();
        };
        fetchRow({{"delegate", delegate.data()}, {"target tab", tabs[1]}, {"selected tab", tabs[0]},
                  {"content", tabs[0]->view()}, {"tab view", tabView.data()}});
        const QPoint target = cell(1);
        QTest::mousePress(tabView, Qt::LeftButton, {}, cell(2)); // the third tab, dragged onto the target
        QTest::mouseMove(tabView, target);
        if (moment == "drag") {
            QCOMPARE(tabView->pressedDownTab(), tabs[1]);
            kill();
        }
        // Released on the window when the tab view went (the button must not stay down).
        QTest::mouseRelease(tabView ? static_cast<QWidget *>(tabView) : &window, Qt::LeftButton, {}, target);
        QVERIFY(victimGone());
        if (tabView) {
            QVERIFY(!tabView->tabs().contains(nullptr));
            QVERIFY(!tabView->selectedTab() || tabView->tabs().contains(tabView->selectedTab()));
            QCOMPARE(tabView->pressedDownTab(), nullptr);
            QTest::mouseClick(tabView, Qt::LeftButton, {}, cell(-1)); // a click on the last tab still selects it
            QCOMPARE(tabView->selectedTab(), tabView->tabs().constLast());
        }
    }

    void collapsible_data()
    {
        addRows({"view", "content", "view below", "list", "list delegate"}, {"mid-animation", "in list delegate", "in finished"});
    }

    void collapsible()
    {
        QPointer<HookList> list = new HookList(QRect(0, 0, 200, 300));
        list->setAutosaveName(QStringLiteral("LifetimeList"));
        for (const char *title : {"A", "B", "C"}) {
            auto *content = new QWidget;
            content->resize(200, 80);
            list->addCollapsableView(new KQCollapsibleView(QLatin1String(title), content, true, *title == 'B'));
        }
        QPointer<HookDelegate> listDelegate = new HookDelegate;
        list->setDelegate(listDelegate);
        list->show();
        QVERIFY(QTest::qWaitForWindowExposed(list));
        KQCollapsibleView *view = list->collapsableViews()[0];
        fetchRow({{"view", view}, {"content", view->contentView()}, {"view below", list->collapsableViews()[1]},
                  {"list", list.data()}, {"list delegate", listDelegate.data()}});
        view->setCollapsed(true, true);
        if (moment == "mid-animation") {
            QVERIFY(view->currentAnimation());
            view->currentAnimation()->setCurrentTime(KQCollapsibleView::AnimationDurationMs / 2);
            kill();
        }
        finishAnimations(list);
        QVERIFY(victimGone());
        if (!list) // it kept its state on the way out
            QCOMPARE(KQSettings::userDefaults()->value(QStringLiteral("LifetimeList")).toStringList(), QStringList{QStringLiteral("A")});
        if (list) {
            QVERIFY(!list->isLayoutBlocked());
            int bottom = 0; // the survivors are stacked without gaps, and still collapse
            for (KQCollapsibleView *survivor : list->collapsableViews()) {
                QCOMPARE(survivor->y(), bottom);
                bottom += survivor->height();
            }
            KQCollapsibleView *last = list->collapsableViews().constLast();
            last->setCollapsed(true, true);
            finishAnimations(list);
            QCOMPARE(last->height(), int(KQCollapsibleView::HeaderHeight));
        }
    }

    void toolTips_data() { addRows({"answering widget", "window", "tooltip window", "controller"}, {"rest pending", "in answer", "shown", "fading"}); }

    void toolTips()
    {
        auto *answering = new HookAnswering("first");
        QPointer<QWidget> window = answering->window();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QPointer<ToolTipController_ZL> controller = new ToolTipController_ZL;
        KQToolTipRules::ToolTipControllerTiming(controller).setClock([this] { return now; });
        KQToolTipRules::ToolTipControllerTiming(controller).setPointerLocation([] { return QPointF(150, 160); });
        controller->startup();
        QPointer<ToolTipWindow_ZL> tip = controller->toolTipWindow();
        fetchRow({{"answering widget", answering}, {"window", window.data()}, {"tooltip window", tip.data()},
                  {"controller", controller.data()}});
        const auto poll = [&](double seconds) {
            now += seconds;
            if (controller)
                controller->poll();
        };
        const auto moveTo = [&](QPoint at) { // away first: a move to where the last row left the pointer is none
            QTest::mouseMove(window, QPoint(10, 10));
            QTest::mouseMove(window, at);
            poll(0.5);
        };
        moveTo(QPoint(50, 60));
        if (moment == "rest pending") {
            QVERIFY(!tip->isVisible());
            kill();
        }
        poll(0.6);
        if (moment == "shown" || moment == "fading") {
            QVERIFY(tip->isShown());
            if (moment == "fading") {
                tip->hide(true);
                auto *fade = tip->findChild<QVariantAnimation *>();
                QVERIFY(tip->isFading() && fade);
                fade->setCurrentTime(ToolTipWindow_ZL::fadeDuration / 2);
            }
            kill();
        }
        finishAnimations(tip);
        for (int i = 0; i < 4; ++i)
            poll(0.5);
        QVERIFY(victimGone());
        if (controller) { // it carries on: a new answer under the resting pointer shows
            delete window.data();
            cast["window"] = window = (new HookAnswering("second"))->window();
            QVERIFY(QTest::qWaitForWindowExposed(window));
            moveTo(QPoint(60, 70));
            poll(0.6);
            QVERIFY(controller->toolTipWindow() && controller->toolTipWindow()->isShown());
            QCOMPARE(controller->toolTipWindow()->attributedString().toPlainText(), QStringLiteral("second"));
        }
    }

    void settings_data()
    {
        QTest::addColumn<QString>("key"); // none: a folder stands in the file's place, which no permission lets through
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QByteArrayList>("reports"); // parts the report holds; none for no report
        const QString list = QStringLiteral("LifetimeList"), frame = QStringLiteral("LifetimeInspector");
        const QByteArrayList notList{"is not a list of titles"}, damaged{"is damaged"};
        QTest::newRow("list: a number") << list << QVariant(42) << notList;
        QTest::newRow("list: mixed entries") << list << QVariant(QVariantList{QStringLiteral("A"), 7, QVariantMap{}}) << notList;
        QTest::newRow("list: 100000 titles") << list << QVariant(QStringList(100000, QStringLiteral("x"))) << QByteArrayList();
        QTest::newRow("list: a 4 MB title") << list << QVariant(QString(4 << 20, QLatin1Char('A'))) << QByteArrayList();
        QTest::newRow("frame: text") << frame << QVariant(QStringLiteral("100 100 300 300")) << damaged;
        QTest::newRow("frame: random bytes") << frame << QVariant(QByteArray(64, '\xff')) << damaged;
        QTest::newRow("frame: 1 MB of bytes") << frame << QVariant(QByteArray(1 << 20, '\x01')) << damaged;
        QTest::newRow("file not writable") << QString() << QVariant()
                                           << QByteArrayList{"\"LifetimeList\" could not be saved",
                                                             "\"LifetimeInspector\" could not be saved"};
    }

    void settings()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QByteArrayList, reports);
        const QString path = KQSettings::userDefaults()->fileName();
        if (key.isEmpty()) {
            QFile::remove(path);
            QVERIFY(QDir().mkpath(path));
        } else {
            KQSettings::userDefaults()->setValue(key, stored);
        }
        MessageCapture capture;
        {
            KQCollapsibleListView list(QRect(0, 0, 200, 300));
            list.addCollapsableView(new KQCollapsibleView(QStringLiteral("A"), new QWidget, true, false));
            list.setAutosaveName(QStringLiteral("LifetimeList"));
            KQInspectorWindow inspector;
            const QRect frameBefore = inspector.geometry();
            inspector.setFrameAutosaveName(QStringLiteral("LifetimeInspector"));
            // Neutral results: the inspector keeps its frame, the list its views.
            QCOMPARE(inspector.geometry(), frameBefore);
            QCOMPARE(list.collapsableViews().size(), 1);
            QCOMPARE(list.collapsableViews()[0]->isCollapsed(), stored.typeId() == QMetaType::QVariantList);
            list.collapsableViews()[0]->setCollapsed(true, false);
            list.saveToAutosaveName();
            inspector.saveFrameNow();
        }
        const QByteArray text = capture.text();
        QVERIFY(!key.isEmpty() || QDir(path).removeRecursively());
        QVERIFY2(reports.isEmpty() == text.isEmpty(), text.constData());
        for (const QByteArray &part : reports)
            QVERIFY2(text.contains(part), text.constData());
    }

    void screenRemoved_data()
    {
        QTest::addColumn<QByteArray>("what");
        for (const char *what : {"inspector", "tooltip", "collapsing list"})
            QTest::newRow(what) << QByteArray(what);
    }

    void screenRemoved()
    {
        QFETCH(QByteArray, what);
        QVERIFY(keepScreens(2));
        QScreen *second = QGuiApplication::screens()[1];
        const QPoint inside = second->geometry().topLeft() + QPoint(50, 50);
        KQInspectorWindow inspector;
        inspector.move(inside);
        ToolTipController_ZL controller;
        controller.startup();
        ToolTipWindow_ZL *tip = controller.toolTipWindow();
        tip->setString(QStringLiteral("on the second screen"), true);
        tip->positionAtMouseLocation(inside);
        KQCollapsibleListView list(QRect(inside, QSize(200, 300)));
        auto *view = new KQCollapsibleView(QStringLiteral("A"), new QWidget, true, false);
        list.addCollapsableView(view);
        QWidget *shown = what == "inspector" ? &inspector : what == "tooltip" ? static_cast<QWidget *>(tip) : &list;
        shown->show();
        if (what == "tooltip")
            tip->hide(true); // fading as its screen goes
        if (what == "collapsing list")
            view->setCollapsed(true, true); // animating as its screen goes
        QVERIFY(QTest::qWaitForWindowExposed(shown));
        QCOMPARE(shown->screen(), second);
        QVERIFY(keepScreens(1));
        QCOMPARE(shown->screen(), QGuiApplication::primaryScreen());
        finishAnimations(shown);
        QVERIFY(what != "collapsing list" || view->height() == int(KQCollapsibleView::HeaderHeight));
        QVERIFY(what != "tooltip" || !controller.toolTipWindow() || !controller.toolTipWindow()->isVisible());
    }
};

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--quit-mid-animation") == 0)
        return quitMidAnimation(1, argv);
    KQApplication application(argc, argv);
    TestLifetime test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lifetime.moc"
