#pragma once

/*!
    \file KQColourWheel.h
    \brief Colours of a palette grid from a hue ring, lighter and darker
    colours, and the difference between two colours.

    Every conversion from a double to a channel truncates toward zero and
    keeps the low 16 bits; nothing is clamped unless a function says so.
    Values no integer can hold (not-a-number, infinite) give a channel of 0,
    never undefined behaviour.
*/

#include <TarnCommon/RGBColor.h>
#include <TarnCommon/TarnCommonExport.h>

#include <QtGui/QColor>

#include <cstdint>

/*!
    The green share, 0 to 1, of the hue at \a degrees: rising over 0-60,
    full over 60-180, falling over 180-240, off over 240-360.

    Degrees outside 0-360 are brought into it (360 itself and its positive
    multiples stay 360); not-a-number and infinite degrees give 0.0.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT double Get_Green_colour_index_01_for_degree(double degrees);

/*!
    The fully saturated hue at \a degrees: red at 0, yellow at 60, green at
    120, blue at 240. Each channel is the green share of the hue turned by
    120 (red), 0 (green) or 240 (blue) degrees, times 65535.0, truncated.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT RGBColor Get_RGB_Outside_Colour_Ring_from_degree(double degrees);

/*!
    \a color moved toward white: each channel x becomes
    (65535 - x) * (1 - \a fraction) + x, truncated. \a fraction is how much of
    the colour remains: 1 leaves it, 0 gives white. A fraction outside 0-1
    wraps the channels.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT RGBColor Get_RGB_Lighter_Colour_by_fraction(RGBColor color, double fraction);

/*!
    \a color scaled toward black: each channel x becomes x * \a fraction,
    truncated. 1 leaves the colour, 0 gives black. A fraction outside 0-1
    wraps the channels.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT RGBColor Get_RGB_Darker_Colour_by_fraction(RGBColor color, double fraction);

/*!
    The colour at (\a x, \a y) of the unit square: the hue from x (times 360
    degrees), white at y = 0, the pure hue at y = 0.5, black at y = 1.

    Each coordinate below 0 (or not a number) counts as 0, and above 1 also
    counts as 0, so a y above 1 gives white rather than black.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT RGBColor Get_Color_in_2D_01_space(double x, double y);

/*!
    The colour of the palette cell at \a column and \a row (both from 1) of a
    grid of \a rows by \a columns, column 1 being a grey ramp from white
    (row 1) to black (the last row); the other columns run through the hues
    across and from light (0.1) to dark (0.8) down.

    A \a dim other than 0 (not-a-number included) darkens the cell to 70%.
    In a palette of 40 rows or more the last five rows are darkened further,
    the last one to a third.

    A grid of one row divides by zero, as does a cell beyond a grid of one
    column; the result is still a colour, never undefined behaviour: such a
    coordinate counts as 0 (white for the row, red for the column).
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT RGBColor Get_RGBColour_for_box(int64_t column, int64_t row, int64_t rows,
                                                                   int64_t columns, double dim);

/*!
    How different \a a and \a b are, from 0 (equal) to 1: half the Euclidean
    distance of their red, green, blue and alpha components in RGB.

    An invalid colour stands for a missing one and gives 1.0; equal colours
    give 0.0 without any arithmetic. A result outside 0-1 (only extended-RGB
    components out of range or not a number give one) is reported as the
    failed condition "diff >= 0.0 && diff <= 1.0" and returned all the same.
*/
TARNCOMMON_EXPORT double q_COLOR_difference_between_NSColors(const QColor &a, const QColor &b);
