#pragma once

#include <QtCore/QRectF>

namespace KQWindowRules {

// The constraint itself, in y-up screen space: visibleFrame and frame are
// both measured with y growing upward, so "top" is y + height.
QRectF constrainFrameToVisibleFrame(const QRectF &visibleFrame, bool constrainFully, QRectF frame);

} // namespace KQWindowRules
