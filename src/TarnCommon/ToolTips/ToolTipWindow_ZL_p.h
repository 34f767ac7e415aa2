#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <optional>

// Placement rules of the tooltip window, in y-up screen space.

// The first of frames that holds point (half-open); logs
// "No screen found at point {x, y}" when none does.
TARNCOMMON_EXPORT std::optional<QRectF> ScreenAtPoint(QPointF point, const QList<QRectF> &frames);

// The bottom-left corner of a window of size for the pointer at point:
// its top 5 below the cursor image (which reaches cursorBelow under the hot
// spot), or 30 above the pointer when that would leave the screen's bottom;
// its left edge at the pointer, kept inside the screen horizontally. Without
// a screen the window goes at the pointer, or at x = 0 when the pointer is
// left of 0, and above the pointer when it would reach below y = 0.
TARNCOMMON_EXPORT QPointF ToolTipWindowOrigin(QPointF point, QSizeF size, const QList<QRectF> &frames,
                                              double cursorBelow);

// The content size for text using used inside a container inset by inset.
TARNCOMMON_EXPORT QSizeF ToolTipContentSize(const QRectF &used, QSizeF inset);

// How far the current cursor's image reaches below its hot spot. Standard
// shapes have no image Qt can read (X11 draws them itself), so they count as
// the usual arrow, XCURSOR_SIZE (16 unless set) tall with its hot spot at
// the top.
TARNCOMMON_EXPORT double ToolTipCursorReachBelowHotSpot();
