#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QTextDocumentFragment>

class QPainter;

// Image and drawing helpers. The names are kept as client code knows them.

// A bitmap copy of the image's first representation (its first available
// size); a null image when the icon has no representation at all.
TARNCOMMON_EXPORT QImage QDX__Copy_NSImage_to_CGImageRef(const QIcon &image);

// A copy of originalImage drawn at the given opacity (0 = fully see-through,
// 1 = an equal copy) onto a transparent image of the same size. A null image
// is refused with an assertion report and a null result.
TARNCOMMON_EXPORT QImage q_IMAGE_transparent_image_from_image(const QImage &originalImage, double fraction);

// The image as a one-character piece of rich text. The picture travels inside
// the fragment's image name (a data URL), so any QTextDocument it is inserted
// into can show it without registering a resource first.
TARNCOMMON_EXPORT QTextDocumentFragment q_IMAGE_attributed_string_from_image(const QImage &image);

// Mirrors the painter's coordinate system top to bottom about the horizontal
// centre line of rect, so that rect maps onto itself upside down:
// y' = 2 * rect.y + rect.height - y. The painter's state is not saved; that
// is the caller's business.
TARNCOMMON_EXPORT void q_DRAWING_flip_graphics_context_for_rect(QPainter *painter, const QRectF &rect);
