#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QString>

#include <cstdint>

// Rectangle and point arithmetic with the platform's rules: sizes may be
// negative and stay so, not-a-number propagates, nothing is normalised behind
// the caller's back. Rectangles are read as origin (x, y) and size
// (width, height) whichever way y grows.

// Rectangle edges.
enum KQRectEdge : unsigned {
    KQMinXEdge = 0,
    KQMinYEdge = 1,
    KQMaxXEdge = 2,
    KQMaxYEdge = 3,
};

// The rectangle spanned by two points (non-negative size, any order).
TARNCOMMON_EXPORT QRectF q_RECT_rect_between_points(QPointF a, QPointF b);
TARNCOMMON_EXPORT double q_POINT_distance_between_points(QPointF a, QPointF b);
TARNCOMMON_EXPORT QPointF q_RECT__Get_Centre(QRectF rect);

// Moves one edge to location and keeps the opposite edge where it was. An edge
// above 3 is logged as an error and the rectangle comes back unchanged.
TARNCOMMON_EXPORT QRectF q_RECT_set_edge_to_location(QRectF rect, unsigned edge, double location);

// Moves a corner to point: 0 = (min x, min y), 1 = (min x, max y),
// 2 = (max x, min y), 3 and above = (max x, max y).
TARNCOMMON_EXPORT QRectF q_RECT_set_corner_to_point(QRectF rect, uint32_t corner, QPointF point);

// Flips negative widths and heights so the same area has a non-negative size.
TARNCOMMON_EXPORT QRectF q_RECT_normalize(QRectF rect);

// Seconds on a monotonic clock since the system started; only differences
// between two readings mean anything.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT double Secs(void);

// A new upper-case, hyphenated UUID text (8-4-4-4-12); a null string if none
// could be made. Its name is unmangled like the others' though its result is
// a QString, which C code cannot take.
#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QString Unique_ID_ns(void);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif

// Projects point perpendicularly onto the line through lineStart and lineEnd;
// with clamp, each coordinate is then clamped to the segment's bounding box.
// A horizontal line is not special-cased: unclamped, it yields not-a-number.
TARNCOMMON_EXPORT QPointF KQPointConstrainToLine(bool clamp, QPointF point, QPointF lineStart, QPointF lineEnd);

// The same operations on plain records, for callers that go through a C
// interface: these have C linkage, so they are exported under the bare names.
// C++ code normally calls the QPointF/QRectF forms above, which are
// overloads of the same names.
typedef struct KQPoint
{
    double x, y;
} KQPoint;

typedef struct KQSize
{
    double width, height;
} KQSize;

typedef struct KQRect
{
    KQPoint origin;
    KQSize size;
} KQRect;

extern "C" {
TARNCOMMON_EXPORT KQRect q_RECT_rect_between_points(KQPoint a, KQPoint b);
TARNCOMMON_EXPORT double q_POINT_distance_between_points(KQPoint a, KQPoint b);
TARNCOMMON_EXPORT KQPoint q_RECT__Get_Centre(KQRect rect);
TARNCOMMON_EXPORT KQRect q_RECT_set_edge_to_location(KQRect rect, unsigned edge, double location);
TARNCOMMON_EXPORT KQRect q_RECT_set_corner_to_point(KQRect rect, uint32_t corner, KQPoint point);
TARNCOMMON_EXPORT KQRect q_RECT_normalize(KQRect rect);
TARNCOMMON_EXPORT KQPoint KQPointConstrainToLine(bool clamp, KQPoint point, KQPoint lineStart, KQPoint lineEnd);
} // extern "C"
