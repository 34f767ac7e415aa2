#include <TarnCommon/KQColourWheel.h>

#include "MessageCapture.h"

#include <QtTest/QTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(RGBColor)

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

RGBColor rgb(int r, int g, int b)
{
    return RGBColor{quint16(r), quint16(g), quint16(b)};
}

QByteArray describe(RGBColor c)
{
    return QByteArray::number(c.red) + ", " + QByteArray::number(c.green) + ", " + QByteArray::number(c.blue);
}
} // namespace

#define COMPARE_RGB(actual, expected) QCOMPARE(describe(actual), describe(expected))

class TestColourWheel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void greenShare_data();
    void greenShare();
    void ring_data();
    void ring();
    void lighterAndDarker_data();
    void lighterAndDarker();
    void unitSquare_data();
    void unitSquare();
    void paletteBox_data();
    void paletteBox();
    void difference_data();
    void difference();
};

void TestColourWheel::greenShare_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("share");

    QTest::newRow("0") << 0.0 << 0.0;
    QTest::newRow("30 rising") << 30.0 << 0.5;
    QTest::newRow("60 full") << 60.0 << 1.0;
    QTest::newRow("180 full") << 180.0 << 1.0;
    QTest::newRow("210 falling") << 210.0 << 0.5;
    QTest::newRow("240 off") << 240.0 << 0.0;
    QTest::newRow("360 stays 360") << 360.0 << 0.0;
    QTest::newRow("-30 is 330") << -30.0 << 0.0;
    QTest::newRow("-300 is 60") << -300.0 << 1.0;
    QTest::newRow("-690 is 30") << -690.0 << 0.5;
    QTest::newRow("390 is 30") << 390.0 << 0.5;
    QTest::newRow("720 is 360") << 720.0 << 0.0;
    QTest::newRow("2^40 turns and 30") << 360.0 * 1099511627776.0 + 30.0 << 0.5;
    QTest::newRow("NaN") << kNaN << 0.0;
    QTest::newRow("+kInf") << kInf << 0.0;
    QTest::newRow("-kInf") << -kInf << 0.0;
}

void TestColourWheel::greenShare()
{
    QFETCH(double, degrees);
    QFETCH(double, share);
    QCOMPARE(Get_Green_colour_index_01_for_degree(degrees), share);
}

void TestColourWheel::ring_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<RGBColor>("expected");

    QTest::newRow("red") << 0.0 << rgb(65535, 0, 0);
    QTest::newRow("30 truncates") << 30.0 << rgb(65535, 32767, 0);
    QTest::newRow("yellow") << 60.0 << rgb(65535, 65535, 0);
    QTest::newRow("green") << 120.0 << rgb(0, 65535, 0);
    QTest::newRow("cyan") << 180.0 << rgb(0, 65535, 65535);
    QTest::newRow("blue") << 240.0 << rgb(0, 0, 65535);
    QTest::newRow("NaN") << kNaN << rgb(0, 0, 0);
}

void TestColourWheel::ring()
{
    QFETCH(double, degrees);
    QFETCH(RGBColor, expected);
    COMPARE_RGB(Get_RGB_Outside_Colour_Ring_from_degree(degrees), expected);
}

void TestColourWheel::lighterAndDarker_data()
{
    QTest::addColumn<bool>("lighter");
    QTest::addColumn<RGBColor>("color");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<RGBColor>("expected");

    const RGBColor some = rgb(1000, 40000, 65535);
    QTest::newRow("lighter by 1 keeps") << true << some << 1.0 << some;
    QTest::newRow("lighter by 0 is white") << true << some << 0.0 << rgb(65535, 65535, 65535);
    QTest::newRow("lighter half of black truncates") << true << rgb(0, 0, 0) << 0.5 << rgb(32767, 32767, 32767);
    QTest::newRow("lighter by 2 wraps") << true << rgb(0, 0, 0) << 2.0 << rgb(1, 1, 1);
    QTest::newRow("lighter by NaN") << true << some << kNaN << rgb(0, 0, 0);
    QTest::newRow("darker by 0 is black") << false << some << 0.0 << rgb(0, 0, 0);
    QTest::newRow("darker half of white truncates") << false << rgb(65535, 65535, 65535) << 0.5
                                                    << rgb(32767, 32767, 32767);
    QTest::newRow("darker by 2 wraps") << false << rgb(40000, 0, 0) << 2.0 << rgb(14464, 0, 0);
    QTest::newRow("darker by -kInf") << false << some << -kInf << rgb(0, 0, 0);
}

