// The tab bar's geometry on any bounds and tab counts, and click tracking
// over random presses, drags, releases and tab removals. The oracle is what
// the bar must always honour: cells abut, share the bar's top and centre as a
// group on a whole point; a point hits the first cell that holds it and never
// the separator row; the pressed tab is the one under the pointer; only a
// release selects, and only the tab under the pointer at that moment.
#include "FuzzSupport.h"
#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQTab.h>

#include <memory>
#include <vector>

using namespace FuzzSupport;

namespace {

bool moderate(double v)
{
    return std::isfinite(v) && std::fabs(v) < 1e9;
}

QRectF anyBounds(FuzzedDataProvider &data, bool anything)
{
    if (anything)
        return QRectF(anyDouble(data), anyDouble(data), anyDouble(data), anyDouble(data));
    return QRectF(data.ConsumeIntegralInRange(-400, 400) * 0.5, data.ConsumeIntegralInRange(-400, 400) * 0.5,
                  data.ConsumeIntegralInRange(0, 1000) * 0.5, data.ConsumeIntegralInRange(0, 200) * 0.5);
}

QPointF anyPoint(FuzzedDataProvider &data, const QRectF &bounds, bool anything)
{
    if (anything)
        return QPointF(anyDouble(data), anyDouble(data));
    // Mostly near the bar, on half points so shared edges and the separator
    // row are hit exactly.
    return QPointF(bounds.x() + data.ConsumeIntegralInRange(-200, 1200) * 0.5,
                   bounds.y() + data.ConsumeIntegralInRange(-10, 70) * 0.5);
}

// The literal hit test: walk the laid-out cells, first one holding the point.
qsizetype literalHit(const QRectF &bounds, qsizetype count, const QPointF &p)
{
    const QList<QRectF> cells = KQTabBar::tabRectsForTabBarRect(KQTabBar::tabBarRectForBounds(bounds), count);
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (kq_pointInRect(p, cells.at(i)))
            return i;
    }
    return -1;
}

void geometry(FuzzedDataProvider &data)
{
    const bool anything = data.ConsumeIntegralInRange(0, 5) == 0;
    const QRectF bounds = anyBounds(data, anything);
    const qsizetype count = data.ConsumeIntegralInRange<qsizetype>(-2, 40);

    const QRectF bar = KQTabBar::tabBarRectForBounds(bounds);
    check(same(bar.x(), bounds.x()) && same(bar.y(), bounds.y()) && same(bar.width(), bounds.width())
              && bar.height() == KQTabBar::kBarHeight,
          "the bar is the top strip of the bounds");

    const QList<QRectF> cells = KQTabBar::tabRectsForTabBarRect(bar, count);
    check(cells.size() == std::max<qsizetype>(count, 0), "one cell per tab");
    for (qsizetype i = 0; i < cells.size(); ++i) {
        const QRectF &c = cells.at(i);
        check(c.width() == KQTabBar::kCellWidth && same(c.height(), bar.height() - 1.0) && same(c.y(), bar.y()),
              "cells are full-height columns below the bar's top");
        if (i > 0)
            check(same(c.x(), cells.at(i - 1).x() + KQTabBar::kCellWidth), "cells abut");
    }
    if (!cells.isEmpty() && moderate(bar.x()) && moderate(bar.width())) {
        const double left = cells.first().x();
        const double middle = bar.x() + bar.width() * 0.5;
        const double groupMiddle = left + double(count) * KQTabBar::kCellWidth * 0.5;
        check(left == std::floor(left), "the group starts on a whole point",
              QString::number(left, 'g', 17));
        check(groupMiddle <= middle && middle - groupMiddle < 1.0, "the group is centred, rounded down",
              QString::number(middle - groupMiddle, 'g', 17));
    }

    for (int k = 0; k < 4 && data.remaining_bytes() > 0; ++k) {
        const QPointF p = anyPoint(data, bounds, anything);
        const qsizetype hit = KQTabBar::tabIndexAtPoint(bounds, count, p);
        check(hit == literalHit(bounds, count, p), "hit testing walks the cells as laid out",
              QStringLiteral("%1 at %2,%3").arg(hit).arg(p.x(), 0, 'g', 17).arg(p.y(), 0, 'g', 17));
        check(hit >= -1 && hit < std::max<qsizetype>(count, 0), "a hit names a tab");
        if (std::isnan(p.x()) || std::isnan(p.y()))
            check(hit == -1, "not-a-number hits nothing");
        if (moderate(bounds.y()) && moderate(p.y()) && p.y() >= bar.y() + KQTabBar::kCellHeight)
            check(hit == -1, "the separator row and below hit nothing");
        // A point on the shared edge of two cells belongs to the right-hand one.
        if (!anything && count >= 2 && k == 0) {
            const qsizetype edge = data.ConsumeIntegralInRange<qsizetype>(1, count - 1);
            const QPointF onEdge(cells.at(edge).x(), bar.y());
            check(KQTabBar::tabIndexAtPoint(bounds, count, onEdge) == edge, "a shared edge goes right");
        }
    }

    if (!cells.isEmpty()) {
        const QRectF &cell = cells.at(data.ConsumeIntegralInRange<qsizetype>(0, cells.size() - 1));
        const QRectF icon = KQTabBar::iconRectForCell(cell);
        check(icon.width() == KQTabBar::kIconSize && icon.height() == KQTabBar::kIconSize, "icons are 16 x 16");
        if (moderate(cell.x()) && moderate(cell.y()) && cell.height() >= KQTabBar::kIconSize) {
            check(icon.x() == std::floor(icon.x()) && icon.y() == std::floor(icon.y()), "icons on whole points");
            check(icon.left() >= cell.left() && icon.right() <= cell.right() && icon.top() >= cell.top()
                      && icon.bottom() <= cell.bottom(),
                  "the icon stays inside its cell");
        }
    }

    const QRectF content = KQTabBar::contentFrameForBounds(bounds);
    check(!(content.height() < 0), "the content never has a negative height");
    if (moderate(bounds.y()))
        check(content.y() == bounds.y() + KQTabBar::kBarHeight, "the content starts below the bar");
}

