// Participants destroyed at awkward moments: the survivors carry on, nothing is reported and
// (in the sanitizer build) nothing freed is read. Then bad settings, a lost screen, a quit.
#include "MessageCapture.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQApplication.h>
#include <TarnCommon/TarnCommon.h>

#include <QtGui/QScreen>
#include <QtTest/QtTest>
#include <qpa/qplatformnativeinterface.h>

#include <cstdio>
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
    const QList<QVariantAnimation *> found = root ? root->findChildren<QVariantAnimation *>() : QList<QVariantAnimation *>();
    for (const QPointer<QVariantAnimation> &animation : QList<QPointer<QVariantAnimation>>(found.cbegin(), found.cend()))
        if (animation && animation->state() == QAbstractAnimation::Running)
            animation->setCurrentTime(animation->totalDuration());
}

void addRows(std::initializer_list<const char *> victims, std::initializer_list<const char *> moments)
{
    QTest::addColumn<QByteArray>("victim");
    QTest::addColumn<QByteArray>("moment");
    for (const char *victim : victims)
        for (const char *moment : moments)
            QTest::addRow("%s, %s", victim, moment) << QByteArray(victim) << QByteArray(moment);
}

// Leaves the offscreen platform only its first screen.
bool removeAllButFirstScreen()
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    const auto get = reinterpret_cast<QJsonObject (*)(QPlatformNativeInterface *)>(native->nativeResourceForIntegration("configuration"));
    const auto set = reinterpret_cast<void (*)(const QJsonObject &, QPlatformNativeInterface *)>(
        native->nativeResourceForIntegration("setConfiguration"));
    if (!get || !set)
        return false;
    QJsonObject configuration = get(native);
    configuration[QStringLiteral("screens")] = QJsonArray{configuration.value(QStringLiteral("screens")).toArray().first()};
    set(configuration, native);
    QCoreApplication::processEvents();
    return QGuiApplication::screens().size() == 1;
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

// A widget answering the tooltip "tip" wherever it is asked.
class HookAnswering : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    using QWidget::QWidget;
    QVariant toolTipAtPoint(QPointF, bool *) override
    {
        fire("in answer");
        return QStringLiteral("tip");
    }
};

