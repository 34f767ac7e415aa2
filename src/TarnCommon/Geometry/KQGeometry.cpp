#include <TarnCommon/KQGeometry.h>

#include <TarnCommon/KQLog.h>

#include <QtCore/QUuid>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

// The single-precision epsilon, below which a line counts as vertical.
constexpr double kVerticalEpsilon = 1.1920928955078125e-07;

// max then min, with a not-a-number value replaced by low.
double clampInto(double value, double low, double high)
{
    value = std::isnan(value) ? low : std::max(low, value);
    return std::min(high, value);
}

QPointF toQt(KQPoint point)
{
    return QPointF(point.x, point.y);
}

QRectF toQt(KQRect rect)
{
    return QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

KQPoint fromQt(QPointF point)
{
    return KQPoint{point.x(), point.y()};
}

KQRect fromQt(QRectF rect)
{
    return KQRect{{rect.x(), rect.y()}, {rect.width(), rect.height()}};
}

} // namespace

QRectF q_RECT_rect_between_points(QPointF a, QPointF b)
{
    const double x = std::min(a.x(), b.x());
    const double y = std::min(a.y(), b.y());
    return QRectF(x, y, std::max(a.x(), b.x()) - x, std::max(a.y(), b.y()) - y);
}

double q_POINT_distance_between_points(QPointF a, QPointF b)
{
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    return std::sqrt(dx * dx + dy * dy);
}

QPointF q_RECT__Get_Centre(QRectF rect)
{
    return QPointF(rect.x() + rect.width() * 0.5, rect.y() + rect.height() * 0.5);
}

QRectF q_RECT_set_edge_to_location(QRectF rect, unsigned edge, double location)
{
    // QRectF's setters are avoided where they would move the opposite edge.
    double x = rect.x(), y = rect.y(), width = rect.width(), height = rect.height();
    switch (edge) {
    case KQMinXEdge:
        width += x - location;
        x = location;
        break;
    case KQMinYEdge:
        height += y - location;
        y = location;
        break;
    case KQMaxXEdge:
        width = location - x;
        break;
    case KQMaxYEdge:
        height = location - y;
        break;
    default:
        ZLLogError("%i is not a valid NSRectEdge value", static_cast<int>(edge));
        return rect;
    }
    return QRectF(x, y, width, height);
}

QRectF q_RECT_set_corner_to_point(QRectF rect, uint32_t corner, QPointF point)
{
    const unsigned xEdge = corner < 2 ? KQMinXEdge : KQMaxXEdge;
    const unsigned yEdge = (corner & ~2u) == 0 ? KQMinYEdge : KQMaxYEdge;
    rect = q_RECT_set_edge_to_location(rect, xEdge, point.x());
    return q_RECT_set_edge_to_location(rect, yEdge, point.y());
}

QRectF q_RECT_normalize(QRectF rect)
{
    double x = rect.x(), y = rect.y(), width = rect.width(), height = rect.height();
    if (width < 0) {
        x += width;
        width = -width;
    }
    if (height < 0) {
        y += height;
        height = -height;
    }
    return QRectF(x, y, width, height);
}

double Secs(void)
{
    // steady_clock is CLOCK_MONOTONIC on Linux: time since boot.
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    const auto nanoseconds = static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count());
    return static_cast<double>(nanoseconds) / 1000000000.0;
}

QString Unique_ID_ns(void)
{
    const QUuid uuid = QUuid::createUuid();
    if (uuid.isNull())
        return QString();
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

QPointF KQPointConstrainToLine(bool clamp, QPointF point, QPointF lineStart, QPointF lineEnd)
{
    double x, y;
    if (std::fabs(lineStart.x() - lineEnd.x()) <= kVerticalEpsilon) {
        x = lineEnd.x();
        y = point.y();
    } else {
        const double m = (lineEnd.y() - lineStart.y()) / (lineEnd.x() - lineStart.x());
        const double b = lineStart.y() - m * lineStart.x();
        const double k = 1.0 / m; // infinite for a horizontal line, on purpose
        x = (k * point.x() + point.y() - b) / (k + m);
        y = m * x + b;
    }
    if (clamp) {
        x = clampInto(x, std::min(lineStart.x(), lineEnd.x()), std::max(lineStart.x(), lineEnd.x()));
        y = clampInto(y, std::min(lineStart.y(), lineEnd.y()), std::max(lineStart.y(), lineEnd.y()));
    }
    return QPointF(x, y);
}

// The plain-record forms only convert: QRectF keeps negative sizes and
// not-a-number values as given, so the rules above apply unchanged.

KQRect q_RECT_rect_between_points(KQPoint a, KQPoint b)
{
    return fromQt(q_RECT_rect_between_points(toQt(a), toQt(b)));
}

double q_POINT_distance_between_points(KQPoint a, KQPoint b)
{
    return q_POINT_distance_between_points(toQt(a), toQt(b));
}

KQPoint q_RECT__Get_Centre(KQRect rect)
{
    return fromQt(q_RECT__Get_Centre(toQt(rect)));
}

KQRect q_RECT_set_edge_to_location(KQRect rect, unsigned edge, double location)
{
    return fromQt(q_RECT_set_edge_to_location(toQt(rect), edge, location));
}

KQRect q_RECT_set_corner_to_point(KQRect rect, uint32_t corner, KQPoint point)
{
    return fromQt(q_RECT_set_corner_to_point(toQt(rect), corner, toQt(point)));
}

KQRect q_RECT_normalize(KQRect rect)
{
    return fromQt(q_RECT_normalize(toQt(rect)));
}

KQPoint KQPointConstrainToLine(bool clamp, KQPoint point, KQPoint lineStart, KQPoint lineEnd)
{
    return fromQt(KQPointConstrainToLine(clamp, toQt(point), toQt(lineStart), toQt(lineEnd)));
}