void TestColourWheel::lighterAndDarker()
{
    QFETCH(bool, lighter);
    QFETCH(RGBColor, color);
    QFETCH(double, fraction);
    QFETCH(RGBColor, expected);
    COMPARE_RGB(lighter ? Get_RGB_Lighter_Colour_by_fraction(color, fraction)
                        : Get_RGB_Darker_Colour_by_fraction(color, fraction),
                expected);
}

void TestColourWheel::unitSquare_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<RGBColor>("expected");

    QTest::newRow("top is white") << 0.0 << 0.0 << rgb(65535, 65535, 65535);
    QTest::newRow("bottom is black") << 0.0 << 1.0 << rgb(0, 0, 0);
    QTest::newRow("y above 1 is white") << 0.0 << 1.5 << rgb(65535, 65535, 65535);
    QTest::newRow("middle is the pure hue") << 0.5 << 0.5 << rgb(0, 65535, 65535);
    QTest::newRow("quarter down") << 0.0 << 0.25 << rgb(65535, 32767, 32767);
    QTest::newRow("three quarters down") << 0.0 << 0.75 << rgb(32767, 0, 0);
    QTest::newRow("x above 1 is red") << 1.5 << 0.5 << rgb(65535, 0, 0);
    QTest::newRow("negative x is red") << -1.0 << 0.5 << rgb(65535, 0, 0);
    QTest::newRow("x of 1 is red") << 1.0 << 0.5 << rgb(65535, 0, 0);
    QTest::newRow("NaN counts as 0") << kNaN << kNaN << rgb(65535, 65535, 65535);
}

void TestColourWheel::unitSquare()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(RGBColor, expected);
    COMPARE_RGB(Get_Color_in_2D_01_space(x, y), expected);
}

void TestColourWheel::paletteBox_data()
{
    QTest::addColumn<qint64>("column");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("rows");
    QTest::addColumn<qint64>("columns");
    QTest::addColumn<double>("dim");
    QTest::addColumn<RGBColor>("expected");

    QTest::newRow("grey top is white") << 1LL << 1LL << 10LL << 8LL << 0.0 << rgb(65535, 65535, 65535);
    QTest::newRow("grey bottom is black") << 1LL << 10LL << 10LL << 8LL << 0.0 << rgb(0, 0, 0);
    QTest::newRow("grey middle truncates") << 1LL << 5LL << 10LL << 8LL << 0.0 << rgb(32767, 32767, 32767);
    QTest::newRow("hue top row") << 2LL << 1LL << 10LL << 8LL << 0.0 << rgb(65535, 63662, 52428);
    QTest::newRow("hue inner cell") << 5LL << 7LL << 10LL << 8LL << 0.0 << rgb(0, 32454, 56797);
    QTest::newRow("dimmed") << 1LL << 1LL << 10LL << 8LL << 1.0 << rgb(45874, 45874, 45874);
    QTest::newRow("NaN dims") << 1LL << 1LL << 10LL << 8LL << kNaN << rgb(45874, 45874, 45874);
    QTest::newRow("39 rows: never darkened") << 1LL << 35LL << 39LL << 8LL << 0.0 << rgb(6721, 6721, 6721);
    QTest::newRow("40 rows: row 35 untouched") << 1LL << 35LL << 40LL << 8LL << 0.0 << rgb(8191, 8191, 8191);
    QTest::newRow("40 rows: fifth-last darkened") << 1LL << 36LL << 40LL << 8LL << 0.0 << rgb(5679, 5679, 5679);
    QTest::newRow("40 rows: hue row 35") << 2LL << 35LL << 40LL << 2LL << 0.0 << rgb(37976, 0, 0);
    QTest::newRow("40 rows: hue row 36") << 2LL << 36LL << 40LL << 2LL << 0.0 << rgb(30872, 0, 0);
    QTest::newRow("40 rows: last row to a third") << 2LL << 40LL << 40LL << 2LL << 0.0 << rgb(8737, 0, 0);
    QTest::newRow("dimmed and darkened") << 3LL << 36LL << 39LL << 5LL << 1.0 << rgb(0, 23419, 23419);
    QTest::newRow("one row") << 2LL << 1LL << 1LL << 8LL << 0.0 << rgb(65535, 65535, 65535);
    QTest::newRow("grey of one row") << 1LL << 1LL << 1LL << 8LL << 0.0 << rgb(0, 0, 0);
    QTest::newRow("beyond one column") << 2LL << 1LL << 10LL << 1LL << 0.0 << rgb(65535, 52428, 52428);
    QTest::newRow("no rows") << 1LL << 2LL << 0LL << 8LL << 0.0 << rgb(0, 0, 0);
    QTest::newRow("extreme numbers") << 1LL << std::numeric_limits<qint64>::min()
                                     << std::numeric_limits<qint64>::max() << 8LL << 0.0
                                     << rgb(65534, 65534, 65534); // 2 x 65535, low 16 bits
}

