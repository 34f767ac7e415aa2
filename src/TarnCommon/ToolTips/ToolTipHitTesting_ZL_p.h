#pragma once

#include <QtCore/QPointF>

class QWidget;

namespace KQToolTipRules {

// The default window finder of ToolTipAtScreenPoint: the window system's
// top-level window at the point, if it is one of the application's own.
QWidget *ToolTipApplicationWindowAt(QPointF globalPoint);

} // namespace KQToolTipRules
