// The controller as a whole: the shared instance, startup, the after-event
// notification that KQApplication posts, and the real window shown after the
// rest time of an injected clock.
#include "AnsweringWidget.h"
#include "MessageCapture.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include <QtCore/QTimer>
#include <QtTest/QTest>

#include <memory>

using namespace KQToolTipRules;

class TestToolTipController : public QObject
{
    Q_OBJECT

    double now = 100.0;
    std::unique_ptr<QWidget> window;
    QPointer<AnsweringWidget> chart;
    std::unique_ptr<ToolTipController_ZL> controller;

    ToolTipWindow_ZL *tip() const { return controller->toolTipWindow(); }
    // Time passes, then the timer fires (through its own signal).
    void poll(double seconds)
    {
        now += seconds;
        QVERIFY(QMetaObject::invokeMethod(ToolTipControllerTimer(controller.get()), "timeout"));
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    // A chart window at (100, 100) and a started controller whose pointer
    // rests at chart (50, 60).
    void init()
    {
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 300, 200);
        chart = new AnsweringWidget(QStringLiteral("chart"), window.get());
        chart->setGeometry(0, 0, 300, 200);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        controller = std::make_unique<ToolTipController_ZL>();
        ToolTipTiming_ZL &timing = ToolTipControllerTiming(controller.get());
        timing.setClock([this] { return now; });
        timing.setPointerLocation([] { return QPointF(150, 160); });
        controller->startup();
    }

    void cleanup()
    {
        controller.reset();
        window.reset();
    }

    void sharedInstanceIsNotStarted()
    {
        ToolTipController_ZL *shared = ToolTipController_ZL::sharedToolTipController();
        QCOMPARE(ToolTipController_ZL::sharedToolTipController(), shared);
        QCOMPARE(shared->parent(), qApp);
        QCOMPARE(shared->toolTipWindow(), nullptr);
        QCOMPARE(ToolTipControllerTimer(shared), nullptr);
    }

    void startupTwiceMakesOneOfEach()
    {
        const int observers = KQAfterEventNotifier::instance()->observerCount();
        ToolTipWindow_ZL *first = tip();
        controller->startup();
        QCOMPARE(tip(), first);
        QCOMPARE(controller->findChildren<QTimer *>().size(), 1);
        QCOMPARE(KQAfterEventNotifier::instance()->observerCount(), observers);
        QCOMPARE(ToolTipControllerTimer(controller.get())->interval(), 500);
        QVERIFY(ToolTipControllerTimer(controller.get())->isActive());
        QPointer<ToolTipWindow_ZL> window = tip();
        controller.reset();
        QVERIFY(window.isNull());
        QCOMPARE(KQAfterEventNotifier::instance()->observerCount(), observers - 1);
    }

    // Real input through the window system: KQApplication posts it.
    void showsAfterRestAndHidesOnPress()
    {
        QTest::mouseMove(window.get(), QPoint(50, 60));
        poll(0.5);
        QVERIFY(!tip()->isVisible());
        poll(0.5);
        QVERIFY(tip()->isShown());
        QCOMPARE(tip()->attributedString().toPlainText(), QStringLiteral("chart 50,60"));
        QCOMPARE(tip()->pos(), QPoint(150, 160 + 16 + 5));
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
        QVERIFY(!tip()->isVisible()); // at once, no fade
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
    }

    void noNotificationNoTooltip()
    {
        const QSignalBlocker silence(KQAfterEventNotifier::instance());
        QTest::mouseMove(window.get(), QPoint(50, 60));
        for (int i = 0; i < 6; ++i)
            poll(0.5);
        QVERIFY(!tip()->isVisible());
        QCOMPARE(chart->asked, 0);
    }