void TestColourWheel::paletteBox()
{
    QFETCH(qint64, column);
    QFETCH(qint64, row);
    QFETCH(qint64, rows);
    QFETCH(qint64, columns);
    QFETCH(double, dim);
    QFETCH(RGBColor, expected);
    COMPARE_RGB(Get_RGBColour_for_box(column, row, rows, columns, dim), expected);
}

void TestColourWheel::difference_data()
{
    QTest::addColumn<QColor>("a");
    QTest::addColumn<QColor>("b");
    QTest::addColumn<double>("expected");
    QTest::addColumn<bool>("reported");

    QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << std::sqrt(3.0) * 0.5 << false;
    QTest::newRow("transparent and opaque black") << QColor(0, 0, 0, 0) << QColor(Qt::black) << 0.5 << false;
    QTest::newRow("itself") << QColor(Qt::red) << QColor(Qt::red) << 0.0 << false;
    QTest::newRow("HSV against RGB") << QColor::fromHsv(0, 255, 255) << QColor(Qt::black) << 0.5 << false;
    QTest::newRow("missing and any") << QColor() << QColor(Qt::red) << 1.0 << false;
    QTest::newRow("transparent white and opaque black") << QColor(255, 255, 255, 0) << QColor(Qt::black) << 1.0
                                                        << false;
    QTest::newRow("out of range is reported") << QColor::fromRgbF(3.0f, 0.0f, 0.0f) << QColor(Qt::black) << 1.5
                                              << true;
    QTest::newRow("infinite is reported") << QColor::fromRgbF(kInf, 0.0f, 0.0f) << QColor(Qt::black) << kInf << true;
}

void TestColourWheel::difference()
{
    QFETCH(QColor, a);
    QFETCH(QColor, b);
    QFETCH(double, expected);
    QFETCH(bool, reported);
    MessageCapture capture;
    const double diff = q_COLOR_difference_between_NSColors(a, b);
    const QByteArray report = capture.text();
    QVERIFY2(std::isinf(expected) ? diff == expected : qAbs(diff - expected) < 1e-9, QByteArray::number(diff));
    if (reported) {
        QVERIFY2(report.contains("Assertion: (diff >= 0.0 && diff <= 1.0)"), report);
        QVERIFY2(report.contains("q_COLOR_difference_between_NSColors"), report);
    } else {
        QVERIFY2(report.isEmpty(), report);
    }
}

QTEST_GUILESS_MAIN(TestColourWheel)
#include "tst_colourwheel.moc"
