#pragma once

#include <TarnCommon/TarnCommonExport.h>

class QTimer;
class ToolTipController_ZL;

namespace KQToolTipRules {

class ToolTipTiming_ZL;

// The rules and the timer inside a controller, for the library's tests and
// tools that drive it without waiting.
struct ControllerAccess
{
    static ToolTipTiming_ZL &timing(ToolTipController_ZL *controller);
    static QTimer *timer(ToolTipController_ZL *controller);
};

inline ToolTipTiming_ZL &ToolTipControllerTiming(ToolTipController_ZL *controller)
{
    return ControllerAccess::timing(controller);
}

inline QTimer *ToolTipControllerTimer(ToolTipController_ZL *controller)
{
    return ControllerAccess::timer(controller);
}

} // namespace KQToolTipRules