// Quitting while a collapse animation runs, the shared inspector on screen: the
// list's state is saved, and what the library made is gone with the application.
int quitMidAnimation(int argc, char *argv[])
{
    QList<QPointer<QObject>> made; // the inspector, then the animation
    bool running = false;
    QStringList saved;
    {
        KQApplication application(argc, argv);
        // A settings file of its own: ctest may run the table beside this run, and
        // the two would clear and lock each other's file.
        QCoreApplication::setApplicationName(QStringLiteral("tst_lifetime-quit"));
        KQSettings::enableTestMode();
        KQInspectorWindow::sharedInspectorWindow()->orderFont();
        KQCollapsibleListView list(QRect(100, 100, 200, 300));
        auto *view = new KQCollapsibleView(QStringLiteral("Details"), new QWidget, true, false);
        list.addCollapsableView(view);
        list.setAutosaveName(QStringLiteral("QuitList"));
        list.show();
        QTimer::singleShot(0, view, [&] {
            view->setCollapsed(true, true);
            made = {KQInspectorWindow::sharedInspectorWindow(), view->currentAnimation()};
            QCoreApplication::quit();
        });
        application.exec();
        const auto *animation = qobject_cast<QVariantAnimation *>(made.value(1).data());
        running = animation && animation->state() == QAbstractAnimation::Running;
        saved = KQSettings::userDefaults()->value(QStringLiteral("QuitList")).toStringList();
    }
    const bool outlived = std::any_of(made.cbegin(), made.cend(), [](const QPointer<QObject> &object) { return object; });
    std::fprintf(stderr, "running at the quit: %d, saved: %s, outlived: %d\n", running, qPrintable(saved.join(u',')), outlived);
    return running && saved == QStringList{QStringLiteral("Details")} && !outlived ? 0 : 1;
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
        if (victim == "screen")
            QVERIFY(removeAllButFirstScreen());
        else
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
        addRows({"mode", "owner", "document"}, {"shown", "in willGain", "in didGain", "in willShow"});
        QTest::newRow("inspector, shown") << QByteArray("inspector") << QByteArray("shown");
        QTest::newRow("inspector, frame save pending") << QByteArray("inspector") << QByteArray("frame save pending");
    }

    void inspector()
    {
        QPointer<QWidget> document = new QWidget;
        QPointer<HookOwner> owner = new HookOwner(document);
        QPointer<KQInspectorWindow> inspector = new KQInspectorWindow;
        inspector->setFrameAutosaveName(QStringLiteral("LifetimeInspector"));
        document->show();
        QVERIFY(QTest::qWaitForWindowExposed(document));
        fetchRow({{"mode", owner->mode.data()}, {"owner", owner.data()}, {"document", document.data()}, {"inspector", inspector.data()}});
        inspector->orderFont();
        inspector->setFocusOwner(owner);
        if (moment == "frame save pending")
            inspector->move(inspector->pos() + QPoint(7, 5));
        QVERIFY(victimGone());
        if (!inspector && moment == "frame save pending") // its last frame was kept on the way out
            QVERIFY(KQSettings::userDefaults()->contains(QStringLiteral("LifetimeInspector")));
        if (inspector) { // it carries on: a new owner brings its mode in
            QVERIFY(owner || !inspector->focusOwner());
            auto *next = new HookOwner(inspector);
            inspector->setFocusOwner(next);
            QVERIFY(next->mode->view()->isVisibleTo(inspector));
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
        const auto cells = tabView->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(tabView->rect())));
        fetchRow({{"delegate", delegate.data()}, {"target tab", tabs[1]}, {"selected tab", tabs[0]},
                  {"content", tabs[0]->view()}, {"tab view", tabView.data()}});
        const QPoint target = cells[1].center().toPoint();
        QTest::mousePress(tabView, Qt::LeftButton, {}, cells[2].center().toPoint()); // the third tab, dragged onto the target
        QTest::mouseMove(tabView, target);
        if (moment == "drag") {
            QCOMPARE(tabView->pressedDownTab(), tabs[1]);
            kill();
        }
        // Released on the window when the tab view went (the button must not stay down).
        QTest::mouseRelease(tabView ? static_cast<QWidget *>(tabView) : &window, Qt::LeftButton, {}, target);
        QVERIFY(victimGone());
        if (tabView) { // a click on the first tab still selects it
            QVERIFY(!tabView->tabs().contains(nullptr) && !tabView->pressedDownTab());
            QTest::mouseClick(tabView, Qt::LeftButton, {}, cells[0].center().toPoint());
            QCOMPARE(tabView->selectedTab(), tabView->tabs().constFirst());
        }
    }

    void collapsible_data()
    {
        addRows({"view", "content", "view below", "list", "list delegate"}, {"mid-animation", "in list delegate"});
        // Last: the platform keeps its one screen from here on.
        QTest::newRow("screen, mid-animation") << QByteArray("screen") << QByteArray("mid-animation");
    }

    void collapsible()
    {
        const QPoint corner = QGuiApplication::screens().constLast()->geometry().topLeft(); // not the primary screen
        QPointer<KQCollapsibleListView> list = new KQCollapsibleListView(QRect(corner + QPoint(50, 50), QSize(200, 300)));
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
        QVERIFY(list->screen() != QGuiApplication::primaryScreen());
        view->setCollapsed(true, true);
        if (moment == "mid-animation") {
            view->currentAnimation()->setCurrentTime(KQCollapsibleView::AnimationDurationMs / 2);
            kill();
        }
        finishAnimations(list);
        QVERIFY(victimGone());
        if (!list) // it kept its state on the way out
            QCOMPARE(KQSettings::userDefaults()->value(QStringLiteral("LifetimeList")).toStringList(), QStringList{QStringLiteral("A")});
        if (victim == "screen") { // moved to the screen left, collapsed
            QCOMPARE(list->screen(), QGuiApplication::primaryScreen());
            QCOMPARE(view->height(), int(KQCollapsibleView::HeaderHeight));
        }
        if (list) { // unblocked, the survivors stacked without gaps
            QVERIFY(!list->isLayoutBlocked());
            int bottom = 0;
            for (KQCollapsibleView *survivor : list->collapsableViews()) {
                QCOMPARE(survivor->y(), bottom);
                bottom += survivor->height();
            }
        }
    }

    void toolTips_data()
    {
        addRows({"answering widget", "window", "tooltip window", "controller"},
                {"rest pending", "in answer", "shown", "fading"});
    }

    void toolTips()
    {
        QPointer<QWidget> window = new QWidget;
        window->setGeometry(100, 100, 300, 200);
        auto *answering = new HookAnswering(window);
        answering->resize(300, 200);
        window->show();
        QPointer<ToolTipController_ZL> controller = new ToolTipController_ZL;
        KQToolTipRules::ToolTipControllerTiming(controller).setClock([this] { return now; });
        KQToolTipRules::ToolTipControllerTiming(controller).setPointerLocation([] { return QPointF(150, 160); });
        controller->startup();
        QPointer<ToolTipWindow_ZL> tip = controller->toolTipWindow();
        fetchRow({{"answering widget", answering}, {"window", window.data()}, {"tooltip window", tip.data()}, {"controller", controller.data()}});
        const auto poll = [&](double seconds) {
            now += seconds;
            if (controller)
                controller->poll();
        };
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTest::mouseMove(window, QPoint(10, 10)); // away first: a move to where the last row left the pointer is none
        QTest::mouseMove(window, QPoint(50, 60));
        poll(0.5);
        if (moment == "rest pending")
            kill();
        poll(0.6);
        if (moment == "shown" || moment == "fading") {
            QVERIFY(tip->isShown());
            if (moment == "fading") {
                tip->hide(true);
                QVERIFY(tip->isFading());
                tip->findChild<QVariantAnimation *>()->setCurrentTime(ToolTipWindow_ZL::fadeDuration / 2);
            }
            kill();
        }
        finishAnimations(tip);
        for (int i = 0; i < 4; ++i)
            poll(0.5);
        QVERIFY(victimGone());
    }

    // Both readers in each row: the list's collapsed titles and the inspector's frame.
    void settings_data()
    {
        QTest::addColumn<QVariant>("titles"); // invalid: a folder stands in the file's place
        QTest::addColumn<QVariant>("frame");
        QTest::addColumn<QByteArrayList>("reports"); // parts the report holds
        const QByteArray notList = "is not a list of titles", damaged = "is damaged";
        QTest::newRow("foreign") << QVariant(42) << QVariant(QStringLiteral("100 100 300 300")) << QByteArrayList{notList, damaged};
        QTest::newRow("corrupt") << QVariant(QVariantList{QStringLiteral("A"), 7, QVariantMap{}}) << QVariant(QByteArray(64, '\xff'))
                                 << QByteArrayList{notList, damaged};
        QTest::newRow("oversized") << QVariant(QStringList(10000, QStringLiteral("x"))) << QVariant(QByteArray(1 << 20, '\x01'))
                                   << QByteArrayList{damaged};
        QTest::newRow("file not writable") << QVariant() << QVariant()
                                           << QByteArrayList{"\"LifetimeList\" could not be saved", "\"LifetimeInspector\" could not be saved"};
    }

    void settings()
    {
        QFETCH(QVariant, titles);
        QFETCH(QVariant, frame);
        QFETCH(QByteArrayList, reports);
        const QString path = KQSettings::userDefaults()->fileName();
        if (!titles.isValid()) {
            QFile::remove(path);
            QVERIFY(QDir().mkpath(path));
        } else {
            KQSettings::userDefaults()->setValue(QStringLiteral("LifetimeList"), titles);
            KQSettings::userDefaults()->setValue(QStringLiteral("LifetimeInspector"), frame);
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
            QCOMPARE(list.collapsableViews()[0]->isCollapsed(), titles.typeId() == QMetaType::QVariantList);
            list.collapsableViews()[0]->setCollapsed(true, false);
            list.saveToAutosaveName();
            inspector.saveFrameNow();
        }
        const QByteArray text = capture.text();
        QVERIFY(titles.isValid() || QDir(path).removeRecursively());
        for (const QByteArray &part : reports)
            QVERIFY2(text.contains(part), text.constData());
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
