#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>

/*!
    \file KQScreenSpace.h
    \brief Conversions between Qt global coordinates and the platform's y-up screen space.
*/

/*!
    \brief The platform's screen space: y grows upward from the bottom-left
    corner of the primary screen.

    Rules stated in that space (keeping a window's top edge, constraining a
    frame to a screen, placing a tooltip) are computed in it and converted
    back; the library's other public functions take and return Qt global
    coordinates.

    With P the primary screen's geometry, a rectangle converts as
    y_up = (P.y + P.height) - (y_down + height), a point as
    y_up = (P.y + P.height) - y_down. Each conversion is its own inverse.

    \code
    const QRectF up = KQScreenSpace::fromGlobal(window->frameGeometry());
    // ... apply a rule stated with y growing upward ...
    window->setGeometry(KQScreenSpace::toGlobal(up).toRect());
    \endcode
*/
namespace KQScreenSpace {

/*!
    The primary screen's geometry in Qt global coordinates; an empty
    rectangle without a GUI application or a screen.
*/
TARNCOMMON_EXPORT QRectF primaryScreenGeometry();

/*! \a rect (Qt global coordinates) in screen space, against the primary screen geometry \a primary. */
TARNCOMMON_EXPORT QRectF fromGlobal(const QRectF &rect, const QRectF &primary);
/*! \a rect (screen space) in Qt global coordinates, against the primary screen geometry \a primary. */
TARNCOMMON_EXPORT QRectF toGlobal(const QRectF &rect, const QRectF &primary);
/*! \a point (Qt global coordinates) in screen space, against the primary screen geometry \a primary. */
TARNCOMMON_EXPORT QPointF fromGlobal(const QPointF &point, const QRectF &primary);
/*! \a point (screen space) in Qt global coordinates, against the primary screen geometry \a primary. */
TARNCOMMON_EXPORT QPointF toGlobal(const QPointF &point, const QRectF &primary);

/*!
    \a rect in screen space against the current primary screen. Without a
    screen the primary geometry is empty and only y is mirrored about 0.
*/
TARNCOMMON_EXPORT QRectF fromGlobal(const QRectF &rect);
/*! \a rect in Qt global coordinates against the current primary screen. */
TARNCOMMON_EXPORT QRectF toGlobal(const QRectF &rect);
/*! \a point in screen space against the current primary screen. */
TARNCOMMON_EXPORT QPointF fromGlobal(const QPointF &point);
/*! \a point in Qt global coordinates against the current primary screen. */
TARNCOMMON_EXPORT QPointF toGlobal(const QPointF &point);

/*! \brief A screen as the platform lists it, in screen space. */
struct Screen
{
    /*! The whole screen (its geometry). */
    QRectF frame;
    /*! The part windows may use (its available geometry, without panels and docks). */
    QRectF visibleFrame;
};

/*! Every screen, the primary first, in screen space; empty without a GUI application. */
TARNCOMMON_EXPORT QList<Screen> screens();

} // namespace KQScreenSpace
