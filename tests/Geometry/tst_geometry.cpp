// Rectangle, point and line rules, and the colour wheel of the palette.
#include <TarnCommon/KQColourWheel.h>
#include <TarnCommon/KQGeometry.h>

#include "MessageCapture.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(RGBColor)

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr qint64 Min64 = std::numeric_limits<qint64>::min();
constexpr qint64 Max64 = std::numeric_limits<qint64>::max();

// Exact comparison that also treats two not-a-numbers as equal.
bool same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

bool sameRect(const QRectF &a, const QRectF &b)
{
    return same(a.x(), b.x()) && same(a.y(), b.y()) && same(a.width(), b.width()) && same(a.height(), b.height());
}

QByteArray describe(const QRectF &r)
{
    return QByteArray::number(r.x()) + "," + QByteArray::number(r.y()) + " " + QByteArray::number(r.width()) + "x"
           + QByteArray::number(r.height());
}

QByteArray describe(RGBColor c)
{
    return QByteArray::number(c.red) + ", " + QByteArray::number(c.green) + ", " + QByteArray::number(c.blue);
}

RGBColor rgb(int r, int g, int b)
{
    return RGBColor{quint16(r), quint16(g), quint16(b)};
}

} // namespace

class tst_Geometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rectRules_data();
    void rectRules();
    void pointRules();
    void constrainToLine_data();
    void constrainToLine();
    void clockAndIdentifiers();
    void wheel_data();
    void wheel();
    void shades_data();
    void shades();
    void unitSquare_data();
    void unitSquare();
    void paletteBox_data();
    void paletteBox();
    void difference_data();
    void difference();
};

// between: the rectangle spanned by in's two corner points; edge and corner:
// from in, moved to p (an edge takes p.x); normalize: in made positive.
void tst_Geometry::rectRules_data()
{
    QTest::addColumn<QString>("op");
    QTest::addColumn<QRectF>("in");
    QTest::addColumn<uint>("which");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QRectF>("expected");
    const QRectF r(10, 10, 20, 20);
    const auto row = [](const char *name, const char *op, QRectF in, uint which, QPointF p, QRectF expected) {
        QTest::newRow(name) << QString::fromLatin1(op) << in << which << p << expected;
    };
    const auto between = [&](const char *name, QPointF a, QPointF b, QRectF expected) {
        row(name, "between", QRectF(a, b), 0, {}, expected);
    };
    between("between: reversed", {4, 8}, {1, 2}, {1, 2, 3, 6});
    between("between: crossed", {4, 2}, {1, 8}, {1, 2, 3, 6});
    between("between: equal points", {5, 5}, {5, 5}, {5, 5, 0, 0});
    between("between: negative", {-3, -1}, {-7, 2}, {-7, -1, 4, 3});
    row("edge: min x", "edge", r, 0, {5, 0}, {5, 10, 25, 20});
    row("edge: min x past max x stays negative", "edge", r, 0, {40, 0}, {40, 10, -10, 20});
    row("edge: min y", "edge", r, 1, {0, 0}, {10, 0, 20, 30});
    row("edge: max x before min x", "edge", r, 2, {0, 0}, {10, 10, -10, 20});
    row("edge: max y", "edge", r, 3, {15, 0}, {10, 10, 20, 5});
    row("edge: not-a-number", "edge", r, 2, {NaN, 0}, {10, 10, NaN, 20});
    row("corner 0: min x, min y", "corner", r, 0, {5, 0}, {5, 0, 25, 30});
    row("corner 1: min x, max y", "corner", r, 1, {5, 50}, {5, 10, 25, 40});
    row("corner 2: max x, min y", "corner", r, 2, {50, 5}, {10, 5, 40, 25});
    row("corner 3: max x, max y", "corner", r, 3, {50, 50}, {10, 10, 40, 40});
    row("corner 4 behaves as 3", "corner", r, 4, {50, 50}, {10, 10, 40, 40});
    row("corner 6 behaves as 3", "corner", r, 6, {0, 0}, {10, 10, -10, -10});
    row("corner huge behaves as 3", "corner", r, 0xFFFFFFFFu, {12, 14}, {10, 10, 2, 4});
    row("normalize: already normal", "normalize", {1, 2, 3, 4}, 0, {}, {1, 2, 3, 4});
    row("normalize: negative width", "normalize", {40, 10, -10, 20}, 0, {}, {30, 10, 10, 20});
    row("normalize: negative height", "normalize", {0, 10, 5, -4}, 0, {}, {0, 6, 5, 4});
    row("normalize: not-a-number stays", "normalize", {1, 1, NaN, -2}, 0, {}, {1, -1, NaN, 2});
}

