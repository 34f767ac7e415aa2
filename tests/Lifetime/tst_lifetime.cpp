// Every participant of the interactive components destroyed at an awkward
// moment: mid-animation, with a timer pending, inside its own delegate
// message, during a drag, while a tooltip fades. The survivors must carry on
// and nothing may be reported; the sanitizer build adds that nothing is read
// after it was freed and nothing leaks. Then the bad input from outside:
// damaged settings, a settings file that cannot be written, a screen that
// goes away under a window.
#include "MessageCapture.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>
#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <qpa/qplatformnativeinterface.h>

#include <functional>
#include <utility>

using namespace KQToolTipRules;

namespace {

using Hook = std::function<void()>;

// Runs a hook once; the hook may destroy the object that holds it.
void fire(Hook &hook)
{
    if (hook)
        std::exchange(hook, {})();
}

// Takes every running animation under root to its end, as the clock would.
void finishAnimations(QObject *root)
{
    if (!root)
        return;
    const QList<QPointer<QVariantAnimation>> animations = [root] {
        QList<QPointer<QVariantAnimation>> found;
        for (QVariantAnimation *animation : root->findChildren<QVariantAnimation *>())
            found.append(animation);
        return found;
    }();
    for (const QPointer<QVariantAnimation> &animation : animations) {
        if (animation && animation->state() == QAbstractAnimation::Running)
            animation->setCurrentTime(animation->totalDuration());
    }
}

void deleteLaterNow()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

template<typename T>
void destroy(QPointer<T> &object)
{
    delete object.data();
}

// The offscreen platform's screens, changed at run time.
bool configureScreens(const QJsonArray &screens)
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    if (!native)
        return false;
    using Get = QJsonObject (*)(QPlatformNativeInterface *);
    using Set = void (*)(const QJsonObject &, QPlatformNativeInterface *);
    auto get = reinterpret_cast<Get>(native->nativeResourceForIntegration("configuration"));
    auto set = reinterpret_cast<Set>(native->nativeResourceForIntegration("setConfiguration"));
    if (!get || !set)
        return false;
    QJsonObject configuration = get(native);
    configuration[QLatin1String("screens")] = screens;
    set(configuration, native);
    return true;
}

QJsonObject screenEntry(const QString &name, int x, int width, int height)
{
    return QJsonObject{{QLatin1String("name"), name},      {QLatin1String("x"), x},
                       {QLatin1String("y"), 0},            {QLatin1String("width"), width},
                       {QLatin1String("height"), height},  {QLatin1String("logicalDpi"), 96},
                       {QLatin1String("logicalBaseDpi"), 96}, {QLatin1String("dpr"), 1}};
}

// ---- inspector participants

class HookMode : public KQInspectorMode
{
    Q_OBJECT
public:
    using KQInspectorMode::KQInspectorMode;
    Hook onWillShow;
    void modeWillShow() override { fire(onWillShow); }
    // A resizable mode gives its own positive minimum.
    QSizeF minSize() const override { return QSizeF(100, 60); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        view->resize(200, 120);
        setView(view);
    }
};

class HookOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)
public:
    using QObject::QObject;
    QPointer<KQInspectorMode> mode;
    Hook onWillGain;
    Hook onDidGain;
    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        const QPointer<HookOwner> self(this);
        fire(onWillGain);
        return self ? self->mode.data() : nullptr;
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { fire(onDidGain); }
};

// ---- tab view participants

class HookTabDelegate : public QObject, public KQTabViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(KQTabViewDelegate)
public:
    Hook onWill;
    Hook onDid;
    void tabViewWillChangeToTab(KQTabView *, KQTab *, KQTab *) override { fire(onWill); }
    void tabViewDidChangeToTab(KQTabView *, KQTab *, KQTab *) override { fire(onDid); }
};

// ---- collapsible participants

// The list is the views' delegate: its own messages carry the hooks.
class HookList : public KQCollapsibleListView
{
    Q_OBJECT
public:
    using KQCollapsibleListView::KQCollapsibleListView;
    Hook onFinished;
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override
    {
        KQCollapsibleListView::collapsableViewFinishedAnimations(view, animations);
        fire(onFinished);
    }
};

class HookListDelegate : public QObject, public KQCollapsibleListViewDelegate
{
public:
    Hook onWillAnimate;
    void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double, double, KQViewAnimations &) override
    {
        fire(onWillAnimate);
    }
};

