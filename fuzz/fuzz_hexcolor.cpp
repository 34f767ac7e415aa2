// Arbitrary bytes through the #RRGGBB scanner and kq_colorFromRGBHexString,
// with the C library's sscanf on the same text as the oracle.
#include <TarnCommon/KQColorExtensions.h>

#include "KQColorComponents_p.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

[[noreturn]] void fail(const char *what, const std::string &input)
{
    std::fprintf(stderr, "mismatch (%s) on:", what);
    for (unsigned char c : input)
        std::fprintf(stderr, " %02X", c);
    std::fprintf(stderr, "\n");
    std::abort();
}

quint16 expectedChannel(unsigned int value)
{
    return quint16(std::lround(std::min(value / 255.0, 1.0) * 65535.0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char *>(data), size);

    // The scanner on the raw bytes, as sscanf reads the same C string.
    unsigned int expected[3] = {0, 0, 0}, actual[3] = {0, 0, 0};
    const int expectedCount = std::sscanf(bytes.c_str(), "#%02X%02X%02X", &expected[0], &expected[1], &expected[2]);
    const int actualCount = KQColor::scanHexTriplet(bytes.data(), bytes.size(), actual);
    if (expectedCount != actualCount)
        fail("field count", bytes);
    for (int i = 0; i < std::max(actualCount, 0); ++i) {
        if (expected[i] != actual[i])
            fail("field value", bytes);
    }

    // The whole conversion: length 7, upper-cased, read as UTF-8 by sscanf.
    const QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    const QColor color = kq_colorFromRGBHexString(text);
    bool valid = false;
    unsigned int fields[3] = {0, 0, 0};
    if (text.size() == 7) {
        const QByteArray upper = text.toUpper().toUtf8();
        valid = std::sscanf(upper.constData(), "#%02X%02X%02X", &fields[0], &fields[1], &fields[2]) == 3;
    }
    if (color.isValid() != valid)
        fail("validity", bytes);
    if (valid) {
        const QRgba64 rgb = color.rgba64();
        if (rgb.red() != expectedChannel(fields[0]) || rgb.green() != expectedChannel(fields[1])
            || rgb.blue() != expectedChannel(fields[2]) || rgb.alpha() != 65535)
            fail("colour", bytes);
        // Formatting and reading again gives the same colour.
        if (kq_colorFromRGBHexString(kq_RGBHexString(color)) != color)
            fail("round trip", bytes);
    }
    return 0;
}
