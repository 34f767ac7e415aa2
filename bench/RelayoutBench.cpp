// Relayout of a translated absolute form beside what Qt spends on the same
// widgets arranged by a QGridLayout (activate and set every geometry).
#include "BenchPairs.h"

#include <TarnCommon/Relayout_ZL.h>

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr int kColumns = 3; // label, field, button: one row of a settings form
constexpr int kRowHeight = 30;

// Texts much longer than the designed widths, as after a translation.
QWidget *addRowWidgets(QWidget *parent, int row, int column)
{
    switch (column) {
    case 0:
        return new QLabel(QStringLiteral("Übersetzte Beschriftung Nummer %1:").arg(row), parent);
    case 1:
        return new QLineEdit(parent);
    default:
        return new QPushButton(QStringLiteral("Durchsuchen …"), parent);
    }
}

struct AbsoluteForm
{
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::vector<std::pair<QWidget *, QRect>> designed;

    explicit AbsoluteForm(int controls)
    {
        const int xs[kColumns] = {10, 90, 250};
        const int widths[kColumns] = {70, 150, 60};
        for (int i = 0; i < controls; ++i) {
            const int row = i / kColumns, column = i % kColumns;
            QWidget *widget = addRowWidgets(window.get(), row, column);
            const QRect frame(xs[column], 10 + row * kRowHeight, widths[column], 24);
            widget->setGeometry(frame);
            designed.emplace_back(widget, frame);
        }
        restoreDesign();
    }

    int height() const { return int((designed.size() + kColumns - 1) / kColumns) * kRowHeight + 20; }

    void restoreDesign()
    {
        for (const auto &[widget, frame] : designed)
            widget->setGeometry(frame);
        window->resize(320, height());
    }
};

void BM_RelayoutForm(benchmark::State &state)
{
    AbsoluteForm form(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        form.restoreDesign();
        state.ResumeTiming();
        f_relayout(form.window.get());
    }
    state.SetComplexityN(state.range(0));
}

void BM_GridLayoutForm(benchmark::State &state)
{
    AbsoluteForm form(int(state.range(0)));
    auto *grid = new QGridLayout(form.window.get()); // owned by the window
    for (std::size_t i = 0; i < form.designed.size(); ++i)
        grid->addWidget(form.designed[i].first, int(i) / kColumns, int(i) % kColumns);
    for (auto _ : state) {
        grid->invalidate();
        grid->activate();
    }
    state.SetComplexityN(state.range(0));
}

const bool registered = [] {
    TarnBench::registerSized("BM_RelayoutForm", "controls", {100, 1000}, BM_RelayoutForm);
    TarnBench::registerSized("BM_GridLayoutForm", "controls", {100, 1000}, BM_GridLayoutForm);
    return true;
}();

} // namespace

TARN_BENCH_PAIR("relayout of a translated form", BM_RelayoutForm, BM_GridLayoutForm);
