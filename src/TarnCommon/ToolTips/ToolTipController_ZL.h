#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

#include <functional>
#include <memory>

class QEvent;
class QTimer;
class ToolTipControllerPrivate_ZL;
class ToolTipWindow_ZL;
namespace KQToolTipRules {
struct ControllerAccess;
}

// Shows computed tooltips: text that the widget under the pointer computes
// for the exact point (see ToolTipping_ZL). After a mouse movement or a
// button release, once the pointer has rested for a second, the widget under
// it is asked (polled every half second); its answer shows in one tooltip
// window until the pointer leaves every tooltip for more than a second, or
// ten seconds have passed for one unchanged answer (both fade), or a press,
// drag or key arrives (gone at once).
//
// It is fed by NOTIFICATION__After_Event_Sent: use KQApplication, or post
// it from your own QApplication::notify (<TarnCommon/KQAfterEvent.h>).
//
//     ToolTipController_ZL::sharedToolTipController()->startup();
class TARNCOMMON_EXPORT ToolTipController_ZL : public QObject
{
    Q_OBJECT
public:
    // Created on first use, not started. It belongs to the application
    // object and goes with it.
    static ToolTipController_ZL *sharedToolTipController();

    explicit ToolTipController_ZL(QObject *parent = nullptr);
    ~ToolTipController_ZL() override;

    // Creates the window, starts the poll timer and observes the
    // notification; later calls do nothing.
    void startup();

    // nullptr before startup, and once closed until the next tooltip
    // needs it again.
    ToolTipWindow_ZL *toolTipWindow() const;

    // Testing aids, so that an application's tests need not wait in real
    // time. The clock answers seconds on any steady scale (by default a
    // monotonic clock); nullptr restores the default. poll() does at once
    // what the half-second timer does:
    //
    //     double now = 0;
    //     controller->setClock([&now] { return now; });
    //     QTest::mouseMove(chart, QPoint(40, 30)); // pointer rests here
    //     now += 1.0;
    //     controller->poll();
    //     QVERIFY(controller->toolTipWindow()->isShown());
    using Clock = std::function<double()>;
    void setClock(Clock clock);
    void poll();

private:
    void _handleEvent(QEvent *event);
    void _timerFired();

    friend struct KQToolTipRules::ControllerAccess;
    std::unique_ptr<ToolTipControllerPrivate_ZL> d;
};
