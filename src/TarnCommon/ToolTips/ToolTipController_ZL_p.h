#pragma once

class QTimer;
class ToolTipController_ZL;

namespace KQToolTipRules {

class ToolTipTiming_ZL;

// The rules and the timer inside a controller, for the library's tests and
// tools that drive it without waiting.
ToolTipTiming_ZL &ToolTipControllerTiming(ToolTipController_ZL *controller);
// nullptr before startup.
QTimer *ToolTipControllerTimer(ToolTipController_ZL *controller);

} // namespace KQToolTipRules
