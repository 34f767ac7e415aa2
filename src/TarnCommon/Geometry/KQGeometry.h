#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QString>

#include <cstdint>

/*!
    \file KQGeometry.h
    \brief Rectangle and point arithmetic with the platform's rules, a monotonic clock and unique ids.

    Sizes may be negative and stay so, not-a-number propagates, nothing is
    normalised behind the caller's back. Rectangles are read as origin (x, y)
    and size (width, height) whichever way y grows.
*/

/*! The edges of a rectangle, as q_RECT_set_edge_to_location() takes them. */
enum KQRectEdge : unsigned {
    KQMinXEdge = 0, //!< the edge at x
    KQMinYEdge = 1, //!< the edge at y
    KQMaxXEdge = 2, //!< the edge at x + width
    KQMaxYEdge = 3, //!< the edge at y + height
};

/*! The rectangle spanned by points \a a and \a b, in either order, with a non-negative size. */
TARNCOMMON_EXPORT QRectF q_RECT_rect_between_points(QPointF a, QPointF b);
/*! The straight-line distance between \a a and \a b. */
TARNCOMMON_EXPORT double q_POINT_distance_between_points(QPointF a, QPointF b);
/*! The centre of \a rect: origin plus half the size (so also for a negative size). */
TARNCOMMON_EXPORT QPointF q_RECT__Get_Centre(QRectF rect);

/*!
    \a rect with its \a edge (a KQRectEdge) moved to \a location and the
    opposite edge kept where it was; the size may turn negative. An edge
    above 3 is logged as an error and the rectangle comes back unchanged.
*/
TARNCOMMON_EXPORT QRectF q_RECT_set_edge_to_location(QRectF rect, unsigned edge, double location);

/*!
    \a rect with one \a corner moved to \a point and the opposite corner kept:
    0 = (min x, min y), 1 = (min x, max y), 2 = (max x, min y),
    3 and above = (max x, max y).
*/
TARNCOMMON_EXPORT QRectF q_RECT_set_corner_to_point(QRectF rect, uint32_t corner, QPointF point);

/*! \a rect with negative widths and heights flipped, so the same area has a non-negative size. */
TARNCOMMON_EXPORT QRectF q_RECT_normalize(QRectF rect);

/*!
    Seconds on a monotonic clock since the system started; only differences
    between two readings mean anything.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT double Secs(void);

/*!
    A new random upper-case, hyphenated UUID text (8-4-4-4-12); a null string
    if none could be made. Its name is unmangled like the others' though its
    result is a QString, which C code cannot take.
*/
#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QString Unique_ID_ns(void);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif

/*!
    \a point projected perpendicularly onto the line through \a lineStart and
    \a lineEnd; with \a clamp, each coordinate is then clamped to the
    segment's bounding box (a not-a-number coordinate becomes its minimum).
    A horizontal line is not special-cased: unclamped, it yields not-a-number.
*/
TARNCOMMON_EXPORT QPointF KQPointConstrainToLine(bool clamp, QPointF point, QPointF lineStart, QPointF lineEnd);

// The same operations on plain records, for callers that go through a C
// interface: these have C linkage, so they are exported under the bare names.
// C++ code normally calls the QPointF/QRectF forms above, which are
// overloads of the same names.

/*! \brief A point as a plain record, for C interfaces. */
typedef struct KQPoint
{
    double x; //!< the horizontal coordinate
    double y; //!< the vertical coordinate
} KQPoint;

/*! \brief A size as a plain record, for C interfaces; either value may be negative. */
typedef struct KQSize
{
    double width;  //!< the horizontal extent
    double height; //!< the vertical extent
} KQSize;

/*! \brief A rectangle as a plain record, for C interfaces: an origin and a size. */
typedef struct KQRect
{
    KQPoint origin; //!< the corner at (min x, min y) for a non-negative size
    KQSize size;    //!< the extent from the origin
} KQRect;

extern "C" {
/*! The C form of q_RECT_rect_between_points(QPointF, QPointF). */
TARNCOMMON_EXPORT KQRect q_RECT_rect_between_points(KQPoint a, KQPoint b);
/*! The C form of q_POINT_distance_between_points(QPointF, QPointF). */
TARNCOMMON_EXPORT double q_POINT_distance_between_points(KQPoint a, KQPoint b);
/*! The C form of q_RECT__Get_Centre(QRectF). */
TARNCOMMON_EXPORT KQPoint q_RECT__Get_Centre(KQRect rect);
/*! The C form of q_RECT_set_edge_to_location(QRectF, unsigned, double). */
TARNCOMMON_EXPORT KQRect q_RECT_set_edge_to_location(KQRect rect, unsigned edge, double location);
/*! The C form of q_RECT_set_corner_to_point(QRectF, uint32_t, QPointF). */
TARNCOMMON_EXPORT KQRect q_RECT_set_corner_to_point(KQRect rect, uint32_t corner, KQPoint point);
/*! The C form of q_RECT_normalize(QRectF). */
TARNCOMMON_EXPORT KQRect q_RECT_normalize(KQRect rect);
/*! The C form of KQPointConstrainToLine(bool, QPointF, QPointF, QPointF). */
TARNCOMMON_EXPORT KQPoint KQPointConstrainToLine(bool clamp, KQPoint point, KQPoint lineStart, KQPoint lineEnd);
} // extern "C"
