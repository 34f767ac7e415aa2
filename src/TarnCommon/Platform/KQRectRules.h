#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>

// The platform's rectangle rules, which differ from QRectF's at the edges:
// containment is half-open ([min, max) on both axes), an intersection needs a
// positive overlap, and a union ignores empty rectangles. Rectangles are taken
// as they are: no normalisation of negative sizes.

inline double kq_minX(const QRectF &r) { return r.x(); }
inline double kq_minY(const QRectF &r) { return r.y(); }
inline double kq_maxX(const QRectF &r) { return r.x() + r.width(); }
inline double kq_maxY(const QRectF &r) { return r.y() + r.height(); }

// Empty: no positive width or no positive height.
inline bool kq_isEmptyRect(const QRectF &r)
{
    return !(r.width() > 0) || !(r.height() > 0);
}

inline bool kq_pointInRect(const QPointF &p, const QRectF &r)
{
    return p.x() >= kq_minX(r) && p.x() < kq_maxX(r) && p.y() >= kq_minY(r) && p.y() < kq_maxY(r);
}

inline bool kq_intersectsRect(const QRectF &a, const QRectF &b)
{
    return !(kq_maxX(a) <= kq_minX(b) || kq_maxX(b) <= kq_minX(a) || kq_maxY(a) <= kq_minY(b)
             || kq_maxY(b) <= kq_minY(a));
}

// The overlap of a and b; the zero rectangle when they only touch or miss.
inline QRectF kq_intersectionRect(const QRectF &a, const QRectF &b)
{
    if (!kq_intersectsRect(a, b))
        return QRectF(0, 0, 0, 0);
    const double x = kq_minX(a) > kq_minX(b) ? kq_minX(a) : kq_minX(b);
    const double y = kq_minY(a) > kq_minY(b) ? kq_minY(a) : kq_minY(b);
    const double maxX = kq_maxX(a) < kq_maxX(b) ? kq_maxX(a) : kq_maxX(b);
    const double maxY = kq_maxY(a) < kq_maxY(b) ? kq_maxY(a) : kq_maxY(b);
    return QRectF(x, y, maxX - x, maxY - y);
}

// The smallest rectangle holding both; an empty one counts for nothing.
inline QRectF kq_unionRect(const QRectF &a, const QRectF &b)
{
    if (kq_isEmptyRect(a))
        return kq_isEmptyRect(b) ? QRectF(0, 0, 0, 0) : b;
    if (kq_isEmptyRect(b))
        return a;
    const double x = kq_minX(a) < kq_minX(b) ? kq_minX(a) : kq_minX(b);
    const double y = kq_minY(a) < kq_minY(b) ? kq_minY(a) : kq_minY(b);
    const double maxX = kq_maxX(a) > kq_maxX(b) ? kq_maxX(a) : kq_maxX(b);
    const double maxY = kq_maxY(a) > kq_maxY(b) ? kq_maxY(a) : kq_maxY(b);
    return QRectF(x, y, maxX - x, maxY - y);
}

inline QRectF kq_offsetRect(const QRectF &r, double dx, double dy)
{
    return QRectF(r.x() + dx, r.y() + dy, r.width(), r.height());
}

inline QRectF kq_insetRect(const QRectF &r, double dx, double dy)
{
    return QRectF(r.x() + dx, r.y() + dy, r.width() - 2 * dx, r.height() - 2 * dy);
}

// Exact equality of origin and size (QRectF's operator== is fuzzy).
inline bool kq_equalRects(const QRectF &a, const QRectF &b)
{
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}
