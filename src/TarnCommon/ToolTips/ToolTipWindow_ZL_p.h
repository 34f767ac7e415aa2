#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <optional>

namespace KQToolTipRules {

// Placement rules of the tooltip window, in y-up screen space.

// The first of frames that holds point (half-open); logs
// "No screen found at point {x, y}" when none does.
std::optional<QRectF> ScreenAtPoint(QPointF point, const QList<QRectF> &frames);

// The bottom-left corner of a window of size for the pointer at point:
// its top 5 below the cursor image (which reaches cursorBelow under the hot
// spot), or 30 above the pointer when that would leave the screen's bottom;
// its left edge at the pointer, kept inside the screen horizontally. Without
// a screen the window goes at the pointer, or at x = 0 when the pointer is
// left of 0, and above the pointer when it would reach below y = 0.
QPointF ToolTipWindowOrigin(QPointF point, QSizeF size, const QList<QRectF> &frames, double cursorBelow);

// The content size for text using used inside a container inset by inset.
QSizeF ToolTipContentSize(const QRectF &used, QSizeF inset);

// How far the image of a standard cursor shape of the theme's size reaches
// below its hot spot: the arrows point from the top, the I-beam, crosses
// and sizing shapes are held at their middle, a blank cursor has no image.
double ToolTipStandardCursorReach(int shape, double size);

// The cursor theme's size in device pixels, as X finds it: XCURSOR_SIZE,
// else the Xcursor.size resource, else the resources' Xft.dpi at 16 points,
// else screenPixels / 48 (the smaller side of the X screen; 0 when unknown),
// else 16.
int ToolTipCursorThemeSize(const QByteArray &xcursorSize, const QByteArray &resources, int screenPixels);

// How far the current cursor's image reaches below its hot spot, in
// device-independent pixels: from its pixmap for a bitmap cursor, from the
// theme's size and the shape for a standard one.
double ToolTipCursorReachBelowHotSpot();

} // namespace KQToolTipRules

class ToolTipTextView_ZL;
class QString;

// What ToolTipTextView_ZL::setText() does for a plain string, faster
// when the view already holds plain text in its own font and width.
QRectF ToolTipSetPlainText_ZL(ToolTipTextView_ZL *view, const QString &text, double wrapWidth);
