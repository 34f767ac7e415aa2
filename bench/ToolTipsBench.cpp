// The tooltip controller's steady costs: one poll's hit test over a window
// of 10,000 widgets, and what the after-event hook adds to every event.
#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipHitTesting_ZL.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QWidget>

#include <benchmark/benchmark.h>

#include <memory>

using namespace KQToolTipRules;

namespace {

class Cell : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    using QWidget::QWidget;
    QVariant toolTipAtPoint(QPointF, bool *) override { return m_answer; }

private:
    QVariant m_answer = QStringLiteral("cell");
};

// 10,000 cells of 8 x 8 in a 100 x 100 grid, either all children of the
// window (flat) or in 100 row widgets of 100 (nested). The point is over the
// first cell, which a front-most-first walk reaches last.
std::unique_ptr<QWidget> makeWindow(bool nested)
{
    auto window = std::make_unique<QWidget>();
    window->setGeometry(0, 0, 800, 800);
    for (int row = 0; row < 100; ++row) {
        QWidget *parent = window.get();
        QPoint offset(0, row * 8);
        if (nested) {
            parent = new QWidget(window.get());
            parent->setGeometry(0, row * 8, 800, 8);
            offset = QPoint();
        }
        for (int column = 0; column < 100; ++column)
            (new Cell(parent))->setGeometry(QRect(offset + QPoint(column * 8, 0), QSize(8, 8)));
    }
    window->show();
    QCoreApplication::processEvents();
    return window;
}

void BM_ToolTips_HitTest10000Widgets(benchmark::State &state)
{
    const auto window = makeWindow(state.range(0) != 0);
    const QPointF point = QPointF(window->mapToGlobal(QPoint(3, 3)));
    for (auto _ : state) {
        bool wrap = true;
        benchmark::DoNotOptimize(ToolTipAtScreenPoint(&wrap, point));
    }
    state.SetLabel(state.range(0) != 0 ? "nested 100 x 100" : "flat 10,000");
}
BENCHMARK(BM_ToolTips_HitTest10000Widgets)->Arg(0)->Arg(1);

// A point over the last of a main window's tool bar items: the item pass
// walks every item once.
void BM_ToolTips_HitTestToolBarItems(benchmark::State &state)
{
    QMainWindow window;
    window.setCentralWidget(new QWidget);
    auto *toolBar = new QToolBar(QStringLiteral("Items"));
    window.addToolBar(Qt::LeftToolBarArea, toolBar);
    QWidget *last = nullptr;
    for (int i = 0; i < state.range(0); ++i) {
        last = new Cell;
        last->setFixedSize(8, 1);
        toolBar->addWidget(last);
    }
    window.setGeometry(0, 0, 200, 10 * int(state.range(0)) + 100);
    window.show();
    QCoreApplication::processEvents();
    // In window coordinates: a tall tool bar reaches past the screens.
    const QPointF point = QPointF(last->mapTo(&window, QPoint(1, 0)));
    QWidget *found = nullptr;
    for (auto _ : state)
        benchmark::DoNotOptimize(found = GetViewAtPointInWindow(&window, point));
    state.SetLabel(found == last ? "last item" : "NOT THE LAST ITEM");
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_HitTestToolBarItems)->Arg(100)->Arg(1000)->Complexity();

// A whole poll while the same tooltip stays up: hit test and comparison,
// no layout.
void BM_ToolTips_PollUnchangedTooltip(benchmark::State &state)
{
    const auto window = makeWindow(false);
    const QPointF point = QPointF(window->mapToGlobal(QPoint(3, 3)));
    ToolTipController_ZL controller;
    ToolTipTiming_ZL &timing = ToolTipControllerTiming(&controller);
    double now = 0;
    timing.setClock([&now] { return now; });
    timing.setPointerLocation([point] { return point; });
    controller.startup();
    QMouseEvent move(QEvent::MouseMove, point, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    timing.handleEvent(&move);
    now = 1.0;
    timing.timerFired(); // shows it
    for (auto _ : state)
        timing.timerFired();
    state.SetLabel(timing.state() == ToolTipTiming_ZL::State::Showing ? "showing" : "NOT SHOWING");
}
BENCHMARK(BM_ToolTips_PollUnchangedTooltip);

// What KQApplication::notify adds to one event on top of dispatching it:
// arg 0 = an event the window system delivered to a window (posted to a
// started controller), 1 = the same event handed on to a widget (not posted).
void BM_ToolTips_AfterEventHook(benchmark::State &state)
{
    QWidget widget;
    widget.show();
    QCoreApplication::processEvents();
    ToolTipController_ZL controller;
    controller.startup();
    QObject *receiver = state.range(0) == 0 ? static_cast<QObject *>(widget.windowHandle()) : &widget;
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    for (auto _ : state)
        benchmark::DoNotOptimize(KQNotifyPostingAfterEvent(receiver, &move, [] { return true; }));
    state.SetLabel(state.range(0) == 0 ? "posted to the controller" : "not a window: not posted");
}
BENCHMARK(BM_ToolTips_AfterEventHook)->Arg(0)->Arg(1);

} // namespace

#include "ToolTipsBench.moc"
