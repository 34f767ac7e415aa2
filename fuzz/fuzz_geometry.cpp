// The rectangle and point functions on arbitrary doubles, infinities and
// not-a-number included: nothing may trap, the plain-record forms must give
// the very bits of the Qt forms, and each function keeps the promise a caller
// relies on (a clamped point inside the segment's box, a normalised size
// that is not negative, an edge move that leaves the opposite edge alone...).
#include <TarnCommon/KQGeometry.h>

#include "FuzzSupport.h"

using namespace FuzzSupport;

namespace {

bool finite(std::initializer_list<double> values)
{
    for (double v : values) {
        if (!std::isfinite(v) || std::fabs(v) > 1e6)
            return false;
    }
    return true;
}

bool sameRect(QRectF a, KQRect b)
{
    return same(a.x(), b.origin.x) && same(a.y(), b.origin.y) && same(a.width(), b.size.width)
        && same(a.height(), b.size.height);
}

bool samePoint(QPointF a, KQPoint b)
{
    return same(a.x(), b.x) && same(a.y(), b.y);
}

bool near(double a, double b, double scale)
{
    return std::fabs(a - b) <= 1e-9 * (scale + 1.0);
}

} // namespace

TARN_FUZZ_QUIET_INITIALIZE()

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const QPointF a(anyDouble(data), anyDouble(data));
    const QPointF b(anyDouble(data), anyDouble(data));
    const QPointF p(anyDouble(data), anyDouble(data));
    const QRectF r(anyDouble(data), anyDouble(data), anyDouble(data), anyDouble(data));
    const unsigned edge = data.ConsumeIntegralInRange(0u, 6u);
    const uint32_t corner = data.ConsumeBool() ? data.ConsumeIntegral<uint32_t>() : data.ConsumeIntegralInRange(0u, 3u);
    const double location = anyDouble(data);
    const bool clamp = data.ConsumeBool();
    const KQPoint ka{a.x(), a.y()}, kb{b.x(), b.y()}, kp{p.x(), p.y()};
    const KQRect kr{{r.x(), r.y()}, {r.width(), r.height()}};

    // The record forms are the same functions.
    const QRectF between = q_RECT_rect_between_points(a, b);
    check(sameRect(between, q_RECT_rect_between_points(ka, kb)), "between: forms differ");
    const double distance = q_POINT_distance_between_points(a, b);
    check(same(distance, q_POINT_distance_between_points(ka, kb)), "distance: forms differ");
    const QPointF centre = q_RECT__Get_Centre(r);
    check(samePoint(centre, q_RECT__Get_Centre(kr)), "centre: forms differ");
    reportCount() = 0;
    const QRectF moved = q_RECT_set_edge_to_location(r, edge, location);
    check(reportCount() == (edge > 3 ? 1 : 0), "a bad edge is reported, once");
    check(sameRect(moved, q_RECT_set_edge_to_location(kr, edge, location)), "edge: forms differ");
    const QRectF cornered = q_RECT_set_corner_to_point(r, corner, p);
    check(sameRect(cornered, q_RECT_set_corner_to_point(kr, corner, kp)), "corner: forms differ");
    const QRectF normal = q_RECT_normalize(r);
    check(sameRect(normal, q_RECT_normalize(kr)), "normalize: forms differ");
    const QPointF onLine = KQPointConstrainToLine(clamp, p, a, b);
    check(samePoint(onLine, KQPointConstrainToLine(clamp, kp, ka, kb)), "line: forms differ");

    // Distance: symmetric, never negative, zero to itself.
    check(same(distance, q_POINT_distance_between_points(b, a)), "distance symmetric");
    check(std::isnan(distance) || distance >= 0.0, "distance negative");
    if (finite({a.x(), a.y()}))
        check(q_POINT_distance_between_points(a, a) == 0.0, "distance to itself");

    // Between: order free and the points on its corners, for ordinary numbers.
    if (finite({a.x(), a.y(), b.x(), b.y()})) {
        const QRectF swapped = q_RECT_rect_between_points(b, a); // equal, though 0 and -0 may swap
        check(between.x() == swapped.x() && between.y() == swapped.y() && between.width() == swapped.width()
                  && between.height() == swapped.height(),
              "between symmetric");
        check(between.width() >= 0 && between.height() >= 0, "between size");
        check(between.x() == std::min(a.x(), b.x())
                  && near(between.x() + between.width(), std::max(a.x(), b.x()), std::fabs(a.x()) + std::fabs(b.x())),
              "between edges");
    }

    // Normalising: sizes not negative, a second pass changes nothing.
    check(std::isnan(r.width()) || normal.width() >= 0, "normalized width");
    check(std::isnan(r.height()) || normal.height() >= 0, "normalized height");
    check(sameRect(q_RECT_normalize(normal), q_RECT_normalize(KQRect{{normal.x(), normal.y()},
                                                                      {normal.width(), normal.height()}}))
              && sameRect(q_RECT_normalize(normal), KQRect{{normal.x(), normal.y()}, {normal.width(), normal.height()}}),
          "normalize idempotent");

    // Moving an edge keeps the opposite one; a bad edge changes nothing.
    if (edge > 3) {
        check(sameRect(moved, kr), "bad edge leaves the rectangle");
    } else if (finite({r.x(), r.y(), r.width(), r.height(), location})) {
        const double scale = std::fabs(r.x()) + std::fabs(r.y()) + std::fabs(r.width()) + std::fabs(r.height())
            + std::fabs(location);
        switch (edge) {
        case KQMinXEdge:
            check(moved.x() == location && near(moved.x() + moved.width(), r.x() + r.width(), scale), "min x edge");
            break;
        case KQMinYEdge:
            check(moved.y() == location && near(moved.y() + moved.height(), r.y() + r.height(), scale), "min y edge");
            break;
        case KQMaxXEdge:
            check(moved.x() == r.x() && near(moved.x() + moved.width(), location, scale), "max x edge");
            break;
        default:
            check(moved.y() == r.y() && near(moved.y() + moved.height(), location, scale), "max y edge");
            break;
        }
    }
    const QRectF last = q_RECT_set_corner_to_point(r, std::min(corner, 3u), p);
    check(sameRect(cornered, KQRect{{last.x(), last.y()}, {last.width(), last.height()}}), "corners above 3 are the last");

    // The centre lies within the rectangle, whichever way its size points.
    if (finite({r.x(), r.y(), r.width(), r.height()})) {
        check(centre.x() >= normal.x() && centre.x() <= normal.x() + normal.width(), "centre x");
        check(centre.y() >= normal.y() && centre.y() <= normal.y() + normal.height(), "centre y");
    }

    // A clamped point is never outside the segment's box, never not-a-number.
    if (clamp && !std::isnan(a.x()) && !std::isnan(a.y()) && !std::isnan(b.x()) && !std::isnan(b.y())) {
        check(onLine.x() >= std::min(a.x(), b.x()) && onLine.x() <= std::max(a.x(), b.x()), "clamped x", QString::number(onLine.x()));
        check(onLine.y() >= std::min(a.y(), b.y()) && onLine.y() <= std::max(a.y(), b.y()), "clamped y", QString::number(onLine.y()));
    }
    // Unclamped, on an ordinary slanted line: the foot of the perpendicular.
    const double dx = b.x() - a.x(), dy = b.y() - a.y();
    if (!clamp && finite({a.x(), a.y(), b.x(), b.y(), p.x(), p.y()}) && std::fabs(dx) >= 1.0 && std::fabs(dy) >= 1.0) {
        const double scale = (std::fabs(a.x()) + std::fabs(a.y()) + std::fabs(b.x()) + std::fabs(b.y())
                              + std::fabs(p.x()) + std::fabs(p.y()));
        const double along = (onLine.x() - a.x()) * dy - (onLine.y() - a.y()) * dx;
        const double across = (p.x() - onLine.x()) * dx + (p.y() - onLine.y()) * dy;
        check(std::fabs(along) <= 1e-6 * (scale * scale + 1), "on the line");
        check(std::fabs(across) <= 1e-6 * (scale * scale + 1), "perpendicular");
    }
    // A vertical line keeps the pointer's height.
    if (!clamp && std::fabs(a.x() - b.x()) <= 1.1920928955078125e-07)
        check(same(onLine.x(), b.x()) && same(onLine.y(), p.y()), "vertical line");
    return 0;
}