enum class Action { Press, Drag, Release, RemoveTab };

void tracking(FuzzedDataProvider &data)
{
    const QRectF bounds(0.0, 0.0, data.ConsumeIntegralInRange(0, 600), 200.0);
    std::vector<std::unique_ptr<KQTab>> tabs;
    const int count = data.ConsumeIntegralInRange(0, 12);
    for (int i = 0; i < count; ++i)
        tabs.push_back(std::make_unique<KQTab>());

    KQTabClickTracker tracker;
    QPointer<KQTab> expectedPressed; // follows deletion just as the tracker's does
    int steps = 0;
    while (data.remaining_bytes() > 0 && steps++ < 64) {
        const auto action = static_cast<Action>(data.ConsumeIntegralInRange(0, 3));
        if (action == Action::RemoveTab) {
            if (!tabs.empty())
                tabs.erase(tabs.begin() + data.ConsumeIntegralInRange<size_t>(0, tabs.size() - 1));
            check(tracker.pressedDownTab() == expectedPressed.data(), "a removed tab is no longer pressed");
            continue;
        }
        const QPointF p = anyPoint(data, bounds, data.ConsumeIntegralInRange(0, 7) == 0);
        const qsizetype index = KQTabBar::tabIndexAtPoint(bounds, qsizetype(tabs.size()), p);
        KQTab *under = index < 0 ? nullptr : tabs.at(size_t(index)).get();
        const bool release = action == Action::Release;

        const bool changes = under != expectedPressed.data();
        const KQTabClickTracker::Step step = tracker.track(under, release);
        expectedPressed = under;
        check(step.pressedChanged == changes, "the bar is redrawn exactly when the pressed tab changes");
        check(tracker.pressedDownTab() == under, "the pressed tab is the one under the pointer");
        check(step.finished == release, "only a release ends the tracking");
        check(step.selection == (release ? under : nullptr), "a release selects the tab under the pointer");
        if (step.finished) {
            tracker.reset();
            expectedPressed = nullptr;
            check(tracker.pressedDownTab() == nullptr, "nothing stays pressed after the tracking");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    static const bool quiet = (installQuietHandler(), true);
    (void)quiet;
    FuzzedDataProvider data(bytes, size);
    if (data.ConsumeBool())
        geometry(data);
    else
        tracking(data);
    return 0;
}
