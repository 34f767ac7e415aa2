#pragma once

/*!
    \file KQColorExtensions.h
    \brief QColor to and from the 16-bit record and "#RRGGBB" texts, contrast and darkness.

    Every conversion from a component to an integer truncates toward zero;
    nothing rounds. An invalid QColor plays the part of a missing colour.
*/

#include <TarnCommon/RGBColor.h>
#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QString>
#include <QtGui/QColor>

#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
/*!
    The opaque RGB colour of \a color: each channel divided by 65535.0, alpha
    1.0. Exported under its bare name, since its argument is a plain record.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QColor kq_colorFromRGBColor(RGBColor color);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif

/*!
    The channels of \a color converted to RGB, each component times 65535.0
    truncated toward zero; the alpha is dropped. An invalid colour gives
    (0, 0, 0).
*/
TARNCOMMON_EXPORT RGBColor kq_RGBColor(const QColor &color);

/*!
    \a color converted to RGB with its alpha kept: the value to hand to
    drawing code that wants RGB components. The caller owns nothing to free.
    An invalid colour gives an invalid colour.
*/
TARNCOMMON_EXPORT QColor kq_CGColor(const QColor &color);

/*!
    Black when the mean of the red, green and blue components of \a color is
    above 0.5, else white (a mean of exactly 0.5 gives white): the colour to
    draw a label with on top of \a color. An invalid colour gives black.
*/
TARNCOMMON_EXPORT QColor kq_contrastingBlackOrWhite(const QColor &color);

/*!
    How dark \a color is, from 0.0 (white) to 1.0 (black):
    1 - (0.299 red + 0.587 green + 0.114 blue), read without any conversion.
    A colour that is not RGB (another spec, or an invalid colour) is logged
    with qWarning() as "Color is not RGB: " and its description, and gives 0.0.
*/
TARNCOMMON_EXPORT double kq_calibration(const QColor &color);

/*!
    The opaque colour of a text of exactly seven UTF-16 units of the form
    "#RRGGBB", or an invalid colour.

    The text is upper-cased and its UTF-8 bytes are read as the C format
    "#%02X%02X%02X" reads them: white space before a field is skipped, a
    field may hold a sign or a "0X" prefix, and a last field of one digit
    is accepted, so "# 1 2 3" gives (1, 2, 3)/255 and "#12345Z" gives
    (0x12, 0x34, 0x5)/255. A component read above 255 (a negative field
    wraps) counts as full.
*/
TARNCOMMON_EXPORT QColor kq_colorFromRGBHexString(const QString &text);

/*!
    The text "#RRGGBB" of \a color converted to RGB: each component times
    255.0, truncated, as two upper-case hexadecimal digits; the alpha is
    dropped. An invalid colour gives "#000000".
*/
TARNCOMMON_EXPORT QString kq_RGBHexString(const QColor &color);
