// The tooltip controller's steady costs beside Qt's: one poll's hit test over
// a window of 10,000 widgets, what the after-event hook adds to every event,
// and showing a tooltip.
#include "BenchPairs.h"
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
#include <QtWidgets/QToolTip>
#include <QtWidgets/QWidget>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

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

// widgets cells of 8 x 8 in rows of 100, either all children of the window
// (flat) or in row widgets of 100 (nested). The point is over the first
// cell, which a front-most-first walk reaches last.
std::unique_ptr<QWidget> makeWindow(int widgets, bool nested)
{
    auto window = std::make_unique<QWidget>();
    const int rows = widgets / 100;
    window->setGeometry(0, 0, 800, 8 * rows);
    for (int row = 0; row < rows; ++row) {
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

// What a poll asks: the tooltip of the widget under a point on the screen.
void hitTest(benchmark::State &state, bool nested)
{
    const auto window = makeWindow(int(state.range(0)), nested);
    const QPointF point = QPointF(window->mapToGlobal(QPoint(3, 3)));
    QVariant answer;
    for (auto _ : state) {
        bool wrap = true;
        benchmark::DoNotOptimize(answer = ToolTipAtScreenPoint(&wrap, point));
    }
    if (!answer.isValid())
        state.SkipWithError("no tooltip found");
    state.SetComplexityN(state.range(0));
}

// Qt's own: the widget under a point on the screen...
void widgetAt(benchmark::State &state, bool nested)
{
    const auto window = makeWindow(int(state.range(0)), nested);
    const QPoint point = window->mapToGlobal(QPoint(3, 3));
    QWidget *found = nullptr;
    for (auto _ : state)
        benchmark::DoNotOptimize(found = QApplication::widgetAt(point));
    if (!qobject_cast<Cell *>(found))
        state.SkipWithError("not a cell");
    state.SetComplexityN(state.range(0));
}

// ...and under a point in a window.
void childAt(benchmark::State &state, bool nested)
{
    const auto window = makeWindow(int(state.range(0)), nested);
    QWidget *found = nullptr;
    for (auto _ : state)
        benchmark::DoNotOptimize(found = window->childAt(QPoint(3, 3)));
    if (!qobject_cast<Cell *>(found))
        state.SkipWithError("not a cell");
    state.SetComplexityN(state.range(0));
}

[[maybe_unused]] const int hitTestRegistered = [] {
    for (bool nested : {false, true}) {
        const std::string variant = nested ? "/nested:1" : "/nested:0";
        TarnBench::registerSized("BM_ToolTips_HitTest" + variant, "widgets", {1000, 10000},
                                 [nested](benchmark::State &state) { hitTest(state, nested); });
        TarnBench::registerSized("BM_QApplicationWidgetAt" + variant, "widgets", {1000, 10000},
                                 [nested](benchmark::State &state) { widgetAt(state, nested); });
        TarnBench::registerSized("BM_QWidgetChildAt" + variant, "widgets", {1000, 10000},
                                 [nested](benchmark::State &state) { childAt(state, nested); });
    }
    return 0;
}();
TARN_BENCH_PAIR("tooltip hit test", BM_ToolTips_HitTest, BM_QApplicationWidgetAt);
TARN_BENCH_PAIR("tooltip hit test", BM_ToolTips_HitTest, BM_QWidgetChildAt);

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
    if (found != last)
        state.SkipWithError("not the last item");
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_HitTestToolBarItems)->Arg(100)->Arg(1000)->ArgName("items")->Complexity();

// A whole poll while the same tooltip stays up: hit test and comparison,
// no layout.
void BM_ToolTips_PollUnchangedTooltip(benchmark::State &state)
{
    const auto window = makeWindow(int(state.range(0)), false);
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
    if (timing.state() != ToolTipTiming_ZL::State::Showing)
        state.SkipWithError("the tooltip is not showing");
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_PollUnchangedTooltip)->Arg(1000)->Arg(10000)->ArgName("widgets")->Complexity();

// A window of widgets children, shown; the size shows that the per-event
// cost does not depend on the widget tree.
std::unique_ptr<QWidget> makeShownWindow(int widgets)
{
    auto window = std::make_unique<QWidget>();
    window->resize(400, 400);
    for (int i = 0; i < widgets; ++i)
        (new QWidget(window.get()))->setGeometry(i % 50 * 8, i / 50 % 50 * 8, 8, 8);
    window->show();
    QCoreApplication::processEvents();
    return window;
}

// What KQApplication::notify adds to one input event on top of dispatching
// it: the event the window system delivered to a window, posted to a
// started controller.
void BM_ToolTips_AfterEventHook(benchmark::State &state)
{
    const auto window = makeShownWindow(int(state.range(0)));
    ToolTipController_ZL controller;
    controller.startup();
    QObject *receiver = window->windowHandle();
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    for (auto _ : state)
        benchmark::DoNotOptimize(KQNotifyPostingAfterEvent(receiver, &move, [] { return true; }));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_AfterEventHook)->Arg(100)->Arg(1000)->ArgName("widgets")->Complexity();

// The same event handed on to a widget: checked, not posted.
void BM_ToolTips_AfterEventHookNotPosted(benchmark::State &state)
{
    const auto window = makeShownWindow(int(state.range(0)));
    ToolTipController_ZL controller;
    controller.startup();
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    for (auto _ : state)
        benchmark::DoNotOptimize(KQNotifyPostingAfterEvent(window.get(), &move, [] { return true; }));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_AfterEventHookNotPosted)->Arg(100)->Arg(1000)->ArgName("widgets")->Complexity();

// Qt's peer: an application-wide event filter that does nothing. Its cost is
// the difference between sending an event to a bare object with the filter
// installed and without it.
class NothingFilter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *) override { return false; }
};

