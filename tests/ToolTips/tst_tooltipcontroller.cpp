// The tooltip controller as a whole: the shared instance, startup, the
// after-event notification that KQApplication posts, and a tooltip shown
// by the real window after the rest time of an injected clock.
#include "AnsweringWidget.h"
#include "CapturedOutput.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include <QtCore/QTimer>
#include <QtGui/QTextDocumentFragment>
#include <QtTest/QTest>

#include <memory>

namespace {

int toolTipWindowCount()
{
    int count = 0;
    const QList<QWidget *> windows = QApplication::topLevelWidgets();
    for (QWidget *w : windows)
        count += qobject_cast<ToolTipWindow_ZL *>(w) != nullptr ? 1 : 0;
    return count;
}

// Counts the notifications of one event type while it lives.
class NotificationCounter
{
public:
    explicit NotificationCounter(QEvent::Type type)
    {
        m_connection = QObject::connect(KQAfterEventNotifier::instance(), &KQAfterEventNotifier::afterEventSent,
                                        [this, type](QEvent *event) {
                                            if (event && event->type() == type)
                                                ++count;
                                        });
    }
    ~NotificationCounter() { QObject::disconnect(m_connection); }
    int count = 0;

private:
    QMetaObject::Connection m_connection;
};

void fireTimer(ToolTipController_ZL *controller)
{
    QTimer *timer = ToolTipControllerTimer(controller);
    QVERIFY(timer != nullptr);
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
}

void postMove(QPointF at)
{
    QMouseEvent move(QEvent::MouseMove, at, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    KQPostAfterEventNotification(&move);
}

} // namespace

class TestToolTipController : public QObject
{
    Q_OBJECT

    double now = 100.0;
    QPointF pointer;
    std::unique_ptr<QWidget> window;
    AnsweringWidget *chart = nullptr;

    // A controller on the injected clock and pointer, with the real hit test
    // and window.
    std::unique_ptr<ToolTipController_ZL> startedController()
    {
        auto controller = std::make_unique<ToolTipController_ZL>();
        ToolTipTiming_ZL &timing = ToolTipControllerTiming(controller.get());
        timing.setClock([this] { return now; });
        timing.setPointerLocation([this] { return pointer; });
        controller->startup();
        return controller;
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void init()
    {
        now = 100.0;
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 300, 200);
        chart = new AnsweringWidget(QStringLiteral("chart"), window.get());
        chart->setGeometry(0, 0, 300, 200);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        pointer = QPointF(150, 160); // chart 50,60
    }

    void cleanup() { window.reset(); }

    void sharedInstanceIsNotStarted()
    {
        ToolTipController_ZL *shared = ToolTipController_ZL::sharedToolTipController();
        QVERIFY(shared != nullptr);
        QCOMPARE(ToolTipController_ZL::sharedToolTipController(), shared);
        QCOMPARE(shared->parent(), qApp);
        QCOMPARE(shared->toolTipWindow(), nullptr);
        QCOMPARE(ToolTipControllerTimer(shared), nullptr);
    }

    void startupTwiceMakesOneOfEach()
    {
        const int observersBefore = KQAfterEventNotifier::instance()->observerCount();
        const int windowsBefore = toolTipWindowCount();
        ToolTipController_ZL controller;
        controller.startup();
        ToolTipWindow_ZL *first = controller.toolTipWindow();
        QTimer *timer = ToolTipControllerTimer(&controller);
        controller.startup();
        QCOMPARE(controller.toolTipWindow(), first);
        QCOMPARE(ToolTipControllerTimer(&controller), timer);
        QCOMPARE(toolTipWindowCount(), windowsBefore + 1);
        QCOMPARE(controller.findChildren<QTimer *>().size(), 1);
        QCOMPARE(KQAfterEventNotifier::instance()->observerCount(), observersBefore + 1);
        QCOMPARE(timer->interval(), 500);
        QVERIFY(timer->isActive());
        QVERIFY(!first->isVisible());
    }

    void stoppingReleasesEverything()
    {
        const int observersBefore = KQAfterEventNotifier::instance()->observerCount();
        QPointer<ToolTipWindow_ZL> window;
        {
            ToolTipController_ZL controller;
            controller.startup();
            window = controller.toolTipWindow();
        }
        QVERIFY(window.isNull());
        QCOMPARE(KQAfterEventNotifier::instance()->observerCount(), observersBefore);
    }

    void showsAfterRestAndHidesOnKey()
    {
        auto controller = startedController();
        ToolTipWindow_ZL *tip = controller->toolTipWindow();
        postMove(pointer);
        now += 0.5;
        fireTimer(controller.get());
        QVERIFY(!tip->isVisible());
        now += 0.5;
        fireTimer(controller.get());
        QVERIFY(tip->isShown());
        QCOMPARE(tip->attributedString().toPlainText(), QStringLiteral("chart 50,60"));
        QCOMPARE(tip->pos().x(), 150);
        QVERIFY(tip->pos().y() > 160); // below the cursor image

        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        KQPostAfterEventNotification(&key);
        QVERIFY(!tip->isVisible()); // at once, no fade
    }

