#include <TarnCommon/KQColourWheel.h>

#include <TarnCommon/KQAssert.h>

#include "Foundation/KQColorComponents_p.h"

#include <algorithm>
#include <cmath>

using KQColor::truncatedComponent;

namespace {

// "max(0, v), then above 1 counts as 0": not-a-number counts as 0 too.
double unitOrZero(double v)
{
    return (v > 0.0 && v <= 1.0) ? v : 0.0;
}

} // namespace

double Get_Green_colour_index_01_for_degree(double d)
{
    // Adding or subtracting 360 until in range, done in one exact step so
    // that huge or infinite degrees cannot loop for ever.
    if (d < 0.0) {
        d = std::fmod(d, 360.0);
        if (d < 0.0)
            d += 360.0;
    } else if (d > 360.0) {
        d = std::fmod(d, 360.0);
        if (d == 0.0)
            d = 360.0;
    }
    if (d >= 60.0 && d <= 180.0)
        return 1.0;
    if (d >= 240.0 && d <= 360.0)
        return 0.0;
    if (d >= 0.0 && d <= 60.0)
        return d / 60.0;
    if (d >= 180.0 && d <= 240.0)
        return (d - 180.0) / (-60.0) + 1.0;
    return 0.0; // not a number
}

RGBColor Get_RGB_Outside_Colour_Ring_from_degree(double degrees)
{
    return RGBColor{truncatedComponent(Get_Green_colour_index_01_for_degree(degrees + 120.0) * 65535.0),
                    truncatedComponent(Get_Green_colour_index_01_for_degree(degrees) * 65535.0),
                    truncatedComponent(Get_Green_colour_index_01_for_degree(degrees + 240.0) * 65535.0)};
}

RGBColor Get_RGB_Lighter_Colour_by_fraction(RGBColor c, double f)
{
    const auto lighter = [f](quint16 x) { return truncatedComponent((65535.0 - x) * (1.0 - f) + x); };
    return RGBColor{lighter(c.red), lighter(c.green), lighter(c.blue)};
}

RGBColor Get_RGB_Darker_Colour_by_fraction(RGBColor c, double f)
{
    const auto darker = [f](quint16 x) { return truncatedComponent(x * f); };
    return RGBColor{darker(c.red), darker(c.green), darker(c.blue)};
}

RGBColor Get_Color_in_2D_01_space(double x, double y)
{
    x = unitOrZero(x);
    y = unitOrZero(y);
    const RGBColor hue = Get_RGB_Outside_Colour_Ring_from_degree(x * 360.0);
    if (y < 0.5)
        return Get_RGB_Lighter_Colour_by_fraction(hue, 2.0 * y);
    if (y > 0.5) {
        const double keep = 1.0 - 2.0 * (y - 0.5);
        return RGBColor{truncatedComponent(hue.red * keep), truncatedComponent(hue.green * keep),
                        truncatedComponent(hue.blue * keep)};
    }
    return hue;
}

RGBColor Get_RGBColour_for_box(int64_t column, int64_t row, int64_t rows, int64_t columns, double dim)
{
    // In doubles throughout: a grid of one row or column divides by zero,
    // which integer division would make undefined.
    RGBColor c;
    if (column != 1) {
        const double x = (double(column) - 1.0) / (double(columns) - 1.0);
        const double y = (double(row) - 1.0) / (double(rows) - 1.0) * 0.7 + 0.1;
        c = Get_Color_in_2D_01_space(x, y);
    } else {
        quint16 grey;
        if (row == rows)
            grey = 0;
        else if (row == 1)
            grey = 65535;
        else
            grey = truncatedComponent((double(rows) - double(row)) / double(rows) * 65535.0);
        c = RGBColor{grey, grey, grey};
    }
    if (dim != 0.0) // not-a-number too
        c = Get_RGB_Darker_Colour_by_fraction(c, 0.7);
    if (rows >= 40 && row > rows - 5) {
        const double f = std::clamp((double(rows) - double(row)) / 5.0 / 1.5 + 0.3333, 0.0, 1.0);
        c = Get_RGB_Darker_Colour_by_fraction(c, f);
    }
    return c;
}

double q_COLOR_difference_between_NSColors(const QColor &a, const QColor &b)
{
    if (!a.isValid() || !b.isValid())
        return 1.0;
    if (a == b)
        return 0.0;
    double ca[4], cb[4];
    KQColor::rgbComponents(a, ca);
    KQColor::rgbComponents(b, cb);
    const double dr = ca[0] - cb[0], dg = ca[1] - cb[1], db = ca[2] - cb[2], da = ca[3] - cb[3];
    const double diff = std::sqrt(da * da + (db * db + (dr * dr + dg * dg))) * 0.5;
    if (!(diff >= 0.0 && diff <= 1.0))
        KQAssertionFailed("diff >= 0.0 && diff <= 1.0", __FILE__, __LINE__, KQ_FUNCTION_NAME);
    return diff;
}
