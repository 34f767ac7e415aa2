#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QTextDocumentFragment>

/*!
    \file KQImageDrawing.h
    \brief Image and drawing helpers, under the names client code knows them by.
*/

class QPainter;

/*!
    A bitmap copy of \a image's first representation (its first available
    size); a null image when the icon is null or has no representation.
*/
TARNCOMMON_EXPORT QImage QDX__Copy_NSImage_to_CGImageRef(const QIcon &image);

/*!
    A copy of \a originalImage drawn at the opacity \a fraction (0 = fully
    see-through, 1 = an equal copy) onto a transparent image of the same size
    and device pixel ratio, in premultiplied ARGB32. A null image is refused
    with an assertion report and a null result.
*/
TARNCOMMON_EXPORT QImage q_IMAGE_transparent_image_from_image(const QImage &originalImage, double fraction);

/*!
    \a image as a one-character piece of rich text, sized in device-independent
    pixels. The picture travels inside the fragment's image name (a PNG data
    URL), so any QTextDocument it is inserted into can show it without
    registering a resource first.
*/
TARNCOMMON_EXPORT QTextDocumentFragment q_IMAGE_attributed_string_from_image(const QImage &image);

/*!
    Mirrors \a painter's coordinate system top to bottom about the horizontal
    centre line of \a rect, so that \a rect maps onto itself upside down:
    y' = 2 * rect.y + rect.height - y. The flip is combined with the current
    transform; the painter's state is not saved, that is the caller's
    business. A null \a painter is refused with an assertion report.

    \code
    painter.save();
    q_DRAWING_flip_graphics_context_for_rect(&painter, bounds);
    painter.drawImage(bounds, bottomUpImage);
    painter.restore();
    \endcode
*/
TARNCOMMON_EXPORT void q_DRAWING_flip_graphics_context_for_rect(QPainter *painter, const QRectF &rect);
