// Text, template, form-encoding and base-64 operations on 1 KB and 1 MB of
// text. bench/text_vs_python.py runs these beside Python's equivalents on the
// same inputs and prints the ratios.
#include <TarnCommon/KQCharacterSet.h>
#include <TarnCommon/KQFilesAndEncodings.h>
#include <TarnCommon/KQStringExtensions.h>
#include <TarnCommon/KQURLRequest.h>

#include <benchmark/benchmark.h>

namespace {

// The same inputs as text_vs_python.py builds: a sentence repeated to size.
QString repeated(const QString &unit, qsizetype size)
{
    QString text;
    text.reserve(size + unit.size());
    while (text.size() < size)
        text += unit;
    text.truncate(size);
    return text;
}

const QString Sentence = QStringLiteral("It's a 'quoted' text: 42 digits, 7 spaces & caf\u00E9 \u2014 ok. ");
const QString TemplateUnit = QStringLiteral("Hello ${name}, your total is ${total}! ");

void BM_TextTemplate(benchmark::State &state)
{
    const QString format = repeated(TemplateUnit, state.range(0));
    const QVariantMap args{{QStringLiteral("name"), QStringLiteral("Ada")}, {QStringLiteral("total"), QStringLiteral("12.50")}};
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_stringWithFormat(format, args));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextEscape(benchmark::State &state)
{
    const QString text = repeated(Sentence, state.range(0));
    const KQCharacterSet quote = KQCharacterSet::characterSetWithCharactersInString(QStringLiteral("'"));
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_stringByEscapingCharactersInSet(text, quote, QStringLiteral("\\")));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextRemove(benchmark::State &state)
{
    const QString text = repeated(Sentence, state.range(0));
    const KQCharacterSet digits = KQCharacterSet::decimalDigitCharacterSet();
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_stringByRemovingCharactersInSet(text, digits));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextReplace(benchmark::State &state)
{
    const QString text = repeated(Sentence, state.range(0));
    const KQCharacterSet space = KQCharacterSet::characterSetWithCharactersInString(QStringLiteral(" "));
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_stringByReplacingCharactersInSet(text, space, QStringLiteral("_")));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextFormEncode(benchmark::State &state)
{
    const QString text = repeated(Sentence, state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(KQHTMLFormURLEncode(text));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextBase64Encode(benchmark::State &state)
{
    const QByteArray bytes = repeated(Sentence, state.range(0)).toUtf8().left(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_base64Encode(bytes));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_TextBase64Decode(benchmark::State &state)
{
    const QString text = kq_base64Encode(repeated(Sentence, state.range(0)).toUtf8().left(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(kq_base64Decode(text));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_TextTemplate)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextEscape)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextRemove)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextReplace)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextFormEncode)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextBase64Encode)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TextBase64Decode)->Arg(1 << 10)->Arg(1 << 20);