void tst_Geometry::rectRules()
{
    QFETCH(QString, op);
    QFETCH(QRectF, in);
    QFETCH(uint, which);
    QFETCH(QPointF, p);
    QFETCH(QRectF, expected);
    QRectF r;
    KQRect c{};
    const KQRect cin{{in.x(), in.y()}, {in.width(), in.height()}};
    if (op == QLatin1String("between")) {
        r = q_RECT_rect_between_points(in.topLeft(), in.bottomRight());
        c = q_RECT_rect_between_points(cin.origin, KQPoint{in.right(), in.bottom()});
    } else if (op == QLatin1String("edge")) {
        r = q_RECT_set_edge_to_location(in, which, p.x());
        c = q_RECT_set_edge_to_location(cin, which, p.x());
    } else if (op == QLatin1String("corner")) {
        r = q_RECT_set_corner_to_point(in, which, p);
        c = q_RECT_set_corner_to_point(cin, which, KQPoint{p.x(), p.y()});
    } else {
        r = q_RECT_normalize(in);
        c = q_RECT_normalize(cin);
    }
    QVERIFY2(sameRect(r, expected), describe(r));
    // The plain-record form, as C callers see it.
    const QRectF fromC(c.origin.x, c.origin.y, c.size.width, c.size.height);
    QVERIFY2(sameRect(fromC, expected), describe(fromC));
}

void tst_Geometry::pointRules()
{
    QCOMPARE(q_POINT_distance_between_points(QPointF(3, 4), QPointF(0, 0)), 5.0);
    QCOMPARE(q_POINT_distance_between_points(KQPoint{1, 1}, KQPoint{4, 5}), 5.0);
    QVERIFY(std::isnan(q_POINT_distance_between_points(QPointF(NaN, 0), QPointF(1, 1))));
    QCOMPARE(q_RECT__Get_Centre(QRectF(10, 20, 30, 40)), QPointF(25, 40));
    // A negative size puts the centre before the origin: no normalisation.
    QCOMPARE(q_RECT__Get_Centre(QRectF(10, 10, -20, -4)), QPointF(0, 8));

    // An edge that is none is reported and leaves the rectangle as it was.
    MessageCapture out;
    QVERIFY(sameRect(q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 4, 100.0), QRectF(1, 2, 3, 4)));
    QVERIFY(sameRect(q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 0xFFFFFFFFu, 100.0), QRectF(1, 2, 3, 4)));
    QCOMPARE(out.text(), QByteArray("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n"
                                    "!!! ERROR !!! -- -1 is not a valid NSRectEdge value\n"));
}

void tst_Geometry::constrainToLine_data()
{
    QTest::addColumn<bool>("clamp");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QPointF>("expected");

    const double nearlyOne = 1.0 + 1.1920928955078125e-07;
    QTest::newRow("vertical") << false << QPointF(3, 20) << QPointF(0, 0) << QPointF(0, 10) << QPointF(0, 20);
    QTest::newRow("vertical clamped") << true << QPointF(3, 20) << QPointF(0, 0) << QPointF(0, 10) << QPointF(0, 10);
    QTest::newRow("vertical within epsilon takes the end's x")
        << false << QPointF(3, 4) << QPointF(1.0, 0) << QPointF(nearlyOne, 10) << QPointF(nearlyOne, 4);
    QTest::newRow("diagonal") << false << QPointF(10, 0) << QPointF(0, 0) << QPointF(10, 10) << QPointF(5, 5);
    QTest::newRow("diagonal clamped per coordinate")
        << true << QPointF(30, 10) << QPointF(0, 0) << QPointF(10, 10) << QPointF(10, 10);
    QTest::newRow("diagonal beyond the start, unclamped")
        << false << QPointF(-4, -6) << QPointF(0, 0) << QPointF(10, 10) << QPointF(-5, -5);
    QTest::newRow("horizontal is not-a-number")
        << false << QPointF(3, 9) << QPointF(0, 5) << QPointF(10, 5) << QPointF(NaN, NaN);
    QTest::newRow("horizontal clamped: the segment's low corner")
        << true << QPointF(3, 9) << QPointF(10, 5) << QPointF(0, 5) << QPointF(0, 5);
    QTest::newRow("not-a-number point clamped")
        << true << QPointF(NaN, NaN) << QPointF(2, 0) << QPointF(10, 10) << QPointF(2, 0);
}

