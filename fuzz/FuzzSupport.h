#pragma once

// What the fuzz targets share: a quiet message handler that still counts the
// library's reports, a failure that prints the input, and texts built from
// the units that matter to the string rules.
#include <fuzzer/FuzzedDataProvider.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace FuzzSupport {

inline int &reportCount()
{
    static int count = 0;
    return count;
}

inline QByteArray &lastReport()
{
    static QByteArray text;
    return text;
}

// The library reports contract failures on every bad input; printing them
// all would drown the fuzzer's own output.
inline void quietHandler(QtMsgType, const QMessageLogContext &, const QString &message)
{
    ++reportCount();
    lastReport() = message.toUtf8();
}

inline void installQuietHandler()
{
    qInstallMessageHandler(quietHandler);
}

[[noreturn]] inline void fail(const char *what, const QString &detail = QString())
{
    std::fprintf(stderr, "fuzz check failed: %s %s\n", what, detail.toUtf8().constData());
    std::abort();
}

inline void check(bool condition, const char *what, const QString &detail = QString())
{
    if (!condition)
        fail(what, detail);
}

// Units that steer the rules: white space, template marks, surrogate halves
// of one pair and of another, a non-ASCII letter, NUL; any other unit now
// and then.
inline QString text(FuzzedDataProvider &data, size_t maxUnits)
{
    static const char16_t alphabet[] = {u'a', u'b', u'-', u' ', u'\n', u'\t', u'$', u'{', u'}', u'1',
                                        0xD83D, 0xDE00, 0xD83C, 0xDF00, 0x00E9, 0x2028, 0x0000, u'\''};
    constexpr size_t alphabetSize = sizeof(alphabet) / sizeof(alphabet[0]);
    const size_t length = data.ConsumeIntegralInRange<size_t>(0, maxUnits);
    QString s = QStringLiteral("");
    for (size_t i = 0; i < length && data.remaining_bytes() > 0; ++i) {
        const uint8_t pick = data.ConsumeIntegral<uint8_t>();
        if (pick < 240)
            s += QChar(alphabet[pick % alphabetSize]);
        else
            s += QChar(data.ConsumeIntegral<char16_t>());
    }
    return s;
}

} // namespace FuzzSupport

namespace FuzzSupport {

// Any double: mostly small whole and half numbers (where edges meet), now
// and then the extremes, infinities, not-a-number or any bit pattern.
inline double anyDouble(FuzzedDataProvider &data)
{
    static const double specials[] = {0.0, -0.0, 1.0, -1.0, 0.5, 1e300, -1e300, 5e-324,
                                      std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};
    const uint8_t pick = data.ConsumeIntegral<uint8_t>();
    if (pick < 160)
        return double(data.ConsumeIntegralInRange<int>(-400, 400)) * 0.5;
    if (pick < 224)
        return specials[pick % (sizeof(specials) / sizeof(specials[0]))];
    return data.ConsumeFloatingPoint<double>();
}

// Bits and all: not-a-number equals not-a-number, 0 differs from -0.
inline bool same(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

} // namespace FuzzSupport

// The start-up of a target that needs nothing but the quiet handler.
#define TARN_FUZZ_QUIET_INITIALIZE()                                                                      \
    extern "C" int LLVMFuzzerInitialize(int *, char ***)                                                  \
    {                                                                                                     \
        FuzzSupport::installQuietHandler();                                                               \
        return 0;                                                                                         \
    }
