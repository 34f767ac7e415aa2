#pragma once

#include <QtCore/QtGlobal>

#include <cstddef>

class QColor;

// Shared by the colour extensions and the colour wheel; not exported.
namespace KQColor {

// A component converted as the colour rules want it: truncated toward zero
// and kept in its low 16 bits, so an out-of-range value wraps as an integer
// store would. Values that no integer can hold (not-a-number, infinite,
// beyond 2^63) give 0 rather than undefined behaviour.
quint16 truncatedComponent(double value);

// Red, green, blue and alpha of color in RGB as doubles. An RGB or extended
// RGB colour is read as it is (extended components may lie outside 0-1);
// other specs are converted. False, with all zero, for an invalid colour.
bool rgbComponents(const QColor &color, double components[4]);

// Reads bytes (stopping at a NUL) exactly as sscanf(bytes, "#%02X%02X%02X", ...)
// of the C library does in the "C" locale: the number of fields converted,
// or -1 when the input ends before the first conversion.
int scanHexTriplet(const char *bytes, std::size_t length, unsigned int values[3]);

} // namespace KQColor
