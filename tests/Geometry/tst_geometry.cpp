// Rectangle, point and line rules, and the colour wheel of the palette.
#include <TarnCommon/KQColourWheel.h>
#include <TarnCommon/KQGeometry.h>

#include "MessageCapture.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <functional>
#include <limits>

using Result = std::function<QByteArray()>;
Q_DECLARE_METATYPE(Result)

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN(), Inf = std::numeric_limits<double>::infinity();
constexpr qint64 Min64 = std::numeric_limits<qint64>::min(), Max64 = std::numeric_limits<qint64>::max();
const QRectF R(10, 10, 20, 20);

// The numbers as printed, to 12 digits; not-a-number prints as "nan".
QByteArray show(std::initializer_list<double> values)
{
    QByteArray out;
    for (double v : values)
        out += (out.isEmpty() ? "" : " ") + QByteArray::number(v, 'g', 12);
    return out;
}
QByteArray show(RGBColor c) { return show({double(c.red), double(c.green), double(c.blue)}); }
KQRect toC(QRectF r) { return KQRect{{r.x(), r.y()}, {r.width(), r.height()}}; }
KQPoint toC(QPointF p) { return KQPoint{p.x(), p.y()}; }

// The Qt form's result, and the plain-record form's where C callers would see another.
QByteArray both(QRectF qt, KQRect c)
{
    const QByteArray a = show({qt.x(), qt.y(), qt.width(), qt.height()});
    const QByteArray b = show({c.origin.x, c.origin.y, c.size.width, c.size.height});
    return a == b ? a : a + " | plain " + b;
}
QByteArray between(QPointF a, QPointF b) { return both(q_RECT_rect_between_points(a, b), q_RECT_rect_between_points(toC(a), toC(b))); }
QByteArray edge(uint e, double x) { return both(q_RECT_set_edge_to_location(R, e, x), q_RECT_set_edge_to_location(toC(R), e, x)); }
QByteArray corner(uint k, QPointF p) { return both(q_RECT_set_corner_to_point(R, k, p), q_RECT_set_corner_to_point(toC(R), k, toC(p))); }
QByteArray normal(QRectF r) { return both(q_RECT_normalize(r), q_RECT_normalize(toC(r))); }
QByteArray centre(QRectF r) { return both(QRectF(q_RECT__Get_Centre(r), QSizeF(0, 0)), KQRect{q_RECT__Get_Centre(toC(r)), {0, 0}}); }
QByteArray onLine(bool clamp, QPointF p, QPointF a, QPointF b)
{
    const QPointF q = KQPointConstrainToLine(clamp, p, a, b);
    const KQPoint c = KQPointConstrainToLine(clamp, toC(p), toC(a), toC(b));
    return both(QRectF(q, QSizeF(0, 0)), KQRect{c, {0, 0}});
}
// The green share at d degrees, then the ring's colour there.
QByteArray hue(double d) { return show({Get_Green_colour_index_01_for_degree(d)}) + " | " + show(Get_RGB_Outside_Colour_Ring_from_degree(d)); }
QByteArray box(qint64 column, qint64 row, qint64 rows, qint64 columns, double dim = 0) { return show(Get_RGBColour_for_box(column, row, rows, columns, dim)); }

} // namespace

