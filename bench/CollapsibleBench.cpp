#include "KQCollapsibleStacking_p.h"

#include <TarnCommon/KQCollapsibleListView.h>

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int ViewCount = 200;

// Every third view resizable, every fifth collapsed, every seventh hidden.
QList<KQCollapsibleStacking::KQStackItem> stackItems()
{
    QList<KQCollapsibleStacking::KQStackItem> items;
    for (int i = 0; i < ViewCount; ++i) {
        const bool resizable = i % 3 == 0;
        const bool collapsed = i % 5 == 0;
        const double height = collapsed ? 18.0 : 40.0 + i % 11;
        const auto limits = KQCollapsibleStacking::viewHeightLimits(height, resizable, collapsed);
        items.append({QRectF(0, 0, 300, height), limits.minHeight, limits.maxHeight, i % 7 == 0, resizable, collapsed});
    }
    return items;
}

void BM_CollapsibleStacking200(benchmark::State &state)
{
    const auto items = stackItems();
    double height = 9000;
    for (auto _ : state) {
        height = height > 9000 ? 8000 : 10000; // alternately spare height and shortfall
        benchmark::DoNotOptimize(KQCollapsibleStacking::stackFrames(items, 300, height));
    }
}
BENCHMARK(BM_CollapsibleStacking200);

void BM_CollapsibleLimits200(benchmark::State &state)
{
    const auto items = stackItems();
    for (auto _ : state)
        benchmark::DoNotOptimize(KQCollapsibleStacking::listHeightLimits(items));
}
BENCHMARK(BM_CollapsibleLimits200);

std::unique_ptr<KQCollapsibleListView> makeList()
{
    auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 300, 9000));
    for (int i = 0; i < ViewCount; ++i) {
        auto *content = new QWidget;
        content->resize(300, 30 + i % 11);
        list->addCollapsableView(new KQCollapsibleView(QStringLiteral("View %1").arg(i), content, true, i % 3 == 0));
    }
    return list;
}

// The widget side: stacking 200 views and applying their frames.
void BM_CollapsibleListRelayout200(benchmark::State &state)
{
    const auto list = makeList();
    int height = 9000;
    for (auto _ : state) {
        height = height > 9000 ? 8000 : 10000;
        list->resize(300, height);
        list->layoutSubviews();
    }
}
BENCHMARK(BM_CollapsibleListRelayout200);

// Collapsing and expanding one view in the middle of 200 without animation:
// the list's hook, the frames of the views below, and the relayout after.
void BM_CollapsibleListToggleMiddle200(benchmark::State &state)
{
    const auto list = makeList();
    KQCollapsibleView *middle = list->collapsableViews().at(ViewCount / 2);
    for (auto _ : state) {
        middle->setCollapsed(!middle->isCollapsed(), false);
        list->layoutSubviews();
        // The finished 0 ms animations delete themselves later; count that too.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}
BENCHMARK(BM_CollapsibleListToggleMiddle200);

} // namespace
