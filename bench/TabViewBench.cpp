// The tab bar beside Qt's QTabBar and QTabWidget: painting the bar and
// switching tabs, on the same number of tabs with the same icons.
#include "BenchPairs.h"
#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace {

constexpr int kTabWidth = 48; // the bar grows with the tabs, so a cell keeps its size

// 16 x 16 and 32 x 32 discs in the tab's own colour.
QIcon tabIcon(int i)
{
    QIcon icon;
    for (int size : {16, 32}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor::fromHsv(i * 36 % 360, 200, 220));
        painter.drawEllipse(QRectF(1, 1, size - 2, size - 2));
        painter.end();
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

// count tabs with icons, the fourth selected and the sixth pressed down.
std::unique_ptr<KQTabView> makeBar(int count)
{
    auto view = std::make_unique<KQTabView>(QRect(0, 0, kTabWidth * count, 200));
    QList<KQTab *> tabs;
    for (int i = 0; i < count; ++i) {
        auto *tab = new KQTab(view.get());
        tab->setIcon(tabIcon(i));
        tab->setTag(i);
        tabs << tab;
    }
    view->setTabs(tabs);
    view->selectTab(tabs[3]);
    const QRectF cell = view->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(view->rect())))[5];
    QMouseEvent press(QEvent::MouseButtonPress, cell.center(), cell.center(), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(view.get(), &press);
    return view;
}

// One paint of the bar's strip into an image of the given density, through
// QWidget::render as a paint event would reach either widget.
void renderBar(benchmark::State &state, QWidget *widget, QSize bar, qreal dpr)
{
    QImage image(bar * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    const QRegion region(QRect(QPoint(0, 0), bar));
    for (auto _ : state) {
        QPainter painter(&image);
        widget->render(&painter, QPoint(), region, QWidget::DrawChildren);
        painter.end();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void paintTabView(benchmark::State &state, qreal dpr)
{
    const std::unique_ptr<KQTabView> view = makeBar(int(state.range(0)));
    if (!view->pressedDownTab() || view->selectedTab() != view->tabs()[3]) {
        state.SkipWithError("could not set up the selected and pressed tabs");
        return;
    }
    renderBar(state, view.get(), KQTabView::tabBarRectForBounds(QRectF(view->rect())).toAlignedRect().size(), dpr);
}

void paintQTabBar(benchmark::State &state, qreal dpr)
{
    const int count = int(state.range(0));
    QTabBar bar;
    bar.setExpanding(true);
    bar.setUsesScrollButtons(false);
    bar.setIconSize(QSize(16, 16));
    for (int i = 0; i < count; ++i)
        bar.addTab(tabIcon(i), QString());
    bar.setCurrentIndex(3);
    bar.resize(kTabWidth * count, bar.sizeHint().height());
    // QTabBar draws a pressed tab no differently; the press is left out.
    renderBar(state, &bar, bar.size(), dpr);
}

[[maybe_unused]] const int paintRegistered = [] {
    for (int dpr : {1, 2}) {
        const std::string variant = "/dpr:" + std::to_string(dpr);
        TarnBench::registerSized("BM_TabViewPaintBar" + variant, "tabs", {10, 100},
                                 [dpr](benchmark::State &state) { paintTabView(state, dpr); });
        TarnBench::registerSized("BM_QTabBarPaint" + variant, "tabs", {10, 100},
                                 [dpr](benchmark::State &state) { paintQTabBar(state, dpr); });
    }
    return 0;
}();
TARN_BENCH_PAIR("tab bar paint", BM_TabViewPaintBar, BM_QTabBarPaint);

// A shown window with count tabs, each with an empty page (its tab owns
// it); one step selects the other of two tabs.
void BM_TabViewSwitch(benchmark::State &state)
{
    const int count = int(state.range(0));
    KQTabView view(QRect(0, 0, 640, 480));
    QList<KQTab *> tabs;
    for (int i = 0; i < count; ++i) {
        auto *tab = new KQTab(&view);
        tab->setIcon(tabIcon(i));
        auto *page = new QWidget;
        page->resize(640, 453);
        tab->setView(page);
        tabs << tab;
    }
    view.setTabs(tabs);
    view.show();
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        view.selectTab(tabs[(++i & 1) ? 4 : 3]);
        TarnBench::settle();
    }
    state.SetComplexityN(count);
}
BENCHMARK(BM_TabViewSwitch)->Arg(10)->Arg(100)->ArgName("tabs")->Complexity();

void BM_QTabWidgetSwitch(benchmark::State &state)
{
    const int count = int(state.range(0));
    QTabWidget tabWidget;
    tabWidget.resize(640, 480);
    for (int i = 0; i < count; ++i)
        tabWidget.addTab(new QWidget, tabIcon(i), QString());
    tabWidget.show();
    QCoreApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        tabWidget.setCurrentIndex((++i & 1) ? 4 : 3);
        TarnBench::settle();
    }
    state.SetComplexityN(count);
}
BENCHMARK(BM_QTabWidgetSwitch)->Arg(10)->Arg(100)->ArgName("tabs")->Complexity();
TARN_BENCH_PAIR("tab switch", BM_TabViewSwitch, BM_QTabWidgetSwitch);

// Points across the bar and just below it: hits, misses beside the cells,
// shared edges and the separator row.
QList<QPointF> probePoints(int width)
{
    QList<QPointF> points;
    for (int x = 0; x < width; x += 7)
        for (double y : {2.0, 13.0, 25.5, 26.5})
            points << QPointF(x, y);
    return points;
}

void BM_TabViewTabAtPoint(benchmark::State &state)
{
    const std::unique_ptr<KQTabView> view = makeBar(10);
    const QList<QPointF> points = probePoints(view->width());
    for (auto _ : state) {
        for (const QPointF &point : points)
            benchmark::DoNotOptimize(view->tabAtPoint(point));
    }
    state.SetItemsProcessed(state.iterations() * points.size());
}
BENCHMARK(BM_TabViewTabAtPoint);

void BM_TabBarIndexAtPoint(benchmark::State &state)
{
    const int count = 10;
    const QList<QPointF> points = probePoints(kTabWidth * count);
    const QRectF bounds(0, 0, kTabWidth * count, 200);
    for (auto _ : state) {
        for (const QPointF &point : points)
            benchmark::DoNotOptimize(KQTabBar::tabIndexAtPoint(bounds, count, point));
    }
    state.SetItemsProcessed(state.iterations() * points.size());
}
BENCHMARK(BM_TabBarIndexAtPoint);

} // namespace