class tst_Geometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Rectangles are printed "x y width height", points "x y 0 0", colours "red green blue";
    // report: what the library must say (nothing if empty).
    void results_data()
    {
        QTest::addColumn<Result>("result");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<QByteArray>("report");
        const auto row = [](const char *name, Result r, const char *expected, const char *report = "") {
            QTest::newRow(name) << r << QByteArray(expected) << QByteArray(report);
        };
        const double nearlyOne = 1.0 + 1.1920928955078125e-07;
        const RGBColor some{1000, 40000, 65535}, black{0, 0, 0}, white{65535, 65535, 65535};
        row("between: reversed", [] { return between({4, 8}, {1, 2}); }, "1 2 3 6");
        row("between: crossed", [] { return between({4, 2}, {1, 8}); }, "1 2 3 6");
        row("edge: min x", [] { return edge(0, 5); }, "5 10 25 20");
        row("edge: min y", [] { return edge(1, 0); }, "10 0 20 30");
        row("edge: max x before min x", [] { return edge(2, 0); }, "10 10 -10 20");
        row("edge: max y", [] { return edge(3, 15); }, "10 10 20 5");
        row("edge: not-a-number", [] { return edge(2, NaN); }, "10 10 nan 20");
        row("edge: none is reported", [] { return edge(4, 100); }, "10 10 20 20", "-- 4 is not a valid NSRectEdge value\n");
        row("edge: huge none", [] { return edge(0xFFFFFFFFu, 100); }, "10 10 20 20", "-- -1 is not a valid NSRectEdge value\n");
        row("corner 0: min x, min y", [] { return corner(0, {5, 0}); }, "5 0 25 30");
        row("corner 1: min x, max y", [] { return corner(1, {5, 50}); }, "5 10 25 40");
        row("corner 2: max x, min y", [] { return corner(2, {50, 5}); }, "10 5 40 25");
        row("corner 3: max x, max y", [] { return corner(3, {50, 50}); }, "10 10 40 40");
        row("corner 6 behaves as 3", [] { return corner(6, {0, 0}); }, "10 10 -10 -10");
        row("corner huge behaves as 3", [] { return corner(0xFFFFFFFFu, {12, 14}); }, "10 10 2 4");
        row("normalize: negative width", [] { return normal({40, 10, -10, 20}); }, "30 10 10 20");
        row("normalize: negative height", [] { return normal({0, 10, 5, -4}); }, "0 6 5 4");
        row("normalize: not-a-number stays", [] { return normal({1, 1, NaN, -2}); }, "1 -1 nan 2");
        row("distance", [] { return show({q_POINT_distance_between_points(QPointF(3, 4), {}), q_POINT_distance_between_points(KQPoint{1, 1}, KQPoint{4, 5})}); }, "5 5");
        row("centre", [] { return centre({10, 20, 30, 40}); }, "25 40 0 0");
        row("centre of a negative size: no normalisation", [] { return centre({10, 10, -20, -4}); }, "0 8 0 0");
        row("line: vertical", [] { return onLine(false, {3, 20}, {0, 0}, {0, 10}); }, "0 20 0 0");
        row("line: vertical clamped", [] { return onLine(true, {3, 20}, {0, 0}, {0, 10}); }, "0 10 0 0");
        row("line: vertical within epsilon takes the end's x", [=] { return onLine(false, {3, 4}, {1, 0}, {nearlyOne, 10}); }, "1.00000011921 4 0 0");
        row("line: diagonal", [] { return onLine(false, {10, 0}, {0, 0}, {10, 10}); }, "5 5 0 0");
        row("line: diagonal clamped per coordinate", [] { return onLine(true, {30, 10}, {0, 0}, {10, 10}); }, "10 10 0 0");
        row("line: beyond the start, unclamped", [] { return onLine(false, {-4, -6}, {0, 0}, {10, 10}); }, "-5 -5 0 0");
        row("line: horizontal is not-a-number", [] { return onLine(false, {3, 9}, {0, 5}, {10, 5}); }, "nan nan 0 0");
        row("line: horizontal clamped to the low corner", [] { return onLine(true, {3, 9}, {10, 5}, {0, 5}); }, "0 5 0 0");
        row("line: not-a-number point clamped", [] { return onLine(true, {NaN, NaN}, {2, 0}, {10, 10}); }, "2 0 0 0");
        row("hue 0", [] { return hue(0); }, "0 | 65535 0 0");
        row("hue 30 rising, truncated", [] { return hue(30); }, "0.5 | 65535 32767 0");
        row("hue 60 full", [] { return hue(60); }, "1 | 65535 65535 0");
        row("hue 210 falling", [] { return hue(210); }, "0.5 | 0 32767 65535");
        row("hue 240 off", [] { return hue(240); }, "0 | 0 0 65535");
        row("hue -30 is 330", [] { return hue(-30); }, "0 | 65535 0 32767");
        row("hue 390 is 30", [] { return hue(390); }, "0.5 | 65535 32767 0");
        row("hue 720 is 360", [] { return hue(720); }, "0 | 65535 0 0");
        row("hue 2^40 turns and 30", [] { return hue(360.0 * 1099511627776.0 + 30.0); }, "0.5 | 65535 32767 0");
        row("hue NaN", [] { return hue(NaN); }, "0 | 0 0 0");
        row("hue +Inf", [] { return hue(Inf); }, "0 | 0 0 0");
        row("hue -Inf", [] { return hue(-Inf); }, "0 | 0 0 0");
        row("lighter by 0 is white", [=] { return show(Get_RGB_Lighter_Colour_by_fraction(some, 0)); }, "65535 65535 65535");
        row("lighter half of black truncates", [=] { return show(Get_RGB_Lighter_Colour_by_fraction(black, 0.5)); }, "32767 32767 32767");
        row("lighter by NaN", [=] { return show(Get_RGB_Lighter_Colour_by_fraction(some, NaN)); }, "0 0 0");
        row("darker half of white truncates", [=] { return show(Get_RGB_Darker_Colour_by_fraction(white, 0.5)); }, "32767 32767 32767");
        row("darker by 2 wraps", [] { return show(Get_RGB_Darker_Colour_by_fraction(RGBColor{40000, 0, 0}, 2)); }, "14464 0 0");
        row("darker by -Inf", [=] { return show(Get_RGB_Darker_Colour_by_fraction(some, -Inf)); }, "0 0 0");
        row("square: bottom is black", [] { return show(Get_Color_in_2D_01_space(0, 1)); }, "0 0 0");
        row("square: y above 1 is white", [] { return show(Get_Color_in_2D_01_space(0, 1.5)); }, "65535 65535 65535");
        row("square: middle is the pure hue", [] { return show(Get_Color_in_2D_01_space(0.5, 0.5)); }, "0 65535 65535");
        row("square: quarter down", [] { return show(Get_Color_in_2D_01_space(0, 0.25)); }, "65535 32767 32767");
        row("square: three quarters down", [] { return show(Get_Color_in_2D_01_space(0, 0.75)); }, "32767 0 0");
        row("square: x above 1 is red", [] { return show(Get_Color_in_2D_01_space(1.5, 0.5)); }, "65535 0 0");
        row("square: NaN counts as 0", [] { return show(Get_Color_in_2D_01_space(NaN, NaN)); }, "65535 65535 65535");
        row("box: grey top is white", [] { return box(1, 1, 10, 8); }, "65535 65535 65535");
        row("box: grey bottom is black", [] { return box(1, 10, 10, 8); }, "0 0 0");
        row("box: grey middle truncates", [] { return box(1, 5, 10, 8); }, "32767 32767 32767");
        row("box: hue top row", [] { return box(2, 1, 10, 8); }, "65535 63662 52428");
        row("box: hue inner cell", [] { return box(5, 7, 10, 8); }, "0 32454 56797");
        row("box: dimmed", [] { return box(1, 1, 10, 8, 1); }, "45874 45874 45874");
        row("box: NaN dims", [] { return box(1, 1, 10, 8, NaN); }, "45874 45874 45874");
        row("box: 39 rows, never darkened", [] { return box(1, 35, 39, 8); }, "6721 6721 6721");
        row("box: 40 rows, row 35 untouched", [] { return box(1, 35, 40, 8); }, "8191 8191 8191");
        row("box: 40 rows, fifth-last darkened", [] { return box(1, 36, 40, 8); }, "5679 5679 5679");
        row("box: 40 rows, last row to a third", [] { return box(2, 40, 40, 2); }, "8737 0 0");
        row("box: dimmed and darkened", [] { return box(3, 36, 39, 5, 1); }, "0 23419 23419");
        row("box: one row", [] { return box(2, 1, 1, 8); }, "65535 65535 65535");
        row("box: grey of one row", [] { return box(1, 1, 1, 8); }, "0 0 0");
        row("box: beyond one column", [] { return box(2, 1, 10, 1); }, "65535 52428 52428");
        row("box: no rows", [] { return box(1, 2, 0, 8); }, "0 0 0");
        row("box: extreme numbers, low 16 bits", [] { return box(1, Min64, Max64, 8); }, "65534 65534 65534");
        const auto diff = [](QColor a, QColor b) { return [=] { return show({q_COLOR_difference_between_NSColors(a, b)}); }; };
        row("difference: black and white", diff(Qt::black, Qt::white), "0.866025403784");
        row("difference: transparent and opaque black", diff(QColor(0, 0, 0, 0), Qt::black), "0.5");
        row("difference: itself", diff(Qt::red, Qt::red), "0");
        row("difference: HSV against RGB", diff(QColor::fromHsv(0, 255, 255), Qt::black), "0.5");
        row("difference: missing and any", diff(QColor(), Qt::red), "1");
        row("difference: out of range is reported", diff(QColor::fromRgbF(3.0f, 0.0f, 0.0f), Qt::black), "1.5",
            "Assertion: (diff >= 0.0 && diff <= 1.0)");
    }
    void results()
    {
        QFETCH(Result, result);
        QFETCH(QByteArray, expected);
        QFETCH(QByteArray, report);
        MessageCapture capture;
        QCOMPARE(result(), expected);
        const QByteArray text = capture.text();
        QVERIFY2(report.isEmpty() ? text.isEmpty() : text.contains(report), text);
    }

    void clockAndIdentifiers()
    {
        const double start = Secs();
        QVERIFY(start > 0 && Secs() >= start);
        static const QRegularExpression form(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        QSet<QString> seen;
        for (int i = 0; i < 200; ++i)
            seen.insert(Unique_ID_ns());
        QCOMPARE(seen.size(), 200);
        for (const QString &id : std::as_const(seen))
            QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
    }
};

QTEST_GUILESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
