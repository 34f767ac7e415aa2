#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int kTabs = 10;
constexpr int kWidth = 480;

// Ten tabs with 16 x 16 (and 32 x 32) icons, the fourth selected and the
// sixth pressed down.
std::unique_ptr<KQTabView> makeBar()
{
    auto view = std::make_unique<KQTabView>(QRect(0, 0, kWidth, 200));
    QList<KQTab *> tabs;
    for (int i = 0; i < kTabs; ++i) {
        auto *tab = new KQTab(view.get());
        QIcon icon;
        for (int size : {16, 32}) {
            QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setBrush(QColor::fromHsv(i * 36, 200, 220));
            painter.drawEllipse(QRectF(1, 1, size - 2, size - 2));
            painter.end();
            icon.addPixmap(QPixmap::fromImage(image));
        }
        tab->setIcon(icon);
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

void paintBar(benchmark::State &state, qreal dpr)
{
    const std::unique_ptr<KQTabView> view = makeBar();
    if (!view->pressedDownTab() || view->selectedTab() != view->tabs()[3]) {
        state.SkipWithError("could not set up the selected and pressed tabs");
        return;
    }
    QImage image(QSize(kWidth, 27) * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    const QRectF bar = KQTabView::tabBarRectForBounds(QRectF(view->rect()));
    for (auto _ : state) {
        QPainter painter(&image);
        view->drawTabBarInRect(painter, bar);
        painter.end();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kTabs);
}

void BM_TabViewPaintBar(benchmark::State &state)
{
    paintBar(state, 1.0);
}
BENCHMARK(BM_TabViewPaintBar);

void BM_TabViewPaintBarHighDpi(benchmark::State &state)
{
    paintBar(state, 2.0);
}
BENCHMARK(BM_TabViewPaintBarHighDpi);

// Points across the bar and just below it: hits, misses beside the cells,
// shared edges and the separator row.
QList<QPointF> probePoints()
{
    QList<QPointF> points;
    for (int x = 0; x < kWidth; x += 7)
        for (double y : {2.0, 13.0, 25.5, 26.5})
            points << QPointF(x, y);
    return points;
}

void BM_TabViewTabAtPoint(benchmark::State &state)
{
    const std::unique_ptr<KQTabView> view = makeBar();
    const QList<QPointF> points = probePoints();
    for (auto _ : state) {
        for (const QPointF &point : points)
            benchmark::DoNotOptimize(view->tabAtPoint(point));
    }
    state.SetItemsProcessed(state.iterations() * points.size());
}
BENCHMARK(BM_TabViewTabAtPoint);

void BM_TabBarIndexAtPoint(benchmark::State &state)
{
    const QList<QPointF> points = probePoints();
    const QRectF bounds(0, 0, kWidth, 200);
    for (auto _ : state) {
        for (const QPointF &point : points)
            benchmark::DoNotOptimize(KQTabBar::tabIndexAtPoint(bounds, kTabs, point));
    }
    state.SetItemsProcessed(state.iterations() * points.size());
}
BENCHMARK(BM_TabBarIndexAtPoint);

} // namespace