// ---- tooltip participants

class HookAnswering : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    using QWidget::QWidget;
    Hook onAsked;
    QVariant toolTipAtPoint(QPointF, bool *) override
    {
        const QVariant answer = objectName();
        fire(onAsked);
        return answer;
    }
};

QWidget *makeAnsweringWindow(const QString &name, HookAnswering **answering)
{
    auto *window = new QWidget;
    window->setGeometry(100, 100, 300, 200);
    *answering = new HookAnswering(window);
    (*answering)->setObjectName(name);
    (*answering)->setGeometry(0, 0, 300, 200);
    window->show();
    return window;
}

} // namespace

class TestLifetime : public QObject
{
    Q_OBJECT

    double now = 100.0;

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void cleanup()
    {
        deleteLaterNow();
        KQSettings::userDefaults()->clear();
    }

    // ------------------------------------------------------------ inspector
    void inspector_data()
    {
        QTest::addColumn<QString>("victim"); // mode, owner, document, inspector
        QTest::addColumn<QString>("moment");
        // A pending frame save concerns the inspector alone: its rows are below.
        const QStringList moments{QStringLiteral("shown"), QStringLiteral("in owner's willGain"),
                                  QStringLiteral("in owner's didGain"), QStringLiteral("in mode's willShow")};
        for (const char *victim : {"mode", "owner", "document"})
            for (const QString &moment : moments)
                QTest::addRow("%s, %s", victim, qPrintable(moment)) << QString::fromLatin1(victim) << moment;
        QTest::addRow("inspector, shown") << QStringLiteral("inspector") << QStringLiteral("shown");
        QTest::addRow("inspector, frame save pending") << QStringLiteral("inspector")
                                                       << QStringLiteral("frame save pending");
        QTest::addRow("inspector, empty mode's refresh pending")
            << QStringLiteral("inspector") << QStringLiteral("empty mode refresh pending");
        QTest::addRow("document, empty mode's refresh pending")
            << QStringLiteral("document") << QStringLiteral("empty mode refresh pending");
    }

    void inspector()
    {
        QFETCH(QString, victim);
        QFETCH(QString, moment);
        MessageCapture capture;

        QPointer<QWidget> document = new QWidget;
        document->setGeometry(100, 100, 300, 200);
        QPointer<HookOwner> owner = new HookOwner(document);
        QPointer<HookMode> mode = new HookMode(owner);
        owner->mode = mode;
        QPointer<KQInspectorWindow> inspector = new KQInspectorWindow;
        inspector->setClock([this] { return now; });
        inspector->setFrameAutosaveName(QStringLiteral("LifetimeInspector"));
        document->show();
        QVERIFY(QTest::qWaitForWindowExposed(document));

        bool fired = false;
        const Hook kill = [&] {
            fired = true;
            if (victim == QLatin1String("mode"))
                destroy(mode);
            else if (victim == QLatin1String("owner"))
                destroy(owner);
            else if (victim == QLatin1String("document"))
                destroy(document);
            else
                destroy(inspector);
        };

        inspector->orderFont();
        if (moment == QLatin1String("in owner's willGain"))
            owner->onWillGain = kill;
        else if (moment == QLatin1String("in owner's didGain"))
            owner->onDidGain = kill;
        else if (moment == QLatin1String("in mode's willShow"))
            mode->onWillShow = kill;

        if (moment == QLatin1String("empty mode refresh pending")) {
            inspector->setFocusOwner(owner);
            inspector->setFocusOwner(nullptr);
            auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
            QVERIFY(empty);
            const QPointer<QTimer> refresh = empty->refreshTimer();
            QVERIFY(refresh && refresh->isActive());
            kill();
            if (refresh)
                QVERIFY(QMetaObject::invokeMethod(refresh, "timeout"));
        } else {
            inspector->setFocusOwner(owner);
            if (moment == QLatin1String("frame save pending") && inspector) {
                inspector->move(inspector->pos() + QPoint(7, 5));
                QVERIFY(inspector->hasUnsavedFrame());
            }
            if (!fired)
                kill();
        }
        QVERIFY(fired);
        deleteLaterNow();

        if (!inspector) {
            // Its last frame was kept on the way out.
            if (moment == QLatin1String("frame save pending"))
                QVERIFY(!KQSettings::userDefaults()->value(QStringLiteral("LifetimeInspector")).toByteArray().isEmpty());
        } else {
            now += 1;
            inspector->poll();
            QVERIFY(!inspector->hasUnsavedFrame());
            if (!owner)
                QCOMPARE(inspector->focusOwner(), nullptr);
            // It carries on: a new owner brings its mode in.
            auto *next = new HookOwner(inspector);
            next->mode = new HookMode(next);
            inspector->setFocusOwner(next);
            QCOMPARE(inspector->mode(), next->mode.data());
            QVERIFY(inspector->mode()->view()->isVisibleTo(inspector));
        }
        QCOMPARE(capture.text(), QByteArray());
        delete inspector.data();
        delete document.data();
    }

