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
const QRegularExpression uuidForm(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));

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
QByteArray corner(uint k, QPointF p) { return both(q_RECT_set_corner_to_point(R, k, p), q_RECT_set_corner_to_point(toC(R), k, toC(p))); }
QByteArray normal(QRectF r) { return both(q_RECT_normalize(r), q_RECT_normalize(toC(r))); }
QByteArray onLine(bool clamp, QPointF p, QPointF a, QPointF b)
{
    const KQPoint c = KQPointConstrainToLine(clamp, toC(p), toC(a), toC(b));
    return both(QRectF(KQPointConstrainToLine(clamp, p, a, b), QSizeF(0, 0)), KQRect{c, {0, 0}});
}
QByteArray hue(double d) { return show({Get_Green_colour_index_01_for_degree(d)}) + " | " + show(Get_RGB_Outside_Colour_Ring_from_degree(d)); }
QByteArray box(qint64 column, qint64 row, qint64 rows, qint64 columns, double dim = 0)
{
    return show(Get_RGBColour_for_box(column, row, rows, columns, dim));
}

} // namespace

class tst_Geometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Rectangles print as "x y width height", points "x y 0 0", colours "red green blue"; report: what is said.
    void results_data()
    {
        QTest::addColumn<Result>("result");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<QByteArray>("report");
        const auto row = [](const char *name, Result r, const char *expected, const char *report = "") {
            QTest::newRow(name) << r << QByteArray(expected) << QByteArray(report);
        };
        row(
            "between: crossed",
            [] {
                return both(q_RECT_rect_between_points(QPointF(4, 2), {1, 8}),
                            q_RECT_rect_between_points(KQPoint{4, 2}, {1, 8}));
            },
            "1 2 3 6");
        row(
            "edge: none is reported",
            [] { return both(q_RECT_set_edge_to_location(R, 4, 100), q_RECT_set_edge_to_location(toC(R), 4, 100)); },
            "10 10 20 20", "-- 4 is not a valid NSRectEdge value\n");
        row("corner 1: min x, max y", [] { return corner(1, {5, 50}); }, "5 10 25 40");
        row("corner 2: max x, min y", [] { return corner(2, {50, 5}); }, "10 5 40 25");
        row("corner huge behaves as 3", [] { return corner(0xFFFFFFFFu, {12, 14}); }, "10 10 2 4");
        row("normalize: negative width and height", [] { return normal({40, 10, -10, -4}); }, "30 6 10 4");
        row("normalize: not-a-number stays", [] { return normal({1, 1, NaN, -2}); }, "1 -1 nan 2");
        row(
            "distance",
            [] {
                return show({q_POINT_distance_between_points(QPointF(3, 4), {}),
                             q_POINT_distance_between_points(KQPoint{1, 1}, KQPoint{4, 5})});
            },
            "5 5");
        row("centre", [] { return both(QRectF(q_RECT__Get_Centre(R), QSizeF(0, 0)), KQRect{q_RECT__Get_Centre(toC(R)), {0, 0}}); }, "20 20 0 0");
        row("line: vertical clamped", [] { return onLine(true, {3, 20}, {0, 0}, {0, 10}); }, "0 10 0 0");
        row("line: diagonal", [] { return onLine(false, {10, 0}, {0, 0}, {10, 10}); }, "5 5 0 0");
        row("line: horizontal is not-a-number", [] { return onLine(false, {3, 9}, {0, 5}, {10, 5}); }, "nan nan 0 0");
        row("line: not-a-number point clamped", [] { return onLine(true, {NaN, NaN}, {2, 0}, {10, 10}); }, "2 0 0 0");
        row("hue 210 falling", [] { return hue(210); }, "0.5 | 0 32767 65535");
        row("hue 240 off", [] { return hue(240); }, "0 | 0 0 65535");
        row("hue 2^40 turns and 30", [] { return hue(360.0 * 1099511627776.0 + 30.0); }, "0.5 | 65535 32767 0");
        row("hue NaN", [] { return hue(NaN); }, "0 | 0 0 0");
        row("hue -Inf", [] { return hue(-Inf); }, "0 | 0 0 0");
        row("lighter by NaN", [] { return show(Get_RGB_Lighter_Colour_by_fraction({1000, 40000, 65535}, NaN)); }, "0 0 0");
        row("square: quarter down", [] { return show(Get_Color_in_2D_01_space(0, 0.25)); }, "65535 32767 32767");
        row("square: three quarters down", [] { return show(Get_Color_in_2D_01_space(0, 0.75)); }, "32767 0 0");
        row("square: NaN and above 1 count as 0", [] { return show(Get_Color_in_2D_01_space(NaN, 1.5)); }, "65535 65535 65535");
        row("box: grey top is white", [] { return box(1, 1, 10, 8); }, "65535 65535 65535");
        row("box: hue inner cell", [] { return box(5, 7, 10, 8); }, "0 32454 56797");
        row("box: NaN dims", [] { return box(1, 1, 10, 8, NaN); }, "45874 45874 45874");
        row("box: 40 rows, fifth-last darkened", [] { return box(1, 36, 40, 8); }, "5679 5679 5679");
        row("box: no rows", [] { return box(1, 2, 0, 8); }, "0 0 0");
        row("box: extreme numbers, low 16 bits", [] { return box(1, Min64, Max64, 8); }, "65534 65534 65534");
        const auto diff = [](QColor a, QColor b) { return [=] { return show({q_COLOR_difference_between_NSColors(a, b)}); }; };
        row("difference: transparent and opaque black", diff(QColor(0, 0, 0, 0), Qt::black), "0.5");
        row("difference: missing and any", diff(QColor(), Qt::red), "1");
        row("difference: out of range is reported", diff(QColor::fromRgbF(3.0f, 0.0f, 0.0f), Qt::black), "1.5",
            "Assertion: (diff >= 0.0 && diff <= 1.0)");
        row("clock: seconds since boot, never going back", [] {
            const double start = Secs();
            return QByteArray::number(start > 0 && Secs() >= start);
        }, "1");
        row("identifiers: upper-case UUIDs, each new", [] {
            const QString id = Unique_ID_ns();
            return QByteArray::number(uuidForm.match(id).hasMatch() && Unique_ID_ns() != id);
        }, "1");
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
};

QTEST_GUILESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
