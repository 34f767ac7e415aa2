// The colour rules beside QColor's own on the same inputs in the same run:
// compare BM_Palette100x100 with BM_Palette100x100_QColorHsl and
// BM_HexParseFormat1M with BM_HexParseFormat1M_QColor.
#include <TarnCommon/KQColorExtensions.h>
#include <TarnCommon/KQColourWheel.h>

#include <QtGui/QColor>

#include <benchmark/benchmark.h>

namespace {

constexpr int kSide = 100;
constexpr int kTexts = 1000000;

const QList<QString> &hexTexts()
{
    static const QList<QString> texts = [] {
        QList<QString> list;
        list.reserve(kTexts);
        quint32 v = 12345;
        for (int i = 0; i < kTexts; ++i) {
            v = v * 1664525u + 1013904223u; // a fixed pseudo-random sequence
            list.append(QStringLiteral("#%1").arg(v >> 8, 6, 16, QLatin1Char('0')));
        }
        return list;
    }();
    return texts;
}

void BM_Palette100x100(benchmark::State &state)
{
    for (auto _ : state) {
        for (int row = 1; row <= kSide; ++row) {
            for (int column = 1; column <= kSide; ++column)
                benchmark::DoNotOptimize(Get_RGBColour_for_box(column, row, kSide, kSide, 0.0));
        }
    }
    state.SetItemsProcessed(state.iterations() * kSide * kSide);
}
BENCHMARK(BM_Palette100x100)->Unit(benchmark::kMicrosecond);

// The same grid of hue across and lightness down, from QColor's HSL.
void BM_Palette100x100_QColorHsl(benchmark::State &state)
{
    for (auto _ : state) {
        for (int row = 1; row <= kSide; ++row) {
            for (int column = 1; column <= kSide; ++column) {
                const float hue = float(column - 1) / (kSide - 1) * 0.999f;
                const float lightness = 1.0f - (float(row - 1) / (kSide - 1) * 0.7f + 0.1f);
                benchmark::DoNotOptimize(QColor::fromHslF(hue, 1.0f, lightness).toRgb());
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kSide * kSide);
}
BENCHMARK(BM_Palette100x100_QColorHsl)->Unit(benchmark::kMicrosecond);

void BM_HexParseFormat1M(benchmark::State &state)
{
    const QList<QString> &texts = hexTexts();
    for (auto _ : state) {
        for (const QString &text : texts)
            benchmark::DoNotOptimize(kq_RGBHexString(kq_colorFromRGBHexString(text)));
    }
    state.SetItemsProcessed(state.iterations() * kTexts);
}
BENCHMARK(BM_HexParseFormat1M)->Unit(benchmark::kMillisecond);

void BM_HexParseFormat1M_QColor(benchmark::State &state)
{
    const QList<QString> &texts = hexTexts();
    for (auto _ : state) {
        for (const QString &text : texts)
            benchmark::DoNotOptimize(QColor::fromString(text).name());
    }
    state.SetItemsProcessed(state.iterations() * kTexts);
}
BENCHMARK(BM_HexParseFormat1M_QColor)->Unit(benchmark::kMillisecond);

} // namespace
