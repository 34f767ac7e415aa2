#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>

/*!
    \file KQRectRules.h
    \brief The platform's rectangle rules, which differ from QRectF's at the edges.

    Containment is half-open ([min, max) on both axes), an intersection needs a
    positive overlap, and a union ignores empty rectangles. Rectangles are taken
    as they are: no normalisation of negative sizes. All of these are inline
    and work in whichever direction y grows.
*/

/*! The left edge of \a r: its x. */
inline double kq_minX(const QRectF &r) { return r.x(); }
/*! The lower-y edge of \a r: its y. */
inline double kq_minY(const QRectF &r) { return r.y(); }
/*! The right edge of \a r: x + width (less than x for a negative width). */
inline double kq_maxX(const QRectF &r) { return r.x() + r.width(); }
/*! The higher-y edge of \a r: y + height (less than y for a negative height). */
inline double kq_maxY(const QRectF &r) { return r.y() + r.height(); }

/*! True when \a r has no positive width or no positive height (not-a-number counts as none). */
inline bool kq_isEmptyRect(const QRectF &r)
{
    return !(r.width() > 0) || !(r.height() > 0);
}

/*! True when \a p lies in \a r, half-open: the left and lower edges belong to it, the others not. */
inline bool kq_pointInRect(const QPointF &p, const QRectF &r)
{
    return p.x() >= kq_minX(r) && p.x() < kq_maxX(r) && p.y() >= kq_minY(r) && p.y() < kq_maxY(r);
}

/*!
    True when \a a and \a b overlap by a positive area; rectangles that only
    touch do not, and an empty rectangle (see kq_isEmptyRect()) meets nothing,
    even inside another.
*/
inline bool kq_intersectsRect(const QRectF &a, const QRectF &b)
{
    if (kq_isEmptyRect(a) || kq_isEmptyRect(b))
        return false;
    return !(kq_maxX(a) <= kq_minX(b) || kq_maxX(b) <= kq_minX(a) || kq_maxY(a) <= kq_minY(b)
             || kq_maxY(b) <= kq_minY(a));
}

/*! The overlap of \a a and \a b; the zero rectangle when they only touch or miss. */
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

/*!
    The smallest rectangle holding \a a and \a b; an empty one counts for
    nothing, and two empty ones give the zero rectangle.
*/
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

/*! \a r moved by \a dx and \a dy, its size kept. */
inline QRectF kq_offsetRect(const QRectF &r, double dx, double dy)
{
    return QRectF(r.x() + dx, r.y() + dy, r.width(), r.height());
}

/*!
    \a r shrunk by \a dx on the left and right and by \a dy at the top and
    bottom (negative values grow it); the size may turn negative.
*/
inline QRectF kq_insetRect(const QRectF &r, double dx, double dy)
{
    return QRectF(r.x() + dx, r.y() + dy, r.width() - 2 * dx, r.height() - 2 * dy);
}

/*! Exact equality of origin and size (QRectF's operator== is fuzzy). */
inline bool kq_equalRects(const QRectF &a, const QRectF &b)
{
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}
