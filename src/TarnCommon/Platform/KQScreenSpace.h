#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>

// The platform's screen space: y grows upward from the bottom-left corner of
// the primary screen. Rules stated in that space (keeping a window's top edge,
// constraining a frame to a screen, placing a tooltip) are computed in it and
// converted back; public functions take and return Qt global coordinates.
//
// With P the primary screen's geometry, a rectangle converts as
// y_up = (P.y + P.height) - (y_down + height), a point as
// y_up = (P.y + P.height) - y_down. Each conversion is its own inverse.
namespace KQScreenSpace {

// The primary screen's geometry in Qt global coordinates; empty without a screen.
TARNCOMMON_EXPORT QRectF primaryScreenGeometry();

TARNCOMMON_EXPORT QRectF fromGlobal(const QRectF &rect, const QRectF &primary);
TARNCOMMON_EXPORT QRectF toGlobal(const QRectF &rect, const QRectF &primary);
TARNCOMMON_EXPORT QPointF fromGlobal(const QPointF &point, const QRectF &primary);
TARNCOMMON_EXPORT QPointF toGlobal(const QPointF &point, const QRectF &primary);

// The same against the current primary screen.
TARNCOMMON_EXPORT QRectF fromGlobal(const QRectF &rect);
TARNCOMMON_EXPORT QRectF toGlobal(const QRectF &rect);
TARNCOMMON_EXPORT QPointF fromGlobal(const QPointF &point);
TARNCOMMON_EXPORT QPointF toGlobal(const QPointF &point);

// A screen as the platform lists it, in screen space.
struct Screen
{
    QRectF frame;
    QRectF visibleFrame;
};

// Every screen, the primary first, in screen space.
TARNCOMMON_EXPORT QList<Screen> screens();

} // namespace KQScreenSpace
