#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQTab.h>

#include <QtGui/QPalette>

#include <algorithm>
#include <cmath>

namespace KQTabBar {

QRectF tabBarRectForBounds(const QRectF &bounds)
{
    return QRectF(bounds.x(), bounds.y(), bounds.width(), kBarHeight);
}

namespace {

// The left edge of the first cell; tabRectsForTabBarRect() and
// tabIndexAtPoint() must agree on it to the last bit.
double firstCellX(const QRectF &bar, qsizetype count)
{
    return std::floor(bar.x() + bar.width() * 0.5 + double(count) * -kCellWidth * 0.5);
}

} // namespace

QList<QRectF> tabRectsForTabBarRect(const QRectF &bar, qsizetype count)
{
    QList<QRectF> cells;
    if (count <= 0)
        return cells;
    cells.reserve(count);
    double x = firstCellX(bar, count);
    for (qsizetype i = 0; i < count; ++i) {
        cells.append(QRectF(x, bar.y(), kCellWidth, bar.height() - 1.0));
        x += kCellWidth;
    }
    return cells;
}

qsizetype tabIndexAtPoint(const QRectF &bounds, qsizetype count, const QPointF &point)
{
    // Walks the cells as tabRectsForTabBarRect() lays them out, without
    // building the list: hit testing runs on every mouse move.
    const QRectF bar = tabBarRectForBounds(bounds);
    double x = firstCellX(bar, count);
    for (qsizetype i = 0; i < count; ++i) {
        if (kq_pointInRect(point, QRectF(x, bar.y(), kCellWidth, bar.height() - 1.0)))
            return i;
        x += kCellWidth;
    }
    return -1;
}

QRectF iconRectForCell(const QRectF &cell)
{
    return QRectF(std::floor(cell.x() + cell.width() * 0.5 - kIconSize * 0.5),
                  std::floor(cell.y() + cell.height() * 0.5 - kIconSize * 0.5), kIconSize, kIconSize);
}

QRectF contentFrameForBounds(const QRectF &bounds)
{
    return QRectF(bounds.x(), bounds.y() + kBarHeight, bounds.width(),
                  std::max(0.0, bounds.height() - kBarHeight));
}

QRectF accessibilityButtonFrame(const QRectF &windowFrame, const QRectF &bounds, qsizetype count,
                                qsizetype index)
{
    const double x = windowFrame.x() + (bounds.width() - double(count) * kCellWidth) * 0.5
                     + double(index) * kCellWidth;
    const double y = windowFrame.y() + (bounds.height() - kBarHeight) + 20.0 - (bounds.y() + kBarHeight);
    return QRectF(x, y, kCellWidth, kAccessibilityButtonHeight);
}

double minimumBarWidth(qsizetype count)
{
    return double(std::max<qsizetype>(count, 0)) * kCellWidth;
}

qsizetype keyboardTargetIndex(qsizetype focused, qsizetype count, int key)
{
    if (count <= 0)
        return -1;
    // A focus outside the list (no tab focused yet) starts from the ends.
    const bool known = focused >= 0 && focused < count;
    switch (key) {
    case Qt::Key_Left:
        return known ? std::max<qsizetype>(focused - 1, 0) : 0;
    case Qt::Key_Right:
        return known ? std::min<qsizetype>(focused + 1, count - 1) : 0;
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return count - 1;
    default:
        return -1;
    }
}

Colors colorsForPalette(const QPalette &palette)
{
    Colors colors;
    colors.background = palette.color(QPalette::Button);
    colors.separator = palette.color(QPalette::Dark);
    colors.shade = palette.color(QPalette::ButtonText);
    colors.shade.setAlpha(255);
    colors.pressed = colors.shade;
    colors.pressed.setAlpha(qRound(0.4 * 255));
    return colors;
}

} // namespace KQTabBar

KQTabClickTracker::Step KQTabClickTracker::track(KQTab *underPointer, bool buttonReleased)
{
    Step step;
    if (underPointer != m_pressed) {
        m_pressed = underPointer;
        step.pressedChanged = true;
    }
    if (buttonReleased) {
        step.finished = true;
        step.selection = m_pressed;
    }
    return step;
}

void KQTabClickTracker::reset()
{
    m_pressed = nullptr;
}
