#include <TarnCommon/KQColorExtensions.h>

#include "KQColorComponents_p.h"

#include <QtCore/QDebug>
#include <QtGui/QRgba64>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace KQColor {

quint16 truncatedComponent(double value)
{
    const double whole = std::trunc(value);
    // 2^63: beyond it (and for NaN or infinity) a conversion to a 64-bit
    // integer is undefined.
    if (!(std::fabs(whole) < 9223372036854775808.0))
        return 0;
    return static_cast<quint16>(static_cast<std::uint64_t>(static_cast<std::int64_t>(whole)));
}

bool rgbComponents(const QColor &color, double components[4])
{
    if (!color.isValid()) {
        components[0] = components[1] = components[2] = components[3] = 0.0;
        return false;
    }
    if (color.spec() == QColor::ExtendedRgb) {
        components[0] = color.redF();
        components[1] = color.greenF();
        components[2] = color.blueF();
        components[3] = color.alphaF();
        return true;
    }
    // The 16-bit channels divided in double precision, so that a channel
    // times 65535.0 gives the channel back exactly.
    const QRgba64 rgb = color.toRgb().rgba64();
    components[0] = rgb.red() / 65535.0;
    components[1] = rgb.green() / 65535.0;
    components[2] = rgb.blue() / 65535.0;
    components[3] = rgb.alpha() / 65535.0;
    return true;
}

namespace {

// isspace() and isxdigit() of the "C" locale, without the locale lookup.
bool isCSpace(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

int hexDigitValue(unsigned char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

int scanHexTriplet(const char *bytes, std::size_t length, unsigned int values[3])
{
    std::size_t i = 0;
    // The byte at i, 0 at the end (as the C string would end there).
    const auto at = [&](std::size_t k) -> unsigned char {
        return k < length ? static_cast<unsigned char>(bytes[k]) : 0;
    };
    if (at(i) == 0)
        return -1;
    if (at(i) != '#')
        return 0;
    ++i;
    int converted = 0;
    for (int field = 0; field < 3; ++field) {
        while (at(i) != 0 && isCSpace(at(i)))
            ++i;
        if (at(i) == 0)
            return converted > 0 ? converted : -1;
        // "%02X": at most two characters, sign and "0x" prefix included.
        int width = 2;
        bool negative = false;
        bool digits = false;
        unsigned int value = 0;
        if (at(i) == '-' || at(i) == '+') {
            negative = at(i) == '-';
            --width;
            ++i;
        }
        if (width > 0 && at(i) == '0') {
            --width;
            ++i;
            digits = true;
            if (width > 0 && (at(i) == 'x' || at(i) == 'X')) {
                --width;
                ++i;
            }
        }
        for (int d; width > 0 && at(i) != 0 && (d = hexDigitValue(at(i))) >= 0; --width, ++i) {
            value = value * 16 + static_cast<unsigned int>(d);
            digits = true;
        }
        if (!digits)
            return converted;
        values[field] = negative ? 0u - value : value;
        ++converted;
    }
    return converted;
}

} // namespace KQColor

QColor kq_colorFromRGBColor(RGBColor color)
{
    return QColor::fromRgba64(color.red, color.green, color.blue, 65535);
}

RGBColor kq_RGBColor(const QColor &color)
{
    if (!color.isValid())
        return RGBColor{0, 0, 0};
    double c[4];
    KQColor::rgbComponents(color.toRgb(), c);
    return RGBColor{KQColor::truncatedComponent(c[0] * 65535.0), KQColor::truncatedComponent(c[1] * 65535.0),
                    KQColor::truncatedComponent(c[2] * 65535.0)};
}

QColor kq_CGColor(const QColor &color)
{
    return color.isValid() ? color.toRgb() : QColor();
}

QColor kq_contrastingBlackOrWhite(const QColor &color)
{
    double c[4];
    if (!KQColor::rgbComponents(color, c))
        return QColor(Qt::black);
    const double mean = (c[0] + c[1] + c[2]) / 3.0;
    return mean > 0.5 ? QColor(Qt::black) : QColor(Qt::white);
}

double kq_calibration(const QColor &color)
{
    if (color.spec() != QColor::Rgb && color.spec() != QColor::ExtendedRgb) {
        QString description;
        QDebug(&description).nospace() << color;
        qWarning().noquote() << QStringLiteral("Color is not RGB: ") + description;
        return 0.0;
    }
    double c[4];
    KQColor::rgbComponents(color, c);
    return 1.0 - (0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2]);
}

QColor kq_colorFromRGBHexString(const QString &text)
{
    if (text.size() != 7)
        return QColor();
    unsigned int values[3];
    int converted;
    // ASCII text (the usual case) is upper-cased in place, without the
    // allocations of the general path; the result is the same.
    char ascii[7];
    bool isAscii = true;
    for (int i = 0; i < 7 && isAscii; ++i) {
        const char16_t unit = text.at(i).unicode();
        isAscii = unit < 0x80;
        ascii[i] = static_cast<char>((unit >= u'a' && unit <= u'z') ? unit - (u'a' - u'A') : unit);
    }
    if (isAscii) {
        converted = KQColor::scanHexTriplet(ascii, sizeof ascii, values);
    } else {
        const QByteArray bytes = text.toUpper().toUtf8();
        converted = KQColor::scanHexTriplet(bytes.constData(), std::size_t(bytes.size()), values);
    }
    if (converted < 3)
        return QColor();
    quint16 channels[3];
    for (int i = 0; i < 3; ++i) {
        // A field read as a negative number wraps to a large unsigned one:
        // an RGB component cannot exceed full, so it is full.
        const double component = std::min(values[i] / 255.0, 1.0);
        channels[i] = static_cast<quint16>(std::lround(component * 65535.0));
    }
    return QColor::fromRgba64(channels[0], channels[1], channels[2], 65535);
}

QString kq_RGBHexString(const QColor &color)
{
    static const char digits[] = "0123456789ABCDEF";
    double c[4];
    KQColor::rgbComponents(color.isValid() ? color.toRgb() : color, c);
    QChar text[7];
    text[0] = QLatin1Char('#');
    for (int i = 0; i < 3; ++i) {
        const quint16 value = KQColor::truncatedComponent(c[i] * 255.0);
        // "%02X" of an unsigned value: more digits only above 0xFF, which a
        // component of 0-1 cannot reach.
        text[1 + 2 * i] = QLatin1Char(digits[(value >> 4) & 0xF]);
        text[2 + 2 * i] = QLatin1Char(digits[value & 0xF]);
    }
    return QString(text, 7);
}
