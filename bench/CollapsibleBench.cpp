#include "BenchPairs.h"
#include "KQCollapsibleStacking_p.h"

#include <TarnCommon/KQCollapsibleListView.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolBox>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

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

std::unique_ptr<KQCollapsibleListView> makeList(int count)
{
    auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 300, 45 * count));
    for (int i = 0; i < count; ++i) {
        auto *content = new QWidget;
        content->resize(300, 30 + i % 11);
        list->addCollapsableView(new KQCollapsibleView(QStringLiteral("View %1").arg(i), content, true, i % 3 == 0));
    }
    return list;
}

// The widget side: stacking 200 views and applying their frames.
void BM_CollapsibleListRelayout200(benchmark::State &state)
{
    const auto list = makeList(ViewCount);
    int height = 9000;
    for (auto _ : state) {
        height = height > 9000 ? 8000 : 10000;
        list->resize(300, height);
        list->layoutSubviews();
    }
}
BENCHMARK(BM_CollapsibleListRelayout200);

// Collapsing or expanding the view in the middle of a shown list without
// animation: the list's hook, the frames of the views below, the relayout
// after, and the finished 0 ms animation deleting itself.
void BM_CollapsibleListToggleMiddle(benchmark::State &state)
{
    const int count = int(state.range(0));
    const auto list = makeList(count);
    list->show();
    QCoreApplication::processEvents();
    KQCollapsibleView *middle = list->collapsableViews().at(count / 2);
    for (auto _ : state) {
        middle->setCollapsed(!middle->isCollapsed(), false);
        list->layoutSubviews();
        TarnBench::settle();
    }
    state.SetComplexityN(count);
}
BENCHMARK(BM_CollapsibleListToggleMiddle)->Arg(20)->Arg(200)->ArgName("views")->Complexity();

// count pages of a QToolBox; one step opens the page after the middle one or
// the middle one again, so one page closes and one opens.
void BM_QToolBoxSwitchMiddle(benchmark::State &state)
{
    const int count = int(state.range(0));
    QToolBox toolBox;
    toolBox.resize(300, 45 * count);
    for (int i = 0; i < count; ++i) {
        auto *content = new QWidget;
        content->resize(300, 30 + i % 11);
        toolBox.addItem(content, QStringLiteral("View %1").arg(i));
    }
    toolBox.setCurrentIndex(count / 2);
    toolBox.show();
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        toolBox.setCurrentIndex(count / 2 + (++i & 1));
        TarnBench::settle();
    }
    state.SetComplexityN(count);
}
BENCHMARK(BM_QToolBoxSwitchMiddle)->Arg(20)->Arg(200)->ArgName("views")->Complexity();
TARN_BENCH_PAIR("collapse/expand the middle view", BM_CollapsibleListToggleMiddle, BM_QToolBoxSwitchMiddle);

// count widgets under a header (a tool button and a label, as the
// collapsible views have) in a QVBoxLayout; one step hides or shows the
// middle one's content, and the layout places the rest.
void BM_QVBoxLayoutHideMiddle(benchmark::State &state)
{
    const int count = int(state.range(0));
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    QList<QWidget *> contents;
    for (int i = 0; i < count; ++i) {
        auto *header = new QWidget;
        auto *headerLayout = new QHBoxLayout(header);
        headerLayout->setContentsMargins(0, 0, 0, 0);
        headerLayout->addWidget(new QToolButton);
        headerLayout->addWidget(new QLabel(QStringLiteral("View %1").arg(i)), 1);
        layout->addWidget(header);
        auto *content = new QWidget;
        content->setFixedHeight(30 + i % 11);
        layout->addWidget(content);
        contents << content;
    }
    window.resize(300, 45 * count);
    window.show();
    QCoreApplication::processEvents();
    QWidget *middle = contents.at(count / 2);
    for (auto _ : state) {
        middle->setVisible(middle->isHidden());
        TarnBench::settle();
    }
    state.SetComplexityN(count);
}
BENCHMARK(BM_QVBoxLayoutHideMiddle)->Arg(20)->Arg(200)->ArgName("views")->Complexity();
TARN_BENCH_PAIR("collapse/expand the middle view", BM_CollapsibleListToggleMiddle, BM_QVBoxLayoutHideMiddle);

} // namespace
