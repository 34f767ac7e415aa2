#include <TarnCommon/KQColorExtensions.h>

#include "KQColorComponents_p.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cstdio>
#include <cstring>

Q_DECLARE_METATYPE(RGBColor)

class TestColorExtensions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hexParsing_data();
    void hexParsing();
    void scannerMatchesTheCLibrary();
    void everyHexTextRoundTrips();
    void hexFormatting_data();
    void hexFormatting();
    void recordRoundTripsEveryChannelValue();
    void contrast_data();
    void contrast();
    void calibration_data();
    void calibration();
    void cgColorKeepsAlpha();
};

void TestColorExtensions::hexParsing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");

    QTest::newRow("lower case") << QStringLiteral("#ff8000") << true << 255 << 128 << 0;
    QTest::newRow("upper case") << QStringLiteral("#FF8000") << true << 255 << 128 << 0;
    QTest::newRow("length 6") << QStringLiteral("#FF800") << false << 0 << 0 << 0;
    QTest::newRow("length 8") << QStringLiteral("#FF80000") << false << 0 << 0 << 0;
    QTest::newRow("not hex") << QStringLiteral("#GG0000") << false << 0 << 0 << 0;
    QTest::newRow("blanks before fields") << QStringLiteral("# 1 2 3") << true << 1 << 2 << 3;
    QTest::newRow("short last field") << QStringLiteral("#12345Z") << true << 0x12 << 0x34 << 0x5;
    QTest::newRow("two fields only") << QStringLiteral("#12 34 ") << false << 0 << 0 << 0;
    QTest::newRow("0x prefix is a field") << QStringLiteral("#0x1234") << true << 0 << 0x12 << 0x34;
    QTest::newRow("negative fields are full") << QStringLiteral("#-1-1-1") << true << 255 << 255 << 255;
    QTest::newRow("ends at a NUL") << QStringLiteral("#00000") + QChar(0) << true << 0 << 0 << 0;
    QTest::newRow("non-ASCII letter") << QStringLiteral("#\u00e912345") << false << 0 << 0 << 0;
    QTest::newRow("surrogate pair") << QStringLiteral("#\U0001F600123") << false << 0 << 0 << 0;
    // Upper-casing comes first and may lengthen the text: the ligature ff becomes "FF".
    QTest::newRow("ligature upper-cased") << QStringLiteral("#\ufb0000000") << true << 255 << 0 << 0;
    QTest::newRow("empty") << QString() << false << 0 << 0 << 0;
}

void TestColorExtensions::hexParsing()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);
    const QColor color = kq_colorFromRGBHexString(text);
    QCOMPARE(color.isValid(), valid);
    if (valid) {
        QCOMPARE(color, QColor::fromRgbF(red / 255.0f, green / 255.0f, blue / 255.0f));
        QCOMPARE(color.alpha(), 255);
    }
}

// Every 6-byte tail over the characters that steer the C scanner (digits,
// letters, signs, the 0x prefix, white space, an early end) is read as
// sscanf reads it.
void TestColorExtensions::scannerMatchesTheCLibrary()
{
    static const char alphabet[] = {'0', 'x', '-', '+', ' ', '1', 'f', 'F', 'g', '\t', '\0'};
    constexpr int n = sizeof alphabet;
    char text[8] = "#";
    long mismatches = 0;
    for (int code = 0; code < n * n * n * n * n * n; ++code) {
        for (int k = 0, rest = code; k < 6; ++k, rest /= n)
            text[1 + k] = alphabet[rest % n];
        unsigned expected[3] = {0, 0, 0}, actual[3] = {0, 0, 0};
        const int expectedCount = std::sscanf(text, "#%02X%02X%02X", &expected[0], &expected[1], &expected[2]);
        const int actualCount = KQColor::scanHexTriplet(text, 7, actual);
        if (expectedCount != actualCount || std::memcmp(expected, actual, sizeof expected) != 0) {
            if (++mismatches <= 5)
                qWarning("differs from sscanf: \"%s\" (%d against %d)", text, actualCount, expectedCount);
        }
    }
    QCOMPARE(mismatches, 0L);
    unsigned values[3];
    QCOMPARE(KQColor::scanHexTriplet("#", 1, values), -1);
    QCOMPARE(KQColor::scanHexTriplet("x123456", 7, values), 0);
}

void TestColorExtensions::everyHexTextRoundTrips()
{
    static const char upper[] = "0123456789ABCDEF";
    static const char lower[] = "0123456789abcdef";
    QString text(7, QLatin1Char('#'));
    QChar *chars = text.data();
    long failures = 0;
    for (quint32 v = 0; v < (1u << 24); ++v) {
        const char *digits = (v & 1) ? lower : upper;
        for (int k = 0; k < 6; ++k)
            chars[6 - k] = QLatin1Char(digits[(v >> (4 * k)) & 0xF]);
        const QString back = kq_RGBHexString(kq_colorFromRGBHexString(text));
        bool same = back.size() == 7;
        for (int k = 0; same && k < 7; ++k)
            same = back.at(k) == chars[k].toUpper();
        if (!same && ++failures <= 5)
            qWarning("%s came back as %s", qPrintable(text), qPrintable(back));
    }
    QCOMPARE(failures, 0L);
}

