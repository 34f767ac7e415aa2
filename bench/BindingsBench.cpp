// Two-way bindings and text measuring beside what Qt code does by hand:
// a model value round trip through kq_bind beside the same pair of
// QObject::connect calls, and a 1,000-word paragraph measured with
// kq_boundsWithMaxWidth beside QTextDocument (and a bare QFontMetrics).
#include "BenchPairs.h"

#include <TarnCommon/KQBindings.h>
#include <TarnCommon/KQTextLayout.h>

#include <QtGui/QFontMetricsF>
#include <QtGui/QTextDocument>
#include <QtWidgets/QApplication>
#include <QtWidgets/QSpinBox>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

class Model : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)
public:
    int value() const { return m_value; }
    void setValue(int value)
    {
        if (value == m_value)
            return;
        m_value = value;
        emit valueChanged(value);
    }
signals:
    void valueChanged(int value);

private:
    int m_value = 0;
};

struct Bound
{
    std::vector<std::unique_ptr<Model>> models;
    std::vector<std::unique_ptr<QSpinBox>> views;

    explicit Bound(int count)
    {
        for (int i = 0; i < count; ++i) {
            models.push_back(std::make_unique<Model>());
            views.push_back(std::make_unique<QSpinBox>());
            views.back()->setRange(0, 1 << 30);
        }
    }

    // One step of the user's and the program's edits: the model changes and
    // the view follows; the view is edited and the model follows.
    bool roundTrip(int step)
    {
        bool consistent = true;
        for (std::size_t i = 0; i < models.size(); ++i) {
            models[i]->setValue(2 * step + 1);
            consistent &= views[i]->value() == 2 * step + 1;
            views[i]->setValue(2 * step + 2);
            consistent &= models[i]->value() == 2 * step + 2;
        }
        return consistent;
    }
};

void BM_BindingsRoundTrip(benchmark::State &state)
{
    Bound bound(int(state.range(0)));
    for (std::size_t i = 0; i < bound.models.size(); ++i)
        kq_bind(bound.views[i].get(), QStringLiteral("value"), bound.models[i].get(), QStringLiteral("value"));
    int step = 0;
    for (auto _ : state) {
        if (!bound.roundTrip(step++))
            state.SkipWithError("a bound view or model did not follow");
    }
    state.SetComplexityN(state.range(0));
}

void BM_ConnectRoundTrip(benchmark::State &state)
{
    Bound bound(int(state.range(0)));
    for (std::size_t i = 0; i < bound.models.size(); ++i) {
        Model *model = bound.models[i].get();
        QSpinBox *view = bound.views[i].get();
        QObject::connect(model, &Model::valueChanged, view, &QSpinBox::setValue);
        QObject::connect(view, &QSpinBox::valueChanged, model, &Model::setValue);
    }
    int step = 0;
    for (auto _ : state) {
        if (!bound.roundTrip(step++))
            state.SkipWithError("a connected view or model did not follow");
    }
    state.SetComplexityN(state.range(0));
}

QString paragraph(int words)
{
    static const char *const vocabulary[] = {"relayout", "translated", "form", "the", "window", "of",
                                             "a",        "collapsible", "view", "measures", "text", "and"};
    QString text;
    for (int i = 0; i < words; ++i) {
        if (i)
            text += QLatin1Char(' ');
        text += QLatin1String(vocabulary[(i * 7) % 12]);
    }
    return text;
}

constexpr qreal kMeasureWidth = 400;

void BM_MeasureParagraph(benchmark::State &state)
{
    const QTextDocumentFragment text = QTextDocumentFragment::fromPlainText(paragraph(int(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_boundsWithMaxWidth(text, kMeasureWidth));
}

void BM_QTextDocumentParagraph(benchmark::State &state)
{
    const QString text = paragraph(int(state.range(0)));
    for (auto _ : state) {
        // The caller's usual way: a document at the width, asked for its size.
        QTextDocument document;
        document.setDocumentMargin(0);
        document.setPlainText(text);
        document.setTextWidth(kMeasureWidth);
        benchmark::DoNotOptimize(document.size());
    }
}

void BM_QFontMetricsParagraph(benchmark::State &state)
{
    const QString text = paragraph(int(state.range(0)));
    const QFontMetricsF metrics(QApplication::font());
    for (auto _ : state)
        benchmark::DoNotOptimize(metrics.boundingRect(QRectF(0, 0, kMeasureWidth, 99999), Qt::TextWordWrap, text));
}

const bool registered = [] {
    TarnBench::registerSized("BM_BindingsRoundTrip", "bindings", {10, 100}, BM_BindingsRoundTrip);
    TarnBench::registerSized("BM_ConnectRoundTrip", "bindings", {10, 100}, BM_ConnectRoundTrip);
    benchmark::RegisterBenchmark("BM_MeasureParagraph", BM_MeasureParagraph)->Arg(1000)->ArgName("words");
    benchmark::RegisterBenchmark("BM_QTextDocumentParagraph", BM_QTextDocumentParagraph)->Arg(1000)->ArgName("words");
    benchmark::RegisterBenchmark("BM_QFontMetricsParagraph", BM_QFontMetricsParagraph)->Arg(1000)->ArgName("words");
    return true;
}();

} // namespace

TARN_BENCH_PAIR("two-way binding round trip", BM_BindingsRoundTrip, BM_ConnectRoundTrip);
TARN_BENCH_PAIR("measure a 1,000-word paragraph", BM_MeasureParagraph, BM_QTextDocumentParagraph);
TARN_BENCH_PAIR("measure a 1,000-word paragraph", BM_MeasureParagraph, BM_QFontMetricsParagraph);

#include "BindingsBench.moc"
