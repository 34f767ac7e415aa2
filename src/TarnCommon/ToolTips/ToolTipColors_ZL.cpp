#include "ToolTipColors_ZL_p.h"

#include <QtGui/QPalette>

ToolTipColors_ZL toolTipColorsForPalette(const QPalette &palette)
{
    constexpr int faceAlpha = 221;
    ToolTipColors_ZL colors;
    const QColor face = palette.color(QPalette::ToolTipBase);
    if (face.lightness() >= 128) {
        colors.background = QColor(255, 255, 215, faceAlpha);
    } else {
        colors.background = face;
        colors.background.setAlpha(faceAlpha);
    }
    colors.text = palette.color(QPalette::ToolTipText);
    colors.border = colors.text;
    colors.border.setAlphaF(colors.text.alphaF() / 3.0f);
    return colors;
}
