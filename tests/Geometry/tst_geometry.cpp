#include <TarnCommon/KQGeometry.h>

#include "MessageCapture.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

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
    return QByteArray::number(r.x()) + "," + QByteArray::number(r.y()) + " " + QByteArray::number(r.width())
           + "x" + QByteArray::number(r.height());
}

} // namespace

class tst_Geometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rectBetweenPoints_data();
    void rectBetweenPoints();
    void distanceAndCentre();
    void setEdge_data();
    void setEdge();
    void invalidEdgeIsLoggedAndIgnored();
    void setCorner_data();
    void setCorner();
    void normalize_data();
    void normalize();
    void constrainToLine_data();
    void constrainToLine();
    void secsIsMonotonic();
    void uniqueIdentifiers();
};

void tst_Geometry::rectBetweenPoints_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("ordered") << QPointF(1, 2) << QPointF(4, 8) << QRectF(1, 2, 3, 6);
    QTest::newRow("reversed") << QPointF(4, 8) << QPointF(1, 2) << QRectF(1, 2, 3, 6);
    QTest::newRow("crossed") << QPointF(4, 2) << QPointF(1, 8) << QRectF(1, 2, 3, 6);
    QTest::newRow("equal points: zero size there") << QPointF(5, 5) << QPointF(5, 5) << QRectF(5, 5, 0, 0);
    QTest::newRow("negative coordinates") << QPointF(-3, -1) << QPointF(-7, 2) << QRectF(-7, -1, 4, 3);
}

void tst_Geometry::rectBetweenPoints()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(QRectF, expected);
    const QRectF r = q_RECT_rect_between_points(a, b);
    QVERIFY2(sameRect(r, expected), describe(r));
}

void tst_Geometry::distanceAndCentre()
{
    QCOMPARE(q_POINT_distance_between_points(QPointF(0, 0), QPointF(3, 4)), 5.0);
    QCOMPARE(q_POINT_distance_between_points(QPointF(3, 4), QPointF(0, 0)), 5.0);
    QCOMPARE(q_POINT_distance_between_points(QPointF(2, 2), QPointF(2, 2)), 0.0);
    QVERIFY(std::isnan(q_POINT_distance_between_points(QPointF(NaN, 0), QPointF(1, 1))));

    QCOMPARE(q_RECT__Get_Centre(QRectF(10, 20, 30, 40)), QPointF(25, 40));
    // A negative size puts the centre before the origin: no normalisation.
    QCOMPARE(q_RECT__Get_Centre(QRectF(10, 10, -20, -4)), QPointF(0, 8));
}

void tst_Geometry::setEdge_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<uint>("edge");
    QTest::addColumn<double>("location");
    QTest::addColumn<QRectF>("expected");
    const QRectF r(10, 10, 20, 20);
    QTest::newRow("min x") << r << 0u << 5.0 << QRectF(5, 10, 25, 20);
    QTest::newRow("min x past max x stays negative") << r << 0u << 40.0 << QRectF(40, 10, -10, 20);
    QTest::newRow("min y") << r << 1u << 0.0 << QRectF(10, 0, 20, 30);
    QTest::newRow("max x") << r << 2u << 50.0 << QRectF(10, 10, 40, 20);
    QTest::newRow("max x before min x") << r << 2u << 0.0 << QRectF(10, 10, -10, 20);
    QTest::newRow("max y") << r << 3u << 15.0 << QRectF(10, 10, 20, 5);
    QTest::newRow("not-a-number location") << r << 2u << NaN << QRectF(10, 10, NaN, 20);
}

void tst_Geometry::setEdge()
{
    QFETCH(QRectF, rect);
    QFETCH(uint, edge);
    QFETCH(double, location);
    QFETCH(QRectF, expected);
    const QRectF r = q_RECT_set_edge_to_location(rect, edge, location);
    QVERIFY2(sameRect(r, expected), describe(r));
}

void tst_Geometry::invalidEdgeIsLoggedAndIgnored()
{
    MessageCapture out;
    const QRectF r = q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 4, 100.0);
    const QRectF r2 = q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 0xFFFFFFFFu, 100.0);
    QVERIFY(sameRect(r, QRectF(1, 2, 3, 4)));
    QVERIFY(sameRect(r2, QRectF(1, 2, 3, 4)));
    QCOMPARE(out.text(), QByteArray("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n"
                                    "!!! ERROR !!! -- -1 is not a valid NSRectEdge value\n"));
}