void TestColorExtensions::hexFormatting_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("text");

    QTest::newRow("white") << QColor(Qt::white) << QStringLiteral("#FFFFFF");
    QTest::newRow("black") << QColor(Qt::black) << QStringLiteral("#000000");
    QTest::newRow("half truncates") << QColor::fromRgba64(32767, 32768, 0) << QStringLiteral("#7F7F00");
    QTest::newRow("just below a step") << QColor::fromRgba64(257 * 0x80 - 1, 257 * 0x80, 257 * 0x80 + 1)
                                       << QStringLiteral("#7F8080");
    QTest::newRow("alpha dropped") << QColor(0x12, 0x34, 0x56, 0x10) << QStringLiteral("#123456");
    QTest::newRow("HSV converted") << QColor::fromHsv(120, 255, 255) << QStringLiteral("#00FF00");
    QTest::newRow("invalid") << QColor() << QStringLiteral("#000000");
}

void TestColorExtensions::hexFormatting()
{
    QFETCH(QColor, color);
    QFETCH(QString, text);
    QCOMPARE(kq_RGBHexString(color), text);
}

void TestColorExtensions::recordRoundTripsEveryChannelValue()
{
    for (int v = 0; v <= 65535; ++v) {
        const RGBColor record{quint16(v), quint16(65535 - v), quint16(v / 2)};
        const QColor color = kq_colorFromRGBColor(record);
        QCOMPARE(color.alpha(), 255);
        if (kq_RGBColor(color) != record)
            QFAIL(qPrintable(QStringLiteral("channel value %1 did not come back").arg(v)));
    }
    QVERIFY(kq_RGBColor(QColor(Qt::white)) == (RGBColor{65535, 65535, 65535}));
    QVERIFY(kq_RGBColor(QColor()) == (RGBColor{0, 0, 0}));
    QVERIFY(kq_RGBColor(QColor::fromHsv(240, 255, 255)) == (RGBColor{0, 0, 65535}));
}

void TestColorExtensions::contrast_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("expected");

    QTest::newRow("white") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("red, mean a third") << QColor(Qt::red) << QColor(Qt::white);
    QTest::newRow("yellow, mean two thirds") << QColor(Qt::yellow) << QColor(Qt::black);
    // An extended colour can hold a mean of exactly 0.5.
    QTest::newRow("mean exactly one half") << QColor::fromRgbF(1.5f, 0.0f, 0.0f) << QColor(Qt::white);
    QTest::newRow("mean just above one half") << QColor::fromRgba64(32768, 32768, 32768) << QColor(Qt::black);
    QTest::newRow("HSV white") << QColor::fromHsv(0, 0, 255) << QColor(Qt::black);
    QTest::newRow("invalid") << QColor() << QColor(Qt::black);
}

void TestColorExtensions::contrast()
{
    QFETCH(QColor, color);
    QFETCH(QColor, expected);
    QCOMPARE(kq_contrastingBlackOrWhite(color), expected);
}

void TestColorExtensions::calibration_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("expected");
    QTest::addColumn<QString>("warning");

    QTest::newRow("white") << QColor(Qt::white) << 0.0 << QString();
    QTest::newRow("black") << QColor(Qt::black) << 1.0 << QString();
    QTest::newRow("green") << QColor(Qt::green) << 1.0 - 0.587 << QString();
    QTest::newRow("HSV is not RGB") << QColor::fromHsv(0, 0, 255) << 0.0
                                    << QStringLiteral("^Color is not RGB: QColor\\(AHSV ");
    QTest::newRow("invalid") << QColor() << 0.0 << QStringLiteral("^Color is not RGB: QColor\\(Invalid\\)$");
}

void TestColorExtensions::calibration()
{
    QFETCH(QColor, color);
    QFETCH(double, expected);
    QFETCH(QString, warning);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    QVERIFY(qAbs(kq_calibration(color) - expected) < 1e-12);
}

void TestColorExtensions::cgColorKeepsAlpha()
{
    const QColor converted = kq_CGColor(QColor::fromHsv(60, 255, 255, 40));
    QCOMPARE(converted.spec(), QColor::Rgb);
    QCOMPARE(converted, QColor(255, 255, 0, 40));
    QVERIFY(!kq_CGColor(QColor()).isValid());
}

QTEST_GUILESS_MAIN(TestColorExtensions)
#include "tst_colorextensions.moc"
