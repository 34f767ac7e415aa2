#include <TarnCommon/KQGeometry.h>
#include <TarnCommon/KQLog.h>

#include <benchmark/benchmark.h>

#include <cstdarg>

namespace {

QString makeText(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    QString text = _ZLMakeLogStr("src/TarnCommon/Geometry/KQGeometry.cpp", 148, "f", format, arguments);
    va_end(arguments);
    return text;
}

void BM_LogTextFromFormat(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(makeText("%i is not a valid NSRectEdge value", 4));
}
BENCHMARK(BM_LogTextFromFormat);

void BM_LogTextFromObject(benchmark::State &state)
{
    const QStringList list{QStringLiteral("alpha"), QStringLiteral("beta")};
    for (auto _ : state)
        benchmark::DoNotOptimize(_ZLMakeLogStr("a/b/File.cpp", 12, "f", list));
}
BENCHMARK(BM_LogTextFromObject);

void BM_RectBetweenPoints(benchmark::State &state)
{
    QPointF a(3, 4), b(-7, 12);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(q_RECT_rect_between_points(a, b));
    }
}
BENCHMARK(BM_RectBetweenPoints);

void BM_SetCornerAndNormalize(benchmark::State &state)
{
    QRectF rect(10, 10, 20, 20);
    for (auto _ : state) {
        benchmark::DoNotOptimize(rect);
        benchmark::DoNotOptimize(q_RECT_normalize(q_RECT_set_corner_to_point(rect, 1, QPointF(5, 50))));
    }
}
BENCHMARK(BM_SetCornerAndNormalize);

void BM_PointConstrainToLine(benchmark::State &state)
{
    QPointF p(10, 0), s(0, 0), e(10, 10);
    for (auto _ : state) {
        benchmark::DoNotOptimize(p);
        benchmark::DoNotOptimize(KQPointConstrainToLine(true, p, s, e));
    }
}
BENCHMARK(BM_PointConstrainToLine);

void BM_Secs(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Secs());
}
BENCHMARK(BM_Secs);

void BM_UniqueID(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Unique_ID_ns());
}
BENCHMARK(BM_UniqueID);

} // namespace
