#pragma once

/*!
    \file RGBColor.h
    \brief The classic colour record of three unsigned 16-bit channels.
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QtGlobal>

/*!
    \brief A colour as three unsigned 16-bit channels, without alpha.

    Each channel runs from 0 (none) to 65535 (full). The record is six bytes,
    passed and returned by value, and has the same layout in C and C++.
*/
typedef struct RGBColor
{
    quint16 red;   //!< the red channel, 0 to 65535
    quint16 green; //!< the green channel, 0 to 65535
    quint16 blue;  //!< the blue channel, 0 to 65535
} RGBColor;

#ifdef __cplusplus
/*! True when the three channels of \a a and \a b are equal. */
inline bool operator==(const RGBColor &a, const RGBColor &b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

/*! True when any channel of \a a differs from that of \a b. */
inline bool operator!=(const RGBColor &a, const RGBColor &b)
{
    return !(a == b);
}
#endif