    // ------------------------------------------------------------- tab view
    void tabView_data()
    {
        QTest::addColumn<QString>("victim"); // delegate, target tab, selected tab, content, tab view
        QTest::addColumn<QString>("moment"); // will, did, drag
        for (const char *victim : {"delegate", "target tab", "selected tab", "content", "tab view"})
            for (const char *moment : {"will", "did", "drag"})
                QTest::addRow("%s, %s", victim, moment) << QString::fromLatin1(victim) << QString::fromLatin1(moment);
    }

    void tabView()
    {
        QFETCH(QString, victim);
        QFETCH(QString, moment);
        MessageCapture capture;

        QWidget window;
        window.resize(400, 300);
        QPointer<KQTabView> tabView = new KQTabView(&window);
        QList<KQTab *> tabs;
        for (int tag = 1; tag <= 3; ++tag) {
            auto *tab = new KQTab;
            auto *content = new QWidget;
            content->resize(200, 100);
            tab->setView(content);
            tab->setTag(tag);
            tabs.append(tab);
        }
        tabView->setTabs(tabs);
        tabView->setGeometry(0, 0, 300, 200);
        QPointer<HookTabDelegate> delegate = new HookTabDelegate;
        tabView->setDelegate(delegate);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QPointer<KQTab> selected = tabs[0];
        QPointer<KQTab> target = tabs[1];
        QPointer<QWidget> content = selected->view();
        QCOMPARE(tabView->selectedTab(), selected.data());
        const QList<QRectF> cells = tabView->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(tabView->rect())));
        QCOMPARE(cells.size(), 3);
        const auto centre = [&cells](int i) { return cells[i].center().toPoint(); };

        bool fired = false;
        const Hook kill = [&] {
            fired = true;
            if (victim == QLatin1String("delegate"))
                destroy(delegate);
            else if (victim == QLatin1String("target tab"))
                destroy(target);
            else if (victim == QLatin1String("selected tab"))
                destroy(selected);
            else if (victim == QLatin1String("content"))
                destroy(content);
            else
                destroy(tabView);
        };
        if (moment == QLatin1String("will"))
            delegate->onWill = kill;
        else if (moment == QLatin1String("did"))
            delegate->onDid = kill;

        // Press the third tab, drag onto the second (the target), release.
        QTest::mousePress(tabView, Qt::LeftButton, {}, centre(2));
        QTest::mouseMove(tabView, centre(1));
        if (moment == QLatin1String("drag")) {
            QCOMPARE(tabView->pressedDownTab(), target.data());
            kill();
        }
        // Released on the window when the tab view went (the button must not stay down).
        if (tabView)
            QTest::mouseRelease(tabView, Qt::LeftButton, {}, centre(1));
        else
            QTest::mouseRelease(&window, Qt::LeftButton, {}, centre(1));
        QVERIFY(fired);
        deleteLaterNow();

        if (tabView) {
            // Only live tabs are listed, and the selection is one of them.
            QVERIFY(!tabView->tabs().contains(nullptr));
            QVERIFY(!tabView->selectedTab() || tabView->tabs().contains(tabView->selectedTab()));
            QCOMPARE(tabView->pressedDownTab(), nullptr);
            // A click on the last tab still selects it.
            KQTab *last = tabView->tabs().constLast();
            const QList<QRectF> now = tabView->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(tabView->rect())));
            QTest::mouseClick(tabView, Qt::LeftButton, {}, now.constLast().center().toPoint());
            QCOMPARE(tabView->selectedTab(), last);
        }
        QCOMPARE(capture.text(), QByteArray());
        delete tabView.data(); // with the tabs it adopted
        delete delegate.data();
    }

    // ---------------------------------------------------------- collapsible
    void collapsible_data()
    {
        QTest::addColumn<QString>("victim"); // view, content, view below, list, list delegate
        QTest::addColumn<QString>("moment"); // mid-animation, in list delegate, in finished
        for (const char *victim : {"view", "content", "view below", "list", "list delegate"})
            for (const char *moment : {"mid-animation", "in list delegate", "in finished"})
                QTest::addRow("%s, %s", victim, moment) << QString::fromLatin1(victim) << QString::fromLatin1(moment);
    }

    void collapsible()
    {
        QFETCH(QString, victim);
        QFETCH(QString, moment);
        MessageCapture capture;

        QPointer<HookList> list = new HookList(QRect(0, 0, 200, 300));
        list->setAutosaveName(QStringLiteral("LifetimeList"));
        QList<QPointer<KQCollapsibleView>> views;
        for (const char *title : {"A", "B", "C"}) {
            auto *content = new QWidget;
            content->resize(200, 80);
            auto *view = new KQCollapsibleView(QString::fromLatin1(title), content, true, title[0] == 'B');
            list->addCollapsableView(view);
            views.append(view);
        }
        QPointer<HookListDelegate> listDelegate = new HookListDelegate;
        list->setDelegate(listDelegate);
        list->show();
        QVERIFY(QTest::qWaitForWindowExposed(list));

        QPointer<KQCollapsibleView> view = views[0];
        QPointer<QWidget> content = view->contentView();
        QPointer<KQCollapsibleView> below = views[1];
        bool fired = false;
        const Hook kill = [&] {
            fired = true;
            if (victim == QLatin1String("view"))
                destroy(view);
            else if (victim == QLatin1String("content"))
                destroy(content);
            else if (victim == QLatin1String("view below"))
                destroy(below);
            else if (victim == QLatin1String("list"))
                destroy(list);
            else
                destroy(listDelegate);
        };
        if (moment == QLatin1String("in list delegate"))
            listDelegate->onWillAnimate = kill;
        else if (moment == QLatin1String("in finished"))
            list->onFinished = kill;

        view->setCollapsed(true, true);
        if (moment == QLatin1String("mid-animation")) {
            QVERIFY(view->currentAnimation());
            view->currentAnimation()->setCurrentTime(KQCollapsibleView::AnimationDurationMs / 2);
            kill();
        }
        finishAnimations(list);
        QVERIFY(fired);
        deleteLaterNow();

        if (!list) {
            // The list kept its state on the way out.
            QCOMPARE(KQSettings::userDefaults()->value(QStringLiteral("LifetimeList")).toStringList(),
                     QStringList{QStringLiteral("A")});
        } else {
            QVERIFY(!list->isLayoutBlocked());
            // The survivors are stacked without gaps, and still collapse.
            int bottom = 0;
            const QList<KQCollapsibleView *> held = list->collapsableViews();
            for (KQCollapsibleView *survivor : held) {
                QCOMPARE(survivor->y(), bottom);
                bottom += survivor->height();
            }
            KQCollapsibleView *last = held.constLast();
            last->setCollapsed(true, true);
            finishAnimations(list);
            QCOMPARE(last->height(), int(KQCollapsibleView::HeaderHeight));
        }
        QCOMPARE(capture.text(), QByteArray());
        delete list.data();
        delete listDelegate.data();
    }

    // ------------------------------------------------------------- tooltips
    void toolTips_data()
    {
        QTest::addColumn<QString>("victim"); // answering widget, its window, tooltip window, controller
        QTest::addColumn<QString>("moment"); // rest pending, in answer, shown, fading
        for (const char *victim : {"answering widget", "window", "tooltip window", "controller"})
            for (const char *moment : {"rest pending", "in answer", "shown", "fading"})
                QTest::addRow("%s, %s", victim, moment) << QString::fromLatin1(victim) << QString::fromLatin1(moment);
    }

    void toolTips()
    {
        QFETCH(QString, victim);
        QFETCH(QString, moment);
        MessageCapture capture;

        HookAnswering *answeringWidget = nullptr;
        QPointer<QWidget> window = makeAnsweringWindow(QStringLiteral("first"), &answeringWidget);
        QPointer<HookAnswering> answering = answeringWidget;
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QPointer<ToolTipController_ZL> controller = new ToolTipController_ZL;
        ToolTipTiming_ZL &timing = ToolTipControllerTiming(controller);
        timing.setClock([this] { return now; });
        timing.setPointerLocation([] { return QPointF(150, 160); });
        controller->startup();
        QPointer<ToolTipWindow_ZL> tip = controller->toolTipWindow();
        const auto poll = [&](double seconds) {
            now += seconds;
            if (controller)
                controller->poll();
        };

        bool fired = false;
        const Hook kill = [&] {
            fired = true;
            if (victim == QLatin1String("answering widget"))
                destroy(answering);
            else if (victim == QLatin1String("window"))
                destroy(window);
            else if (victim == QLatin1String("tooltip window"))
                destroy(tip);
            else
                destroy(controller);
        };
        if (moment == QLatin1String("in answer"))
            answering->onAsked = kill;

        // Away first: a move to where the last row left the pointer is none.
        QTest::mouseMove(window, QPoint(10, 10));
        QTest::mouseMove(window, QPoint(50, 60));
        poll(0.5);
        if (moment == QLatin1String("rest pending")) {
            QVERIFY(!tip->isVisible());
            kill();
        }
        poll(0.6);
        if (moment == QLatin1String("shown") || moment == QLatin1String("fading")) {
            QVERIFY(tip->isShown());
            if (moment == QLatin1String("fading")) {
                tip->hide(true);
                QVERIFY(tip->isFading());
                const QPointer<QVariantAnimation> fade = tip->findChild<QVariantAnimation *>();
                QVERIFY(fade);
                fade->setCurrentTime(ToolTipWindow_ZL::fadeDuration / 2);
            }
            kill();
        }
        QVERIFY(fired);
        finishAnimations(tip);
        for (int i = 0; i < 4; ++i)
            poll(0.5);
        deleteLaterNow();

        if (controller) {
            // It carries on: a new answer under the resting pointer shows.
            HookAnswering *nextAnswering = nullptr;
            delete window.data();
            window = makeAnsweringWindow(QStringLiteral("second"), &nextAnswering);
            QVERIFY(QTest::qWaitForWindowExposed(window));
            QTest::mouseMove(window, QPoint(10, 10));
            QTest::mouseMove(window, QPoint(60, 70));
            poll(0.5);
            poll(0.6);
            QVERIFY(controller->toolTipWindow());
            QVERIFY(controller->toolTipWindow()->isShown());
            QCOMPARE(controller->toolTipWindow()->attributedString().toPlainText(), QStringLiteral("second"));
        }
        QCOMPARE(capture.text(), QByteArray());
        delete controller.data();
        delete window.data();
    }

    // ------------------------------------------------- damaged settings
    void settingsStore_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QByteArray>("report"); // a part of the report, or empty for none
        const QString list = QStringLiteral("LifetimeList");
        const QString frame = QStringLiteral("LifetimeInspector");
        const QByteArray damagedList = "is not a list of titles";
        const QByteArray damagedFrame = "is damaged";
        QTest::newRow("list: a number") << list << QVariant(42) << damagedList;
        QTest::newRow("list: mixed entries")
            << list << QVariant(QVariantList{QStringLiteral("A"), 7, QVariantMap{}}) << damagedList;
        QTest::newRow("list: 100000 titles") << list << QVariant(QStringList(100000, QStringLiteral("x"))) << QByteArray();
        QTest::newRow("list: a 4 MB title") << list << QVariant(QString(4 << 20, QLatin1Char('A'))) << QByteArray();
        QTest::newRow("frame: text") << frame << QVariant(QStringLiteral("100 100 300 300")) << damagedFrame;
        QTest::newRow("frame: random bytes") << frame << QVariant(QByteArray(64, '\xff')) << damagedFrame;
        QTest::newRow("frame: 1 MB of bytes") << frame << QVariant(QByteArray(1 << 20, '\x01')) << damagedFrame;
    }

    void settingsStore()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QByteArray, report);
        KQSettings::userDefaults()->setValue(key, stored);
        MessageCapture capture;

        auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 200, 300));
        list->addCollapsableView(new KQCollapsibleView(QStringLiteral("A"), new QWidget, true, false));
        list->setAutosaveName(QStringLiteral("LifetimeList"));
        auto inspector = std::make_unique<KQInspectorWindow>();
        const QRect frameBefore = inspector->geometry();
        inspector->setFrameAutosaveName(QStringLiteral("LifetimeInspector"));

        const QByteArray text = capture.text();
        QCOMPARE(text.contains(report), true);
        if (report.isEmpty())
            QCOMPARE(text, QByteArray());
        // Neutral results: the inspector keeps its frame, the list its views.
        if (key == QLatin1String("LifetimeInspector"))
            QCOMPARE(inspector->geometry(), frameBefore);
        QCOMPARE(list->collapsableViews().size(), 1);
        QCOMPARE(list->collapsableViews().constFirst()->isCollapsed(),
                 stored.typeId() == QMetaType::QVariantList);
    }

    // A settings file that cannot be written (a folder stands in its
    // place, which no permission lets through): saving is reported.
    void settingsNotWritable()
    {
        const QString path = KQSettings::userDefaults()->fileName();
        QVERIFY(!path.isEmpty());
        QFile::remove(path);
        QVERIFY(QDir().mkpath(path));
        MessageCapture capture;
        {
            KQCollapsibleListView list(QRect(0, 0, 200, 300));
            auto *view = new KQCollapsibleView(QStringLiteral("A"), new QWidget, true, false);
            list.addCollapsableView(view);
            list.setAutosaveName(QStringLiteral("LifetimeList"));
            view->setCollapsed(true, false);
            list.saveToAutosaveName();
            KQInspectorWindow inspector;
            inspector.setFrameAutosaveName(QStringLiteral("LifetimeInspector"));
            inspector.saveFrameNow();
            QVERIFY(view->isCollapsed());
        }
        const QByteArray text = capture.text();
        QVERIFY(QDir(path).removeRecursively());
        QVERIFY2(text.contains("\"LifetimeList\" could not be saved"), text.constData());
        QVERIFY2(text.contains("\"LifetimeInspector\" could not be saved"), text.constData());
    }

    // -------------------------------------------------------- screen removed
    void screenRemoved_data()
    {
        QTest::addColumn<QString>("what"); // inspector, tooltip, list
        QTest::newRow("inspector") << QStringLiteral("inspector");
        QTest::newRow("tooltip") << QStringLiteral("tooltip");
        QTest::newRow("collapsing list") << QStringLiteral("list");
    }

    void screenRemoved()
    {
        QFETCH(QString, what);
        const QList<QScreen *> screens = QGuiApplication::screens();
        QCOMPARE(screens.size(), 2);
        const QRect second = screens[1]->geometry();
        MessageCapture capture;

        std::unique_ptr<QWidget> window;
        std::unique_ptr<ToolTipController_ZL> controller;
        QPointer<KQCollapsibleView> view;
        if (what == QLatin1String("inspector")) {
            window = std::make_unique<KQInspectorWindow>();
            window->move(second.topLeft() + QPoint(50, 50));
            window->show();
        } else if (what == QLatin1String("tooltip")) {
            controller = std::make_unique<ToolTipController_ZL>();
            controller->startup();
            controller->toolTipWindow()->setString(QStringLiteral("on the second screen"), true);
            controller->toolTipWindow()->positionAtMouseLocation(second.topLeft() + QPointF(50, 50));
            controller->toolTipWindow()->show();
            controller->toolTipWindow()->hide(true); // fading as its screen goes
        } else {
            auto list = std::make_unique<KQCollapsibleListView>(QRect(second.topLeft() + QPoint(50, 50), QSize(200, 300)));
            view = new KQCollapsibleView(QStringLiteral("A"), new QWidget, true, false);
            list->addCollapsableView(view);
            list->show();
            view->setCollapsed(true, true); // animating as its screen goes
            window = std::move(list);
        }
        QWidget *shown = window ? window.get() : controller->toolTipWindow();
        QVERIFY(QTest::qWaitForWindowExposed(shown));
        QCOMPARE(shown->screen(), screens[1]);

        const QJsonObject primary = screenEntry(QStringLiteral("primary"), 0, 1000, 700);
        QVERIFY(configureScreens(QJsonArray{primary}));
        QCoreApplication::processEvents();
        QCOMPARE(QGuiApplication::screens().size(), 1);
        QCOMPARE(shown->screen(), QGuiApplication::primaryScreen());
        finishAnimations(shown);
        if (view)
            QCOMPARE(view->height(), int(KQCollapsibleView::HeaderHeight));
        if (controller)
            QVERIFY(!controller->toolTipWindow() || !controller->toolTipWindow()->isVisible());

        QVERIFY(configureScreens(QJsonArray{primary, screenEntry(QStringLiteral("secondary"), 1000, 800, 600)}));
        QCoreApplication::processEvents();
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QCOMPARE(capture.text(), QByteArray());
    }
};

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    TestLifetime test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lifetime.moc"
