#pragma once

#include <TarnCommon/TarnCommonExport.h>

class QScrollArea;
class QWidget;

// Puts view into a new vertically scrolling area without background, whose
// scroll bar shows only when needed, sized to show the whole view. The view
// keeps its own size (the area does not resize it). The caller owns the
// area (give it a parent); nullptr for a null view.
TARNCOMMON_EXPORT QScrollArea *ZLWrapVerticalScrollViewAroundView(QWidget *view);