void tst_Geometry::constrainToLine()
{
    QFETCH(bool, clamp);
    QFETCH(QPointF, point);
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);
    QFETCH(QPointF, expected);
    const QPointF p = KQPointConstrainToLine(clamp, point, start, end);
    QVERIFY2(same(p.x(), expected.x()) && same(p.y(), expected.y()),
             QByteArray::number(p.x()) + "," + QByteArray::number(p.y()));
    const KQPoint c = KQPointConstrainToLine(clamp, KQPoint{point.x(), point.y()}, KQPoint{start.x(), start.y()},
                                             KQPoint{end.x(), end.y()});
    QVERIFY(same(c.x, expected.x()) && same(c.y, expected.y()));
}

void tst_Geometry::clockAndIdentifiers()
{
    double previous = Secs();
    QVERIFY(previous > 0);
    for (int i = 0; i < 1000; ++i) {
        const double now = Secs();
        QVERIFY(now >= previous);
        previous = now;
    }
    static const QRegularExpression form(QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"));
    QSet<QString> seen;
    for (int i = 0; i < 200; ++i) {
        const QString id = Unique_ID_ns();
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        seen.insert(id);
    }
    QCOMPARE(seen.size(), 200);
}

// The green share of a hue in degrees, and the hue's colour on the ring
// (red and blue are the green share 120 and 240 degrees on).
void tst_Geometry::wheel_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("share");
    QTest::addColumn<RGBColor>("ring");
    const auto row = [](const char *name, double degrees, double share, RGBColor ring) {
        QTest::newRow(name) << degrees << share << ring;
    };
    row("0", 0, 0, rgb(65535, 0, 0));
    row("30 rising, truncated", 30, 0.5, rgb(65535, 32767, 0));
    row("60 full", 60, 1, rgb(65535, 65535, 0));
    row("180 full", 180, 1, rgb(0, 65535, 65535));
    row("210 falling", 210, 0.5, rgb(0, 32767, 65535));
    row("240 off", 240, 0, rgb(0, 0, 65535));
    row("360 stays 360", 360, 0, rgb(65535, 0, 0));
    row("-30 is 330", -30, 0, rgb(65535, 0, 32767));
    row("-300 is 60", -300, 1, rgb(65535, 65535, 0));
    row("-690 is 30", -690, 0.5, rgb(65535, 32767, 0));
    row("390 is 30", 390, 0.5, rgb(65535, 32767, 0));
    row("720 is 360", 720, 0, rgb(65535, 0, 0));
    row("2^40 turns and 30", 360.0 * 1099511627776.0 + 30.0, 0.5, rgb(65535, 32767, 0));
    row("NaN", NaN, 0, rgb(0, 0, 0));
    row("+Inf", Inf, 0, rgb(0, 0, 0));
    row("-Inf", -Inf, 0, rgb(0, 0, 0));
}

void tst_Geometry::wheel()
{
    QFETCH(double, degrees);
    QFETCH(double, share);
    QFETCH(RGBColor, ring);
    QCOMPARE(Get_Green_colour_index_01_for_degree(degrees), share);
    QCOMPARE(describe(Get_RGB_Outside_Colour_Ring_from_degree(degrees)), describe(ring));
}

void tst_Geometry::shades_data()
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
    QTest::newRow("lighter by NaN") << true << some << NaN << rgb(0, 0, 0);
    QTest::newRow("darker by 0 is black") << false << some << 0.0 << rgb(0, 0, 0);
    QTest::newRow("darker half of white truncates") << false << rgb(65535, 65535, 65535) << 0.5 << rgb(32767, 32767, 32767);
    QTest::newRow("darker by 2 wraps") << false << rgb(40000, 0, 0) << 2.0 << rgb(14464, 0, 0);
    QTest::newRow("darker by -Inf") << false << some << -Inf << rgb(0, 0, 0);
}

void tst_Geometry::shades()
{
    QFETCH(bool, lighter);
    QFETCH(RGBColor, color);
    QFETCH(double, fraction);
    QFETCH(RGBColor, expected);
    const RGBColor c = lighter ? Get_RGB_Lighter_Colour_by_fraction(color, fraction)
                               : Get_RGB_Darker_Colour_by_fraction(color, fraction);
    QCOMPARE(describe(c), describe(expected));
}

void tst_Geometry::unitSquare_data()
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
    QTest::newRow("NaN counts as 0") << NaN << NaN << rgb(65535, 65535, 65535);
}

void tst_Geometry::unitSquare()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(RGBColor, expected);
    QCOMPARE(describe(Get_Color_in_2D_01_space(x, y)), describe(expected));
}