void tst_Geometry::setCorner_data()
{
    QTest::addColumn<uint>("corner");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QRectF>("expected");
    // Starting from (10, 10, 20, 20).
    QTest::newRow("0: min x, min y") << 0u << QPointF(5, 0) << QRectF(5, 0, 25, 30);
    QTest::newRow("1: min x, max y") << 1u << QPointF(5, 50) << QRectF(5, 10, 25, 40);
    QTest::newRow("2: max x, min y") << 2u << QPointF(50, 5) << QRectF(10, 5, 40, 25);
    QTest::newRow("3: max x, max y") << 3u << QPointF(50, 50) << QRectF(10, 10, 40, 40);
    QTest::newRow("4 behaves as 3") << 4u << QPointF(50, 50) << QRectF(10, 10, 40, 40);
    QTest::newRow("6 behaves as 3") << 6u << QPointF(0, 0) << QRectF(10, 10, -10, -10);
    QTest::newRow("huge behaves as 3") << 0xFFFFFFFFu << QPointF(12, 14) << QRectF(10, 10, 2, 4);
}

void tst_Geometry::setCorner()
{
    QFETCH(uint, corner);
    QFETCH(QPointF, point);
    QFETCH(QRectF, expected);
    const QRectF r = q_RECT_set_corner_to_point(QRectF(10, 10, 20, 20), corner, point);
    QVERIFY2(sameRect(r, expected), describe(r));
    // The plain-record form, as C callers see it.
    const KQRect c = q_RECT_set_corner_to_point(KQRect{{10, 10}, {20, 20}}, corner, KQPoint{point.x(), point.y()});
    const QRectF fromC(c.origin.x, c.origin.y, c.size.width, c.size.height);
    QVERIFY2(sameRect(fromC, expected), describe(fromC));
}

void tst_Geometry::normalize_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("already normal") << QRectF(1, 2, 3, 4) << QRectF(1, 2, 3, 4);
    QTest::newRow("negative width") << QRectF(40, 10, -10, 20) << QRectF(30, 10, 10, 20);
    QTest::newRow("negative height") << QRectF(0, 10, 5, -4) << QRectF(0, 6, 5, 4);
    QTest::newRow("both negative") << QRectF(0, 0, -2, -3) << QRectF(-2, -3, 2, 3);
    QTest::newRow("zero size untouched") << QRectF(7, 8, 0, 0) << QRectF(7, 8, 0, 0);
    QTest::newRow("not-a-number stays") << QRectF(1, 1, NaN, -2) << QRectF(1, -1, NaN, 2);
}

void tst_Geometry::normalize()
{
    QFETCH(QRectF, rect);
    QFETCH(QRectF, expected);
    const QRectF r = q_RECT_normalize(rect);
    QVERIFY2(sameRect(r, expected), describe(r));
    QVERIFY(!std::signbit(r.width()) || std::isnan(r.width()));
}

void tst_Geometry::constrainToLine_data()
{
    QTest::addColumn<bool>("clamp");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QPointF>("expected");

    QTest::newRow("vertical") << false << QPointF(3, 20) << QPointF(0, 0) << QPointF(0, 10) << QPointF(0, 20);
    QTest::newRow("vertical clamped") << true << QPointF(3, 20) << QPointF(0, 0) << QPointF(0, 10) << QPointF(0, 10);
    QTest::newRow("vertical within epsilon takes the end's x")
        << false << QPointF(3, 4) << QPointF(1.0, 0) << QPointF(1.0 + 1.1920928955078125e-07, 10)
        << QPointF(1.0 + 1.1920928955078125e-07, 4);
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

void tst_Geometry::secsIsMonotonic()
{
    const double first = Secs();
    double previous = first;
    for (int i = 0; i < 1000; ++i) {
        const double now = Secs();
        QVERIFY(now >= previous);
        previous = now;
    }
    QVERIFY(first > 0);
}

void tst_Geometry::uniqueIdentifiers()
{
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"));
    QSet<QString> seen;
    for (int i = 0; i < 200; ++i) {
        const QString id = Unique_ID_ns();
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        seen.insert(id);
    }
    QCOMPARE(seen.size(), 200);
}

QTEST_GUILESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
