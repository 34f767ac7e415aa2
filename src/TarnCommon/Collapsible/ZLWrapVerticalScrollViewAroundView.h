#pragma once

#include <TarnCommon/TarnCommonExport.h>

class QScrollArea;
class QWidget;

// Puts view into a new vertically scrolling area without border or
// background, whose scroll bar shows only when needed, sized to show the
// whole view. The view follows the area's width (there is no horizontal
// scrolling) but keeps its own height. The caller owns the area (give it a
// parent); nullptr for a null view.
TARNCOMMON_EXPORT QScrollArea *ZLWrapVerticalScrollViewAroundView(QWidget *view);