    // The widget under the pointer and the tooltip window may go at any
    // time; closing every window (as a quit that is then cancelled does)
    // takes the tooltip window too, and the next tooltip comes in a new one.
    void thingsDestroyedUnderway()
    {
        QTest::mouseMove(window.get(), QPoint(40, 60)); // (a move to where the last test left it is no move)
        poll(1.0);
        QVERIFY(tip()->isShown());
        delete chart;
        poll(1.5);
        QVERIFY(!tip()->isShown()); // nothing under the pointer for over a second
        QApplication::closeAllWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(tip(), nullptr);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTest::mouseMove(window.get(), QPoint(60, 60)); // no window, nothing to show
        poll(1.0);
        QTest::keyClick(window->windowHandle(), Qt::Key_A);
        QCOMPARE(ToolTipControllerTiming(controller.get()).state(), ToolTipTiming_ZL::State::Idle);
        (new AnsweringWidget(QStringLiteral("chart"), window.get()))->setGeometry(0, 0, 300, 200);
        ToolTipControllerTiming(controller.get()).setPointerLocation([] { return QPointF(170, 160); });
        QTest::mouseMove(window.get(), QPoint(70, 60));
        poll(1.0);
        QVERIFY(tip() != nullptr);
        QVERIFY(tip()->isShown());
        QCOMPARE(tip()->attributedString().toPlainText(), QStringLiteral("chart 70,60"));
        QVERIFY(ToolTipControllerTimer(controller.get())->isActive());
    }

    // The window hidden behind the rules' back (with the application, or by
    // a plain widget hide): the same answer comes back after the next rest.
    void hiddenElsewhereShowsAgain_data()
    {
        QTest::addColumn<bool>("deactivate");
        QTest::newRow("application deactivated and back") << true;
        QTest::newRow("window hidden as a widget") << false;
    }
    void hiddenElsewhereShowsAgain()
    {
        QFETCH(bool, deactivate);
        QTest::mouseMove(window.get(), QPoint(50, 61));
        poll(1.0);
        QVERIFY(tip()->isShown());
        if (deactivate) {
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
            QVERIFY(!tip()->isVisible());
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
        } else {
            tip()->QWidget::hide();
        }
        QTest::mouseMove(window.get(), QPoint(50, 60));
        poll(1.0);
        QVERIFY(tip()->isShown());
        QCOMPARE(tip()->attributedString().toPlainText(), QStringLiteral("chart 50,60"));
    }

    // What an application's own test does: its clock, the real pointer,
    // polls on demand; nothing from inside the library.
    void applicationTestDrivesItsClock()
    {
        double clock = 5.0;
        ToolTipController_ZL own;
        own.setClock([&clock] { return clock; });
        own.startup();
        QTest::mouseMove(chart, QPoint(30, 40));
        clock += 0.9;
        own.poll();
        QVERIFY(!own.toolTipWindow()->isVisible());
        clock += 0.1;
        own.poll();
        QVERIFY(own.toolTipWindow()->isShown());
        QCOMPARE(own.toolTipWindow()->attributedString().toPlainText(), QStringLiteral("chart 30,40"));
    }

    void nullNotificationIsReported()
    {
        MessageCapture output;
        KQPostAfterEventNotification(nullptr);
        QVERIFY(output.text().contains("Assertion: (theEvent)"));
    }

    // Qt hands a window's input on to widgets as new events; the hook posts
    // once per input, for the event addressed to the window.
    void postsOncePerInput_data()
    {
        QTest::addColumn<int>("input");
        QTest::addColumn<int>("type");
        QTest::newRow("move") << 0 << int(QEvent::MouseMove);
        QTest::newRow("press") << 1 << int(QEvent::MouseButtonPress);
        QTest::newRow("key") << 2 << int(QEvent::KeyPress);
    }
    void postsOncePerInput()
    {
        QFETCH(int, input);
        QFETCH(int, type);
        QTest::mouseMove(window.get(), QPoint(10, 10));
        int posted = 0;
        const auto counter = connect(KQAfterEventNotifier::instance(), &KQAfterEventNotifier::afterEventSent, this,
                                     [&](QEvent *e) { posted += e->type() == type ? 1 : 0; });
        if (input == 0)
            QTest::mouseMove(window.get(), QPoint(20, 20));
        else if (input == 1)
            QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        else
            QTest::keyClick(window->windowHandle(), Qt::Key_A);
        disconnect(counter);
        QCOMPARE(posted, 1);
        // Paint traffic of a window and events sent straight to a widget are not input.
        QEvent update(QEvent::UpdateRequest);
        QVERIFY(!KQIsAfterEventCandidate(window->windowHandle(), &update));
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        QVERIFY(!KQIsAfterEventCandidate(chart, &key));
        QVERIFY(KQIsAfterEventCandidate(window->windowHandle(), &key));
    }
};

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    TestToolTipController test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tooltipcontroller.moc"