    void noNotificationNoTooltip()
    {
        auto controller = startedController();
        // Real input reaches the window, but nothing is posted.
        const QSignalBlocker silence(KQAfterEventNotifier::instance());
        QTest::mouseMove(window.get(), QPoint(50, 60));
        for (int i = 0; i < 6; ++i) {
            now += 0.5;
            fireTimer(controller.get());
        }
        QVERIFY(!controller->toolTipWindow()->isVisible());
        QCOMPARE(chart->asked, 0);
    }

    void windowClosedByOthersIsHarmless()
    {
        auto controller = startedController();
        postMove(pointer);
        now += 1.0;
        fireTimer(controller.get());
        QVERIFY(controller->toolTipWindow()->isShown());
        controller->toolTipWindow()->close(); // deletes itself
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(controller->toolTipWindow(), nullptr);
        postMove(pointer);
        now += 1.0;
        fireTimer(controller.get());
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        KQPostAfterEventNotification(&key);
        QCOMPARE(ToolTipControllerTiming(controller.get()).state(), ToolTipTiming_ZL::State::Idle);
    }

    void answeringWidgetDestroyedWhileShown()
    {
        auto controller = startedController();
        postMove(pointer);
        now += 1.0;
        fireTimer(controller.get());
        QVERIFY(controller->toolTipWindow()->isShown());
        delete chart;
        chart = nullptr;
        now += 0.5;
        fireTimer(controller.get());
        QVERIFY(controller->toolTipWindow()->isShown()); // within the grace time
        now += 1.0;
        fireTimer(controller.get());
        QVERIFY(!controller->toolTipWindow()->isShown()); // fading
    }

    void nullNotificationIsReported()
    {
        auto controller = startedController();
        CapturedOutput output;
        KQPostAfterEventNotification(nullptr);
        QVERIFY(output.text().contains("theEvent"));
    }

    // Which events the hook posts, once per input.
    void candidates_data()
    {
        QTest::addColumn<bool>("toWindow");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("candidate");
        QTest::newRow("move to a window") << true << int(QEvent::MouseMove) << true;
        QTest::newRow("key to a window") << true << int(QEvent::KeyPress) << true;
        QTest::newRow("leave a window") << true << int(QEvent::Leave) << true;
        QTest::newRow("move handed to a widget") << false << int(QEvent::MouseMove) << false;
        QTest::newRow("window repaint") << true << int(QEvent::UpdateRequest) << false;
        QTest::newRow("window timer") << true << int(QEvent::Timer) << false;
    }
    void candidates()
    {
        QFETCH(bool, toWindow);
        QFETCH(int, type);
        QFETCH(bool, candidate);
        std::unique_ptr<QEvent> event;
        if (type == QEvent::MouseMove)
            event = std::make_unique<QMouseEvent>(QEvent::MouseMove, QPointF(), QPointF(), Qt::NoButton,
                                                  Qt::NoButton, Qt::NoModifier);
        else if (type == QEvent::KeyPress)
            event = std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        else
            event = std::make_unique<QEvent>(QEvent::Type(type));
        QObject *receiver = toWindow ? static_cast<QObject *>(window->windowHandle()) : chart;
        QCOMPARE(KQIsAfterEventCandidate(receiver, event.get()), candidate);
        QVERIFY(!KQIsAfterEventCandidate(nullptr, event.get()));
        QVERIFY(!KQIsAfterEventCandidate(receiver, nullptr));
    }

    void applicationPostsOncePerInput()
    {
        QVERIFY(qobject_cast<KQApplication *>(qApp) != nullptr);
        QTest::mouseMove(window.get(), QPoint(10, 10));
        NotificationCounter moves(QEvent::MouseMove);
        QTest::mouseMove(window.get(), QPoint(20, 20));
        QCOMPARE(moves.count, 1);
        NotificationCounter presses(QEvent::MouseButtonPress);
        // Through the window system: QTest hands presses to a QWidget directly.
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        QCOMPARE(presses.count, 1);
        NotificationCounter keys(QEvent::KeyPress);
        QTest::keyClick(window->windowHandle(), Qt::Key_A);
        QCOMPARE(keys.count, 1);
    }

    void applicationFeedsTheController()
    {
        auto controller = startedController();
        QTest::mouseMove(window.get(), QPoint(50, 60));
        now += 1.0;
        fireTimer(controller.get());
        QVERIFY(controller->toolTipWindow()->isShown());
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
        QVERIFY(!controller->toolTipWindow()->isVisible());
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
    }
};

// The application object is a KQApplication, so real input is posted.
int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    TestToolTipController test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tooltipcontroller.moc"
