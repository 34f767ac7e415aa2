#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

#include <memory>

class QEvent;
class QTimer;
class ToolTipControllerPrivate_ZL;
class ToolTipTiming_ZL;
class ToolTipWindow_ZL;

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

private:
    void _handleEvent(QEvent *event);
    void _timerFired();

    friend ToolTipTiming_ZL &ToolTipControllerTiming(ToolTipController_ZL *controller);
    friend QTimer *ToolTipControllerTimer(ToolTipController_ZL *controller);
    std::unique_ptr<ToolTipControllerPrivate_ZL> d;
};
