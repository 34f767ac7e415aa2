#pragma once

#include <QtGui/QColor>

class QPalette;

// The tooltip's colours from the palette's tooltip roles. A light palette
// keeps the classic translucent pale yellow; a dark or high-contrast dark
// palette gets its own tooltip face at the same translucency. The border and
// the text take the tooltip text colour, the border at a third of its opacity.
struct ToolTipColors_ZL
{
    QColor background;
    QColor border;
    QColor text;
};

ToolTipColors_ZL toolTipColorsForPalette(const QPalette &palette);
