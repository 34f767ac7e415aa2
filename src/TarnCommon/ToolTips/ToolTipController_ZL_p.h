#pragma once

#include <TarnCommon/TarnCommonExport.h>

class QTimer;
class ToolTipController_ZL;
class ToolTipTiming_ZL;

// The rules and the timer inside a controller, for tests and tools that
// drive it without waiting.
TARNCOMMON_EXPORT ToolTipTiming_ZL &ToolTipControllerTiming(ToolTipController_ZL *controller);
TARNCOMMON_EXPORT QTimer *ToolTipControllerTimer(ToolTipController_ZL *controller);
