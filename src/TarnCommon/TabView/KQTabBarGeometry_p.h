#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QColor>

class QPalette;

class KQTab;

// The tab bar's geometry as plain functions, in the tab view's own (y-down)
// coordinates, so the widget only paints and dispatches what these decide.
namespace KQTabBar {

constexpr double kBarHeight = 27.0;
constexpr double kCellWidth = 40.0;
constexpr double kCellHeight = kBarHeight - 1.0; // the bar's last row is the separator
constexpr double kIconSize = 16.0;
// The accessibility buttons are a little taller than the drawn cells.
constexpr double kAccessibilityButtonHeight = 28.0;

// The strip along the top of the bounds.
QRectF tabBarRectForBounds(const QRectF &bounds);

// One cell per visible tab, abutting, centred as a group on the bar's middle
// with the group's left edge floored to a whole point. Cells are not clipped:
// too many tabs spill over both ends of the bar.
QList<QRectF> tabRectsForTabBarRect(const QRectF &bar, qsizetype count);

// The index of the first cell holding point (half-open containment, so a
// shared edge belongs to the right-hand cell); -1 when none does.
qsizetype tabIndexAtPoint(const QRectF &bounds, qsizetype count, const QPointF &point);

// Where the 16 x 16 icon goes in a cell: centred, on whole points.
QRectF iconRectForCell(const QRectF &cell);

// Where the selected tab's widget goes: everything below the bar.
QRectF contentFrameForBounds(const QRectF &bounds);

// The frame of the accessibility button of visible tab index out of count,
// in y-up screen space, from the window's frame (y-up) and the tab view's
// bounds only: the view's place inside its window is not added.
QRectF accessibilityButtonFrame(const QRectF &windowFrame, const QRectF &bounds,
                                                  qsizetype count, qsizetype index);

// The width the bar needs to show count cells without spilling over.
double minimumBarWidth(qsizetype count);

// The tab a key moves the keyboard focus to, from the focused index among
// count visible tabs: Left/Right step (stopping at the ends), Home/End jump.
// -1 when the key is not a navigation key or there are no tabs.
qsizetype keyboardTargetIndex(qsizetype focused, qsizetype count, int key);

// Every colour the bar draws, from the palette roles of the same purpose:
// the background is the button face, the separator its dark edge, and the
// selected shading and pressed darkening are the button text's colour (black
// on a light palette, light on a dark one), so they always contrast with the
// face.
struct Colors
{
    QColor background;
    QColor separator;
    QColor shade;   // at full opacity; the gradients apply their own alpha
    QColor pressed; // with the pressed look's alpha
};
Colors colorsForPalette(const QPalette &palette);
} // namespace KQTabBar

// Click tracking on the bar. Press, drag and release all run the same step:
// the tab under the pointer becomes the pressed one (the pressed look follows
// the pointer on and off the cells) and a release ends the tracking with the
// pressed tab, if any, as the one to select. A release without a press (a
// stray mouse-up) is tracked the same way, so it selects the cell under it.
class KQTabClickTracker
{
public:
    struct Step
    {
        bool pressedChanged = false; // the bar must be redrawn
        bool finished = false;       // the button went up
        KQTab *selection = nullptr;  // when finished: the tab to select, if any
    };

    Step track(KQTab *underPointer, bool buttonReleased);
    // Called once the finished step's selection has been made.
    void reset();

    KQTab *pressedDownTab() const { return m_pressed; }

private:
    QPointer<KQTab> m_pressed;
};