void sendToBareObject(benchmark::State &state, bool filtered)
{
    const auto window = makeShownWindow(int(state.range(0)));
    NothingFilter filter;
    if (filtered)
        qApp->installEventFilter(&filter);
    QObject sink;
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    for (auto _ : state)
        benchmark::DoNotOptimize(QCoreApplication::sendEvent(&sink, &move));
    qApp->removeEventFilter(&filter);
    state.SetComplexityN(state.range(0));
}

void BM_QAppEventFilterSend(benchmark::State &state)
{
    sendToBareObject(state, true);
}
BENCHMARK(BM_QAppEventFilterSend)->Arg(100)->Arg(1000)->ArgName("widgets")->Complexity();

void BM_QAppUnfilteredSend(benchmark::State &state)
{
    sendToBareObject(state, false);
}
BENCHMARK(BM_QAppUnfilteredSend)->Arg(100)->Arg(1000)->ArgName("widgets")->Complexity();
TARN_BENCH_PAIR("after-event hook", BM_ToolTips_AfterEventHook, BM_QAppEventFilterSend, BM_QAppUnfilteredSend);

// Two texts of chars characters each, so every step shows a new tooltip.
QStringList toolTipTexts(int chars)
{
    QStringList texts;
    for (const QString &word : {QStringLiteral("tooltip "), QStringLiteral("another ")})
        texts << word.repeated(chars / 8 + 1).left(chars);
    return texts;
}

// A poll that finds a new tooltip: the rules hide the old one, lay out the
// new text, place the window at the pointer and show it.
void BM_ToolTips_ShowToolTip(benchmark::State &state)
{
    const QStringList texts = toolTipTexts(int(state.range(0)));
    const QPointF point(200, 200);
    ToolTipController_ZL controller;
    ToolTipTiming_ZL &timing = ToolTipControllerTiming(&controller);
    double now = 0;
    int i = 0;
    timing.setClock([&now] { return now; });
    timing.setPointerLocation([point] { return point; });
    timing.setHitTest([&](bool *, QPointF) { return QVariant(texts[i & 1]); });
    controller.startup();
    QMouseEvent move(QEvent::MouseMove, point, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    timing.handleEvent(&move);
    now = 1.0;
    for (auto _ : state) {
        ++i;
        timing.timerFired();
        TarnBench::settle();
    }
    if (timing.state() != ToolTipTiming_ZL::State::Showing)
        state.SkipWithError("the tooltip is not showing");
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ToolTips_ShowToolTip)->Arg(20)->Arg(200)->ArgName("chars")->Complexity();

void BM_QToolTipShowText(benchmark::State &state)
{
    const QStringList texts = toolTipTexts(int(state.range(0)));
    const QPoint point(200, 200);
    int i = 0;
    for (auto _ : state) {
        QToolTip::showText(point, texts[++i & 1]);
        TarnBench::settle();
    }
    if (!QToolTip::isVisible())
        state.SkipWithError("the tooltip is not showing");
    QToolTip::hideText();
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_QToolTipShowText)->Arg(20)->Arg(200)->ArgName("chars")->Complexity();
TARN_BENCH_PAIR("show a tooltip", BM_ToolTips_ShowToolTip, BM_QToolTipShowText);

} // namespace

#include "ToolTipsBench.moc"