void tst_Geometry::paletteBox_data()
{
    QTest::addColumn<qint64>("column");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("rows");
    QTest::addColumn<qint64>("columns");
    QTest::addColumn<double>("dim");
    QTest::addColumn<RGBColor>("expected");
    const auto box = [](const char *name, qint64 column, qint64 row, qint64 rows, qint64 columns, double dim, RGBColor c) {
        QTest::newRow(name) << column << row << rows << columns << dim << c;
    };
    box("grey top is white", 1, 1, 10, 8, 0, rgb(65535, 65535, 65535));
    box("grey bottom is black", 1, 10, 10, 8, 0, rgb(0, 0, 0));
    box("grey middle truncates", 1, 5, 10, 8, 0, rgb(32767, 32767, 32767));
    box("hue top row", 2, 1, 10, 8, 0, rgb(65535, 63662, 52428));
    box("hue inner cell", 5, 7, 10, 8, 0, rgb(0, 32454, 56797));
    box("dimmed", 1, 1, 10, 8, 1, rgb(45874, 45874, 45874));
    box("NaN dims", 1, 1, 10, 8, NaN, rgb(45874, 45874, 45874));
    box("39 rows: never darkened", 1, 35, 39, 8, 0, rgb(6721, 6721, 6721));
    box("40 rows: row 35 untouched", 1, 35, 40, 8, 0, rgb(8191, 8191, 8191));
    box("40 rows: fifth-last darkened", 1, 36, 40, 8, 0, rgb(5679, 5679, 5679));
    box("40 rows: hue row 35", 2, 35, 40, 2, 0, rgb(37976, 0, 0));
    box("40 rows: hue row 36", 2, 36, 40, 2, 0, rgb(30872, 0, 0));
    box("40 rows: last row to a third", 2, 40, 40, 2, 0, rgb(8737, 0, 0));
    box("dimmed and darkened", 3, 36, 39, 5, 1, rgb(0, 23419, 23419));
    box("one row", 2, 1, 1, 8, 0, rgb(65535, 65535, 65535));
    box("grey of one row", 1, 1, 1, 8, 0, rgb(0, 0, 0));
    box("beyond one column", 2, 1, 10, 1, 0, rgb(65535, 52428, 52428));
    box("no rows", 1, 2, 0, 8, 0, rgb(0, 0, 0));
    box("extreme numbers", 1, Min64, Max64, 8, 0, rgb(65534, 65534, 65534)); // 2 x 65535, low 16 bits
}

void tst_Geometry::paletteBox()
{
    QFETCH(qint64, column);
    QFETCH(qint64, row);
    QFETCH(qint64, rows);
    QFETCH(qint64, columns);
    QFETCH(double, dim);
    QFETCH(RGBColor, expected);
    QCOMPARE(describe(Get_RGBColour_for_box(column, row, rows, columns, dim)), describe(expected));
}

void tst_Geometry::difference_data()
{
    QTest::addColumn<QColor>("a");
    QTest::addColumn<QColor>("b");
    QTest::addColumn<double>("expected");
    QTest::addColumn<bool>("reported");

    const QColor black(Qt::black);
    QTest::newRow("black and white") << black << QColor(Qt::white) << std::sqrt(3.0) * 0.5 << false;
    QTest::newRow("transparent and opaque black") << QColor(0, 0, 0, 0) << black << 0.5 << false;
    QTest::newRow("itself") << QColor(Qt::red) << QColor(Qt::red) << 0.0 << false;
    QTest::newRow("HSV against RGB") << QColor::fromHsv(0, 255, 255) << black << 0.5 << false;
    QTest::newRow("missing and any") << QColor() << QColor(Qt::red) << 1.0 << false;
    QTest::newRow("transparent white and opaque black") << QColor(255, 255, 255, 0) << black << 1.0 << false;
    QTest::newRow("out of range is reported") << QColor::fromRgbF(3.0f, 0.0f, 0.0f) << black << 1.5 << true;
    QTest::newRow("infinite is reported") << QColor::fromRgbF(Inf, 0.0f, 0.0f) << black << Inf << true;
}

void tst_Geometry::difference()
{
    QFETCH(QColor, a);
    QFETCH(QColor, b);
    QFETCH(double, expected);
    QFETCH(bool, reported);
    MessageCapture capture;
    const double diff = q_COLOR_difference_between_NSColors(a, b);
    const QByteArray report = capture.text();
    QVERIFY2(std::isinf(expected) ? diff == expected : qAbs(diff - expected) < 1e-9, QByteArray::number(diff));
    QCOMPARE(report.contains("Assertion: (diff >= 0.0 && diff <= 1.0)"), reported);
    QVERIFY2(reported ? report.contains("q_COLOR_difference_between_NSColors") : report.isEmpty(), report);
}

QTEST_GUILESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
