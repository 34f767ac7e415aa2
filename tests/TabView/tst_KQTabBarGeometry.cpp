#include "KQTabBarGeometry_p.h"

#include <TarnCommon/KQTab.h>

#include <TarnCommon/KQRectRules.h>

#include <QtTest/QTest>

class tst_KQTabBarGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tabRects_data();
    void tabRects();
    void tabIndexAtPoint_data();
    void tabIndexAtPoint();
    void hitTestingAgreesWithCells_data();
    void hitTestingAgreesWithCells();
    void iconRect_data();
    void iconRect();
    void contentFrame_data();
    void contentFrame();
    void accessibilityButtonFrame_data();
    void accessibilityButtonFrame();
    void clickTracking_data();
    void clickTracking();
    void trackerForgetsDestroyedTab();
};

void tst_KQTabBarGeometry::tabRects_data()
{
    QTest::addColumn<QRectF>("bar");
    QTest::addColumn<int>("count");
    QTest::addColumn<QList<double>>("xs");

    QTest::newRow("3 tabs in 200") << QRectF(0, 0, 200, 27) << 3 << QList<double>{40, 80, 120};
    QTest::newRow("2 tabs in 200") << QRectF(0, 0, 200, 27) << 2 << QList<double>{60, 100};
    QTest::newRow("1 tab in 75, floored") << QRectF(0, 0, 75, 27) << 1 << QList<double>{17};
    QTest::newRow("6 tabs spill over both ends")
        << QRectF(0, 0, 200, 27) << 6 << QList<double>{-20, 20, 60, 100, 140, 180};
    QTest::newRow("bar not at the origin") << QRectF(10, 5, 200, 27) << 2 << QList<double>{70, 110};
    QTest::newRow("no tabs") << QRectF(0, 0, 200, 27) << 0 << QList<double>{};
}

void tst_KQTabBarGeometry::tabRects()
{
    QFETCH(QRectF, bar);
    QFETCH(int, count);
    QFETCH(QList<double>, xs);

    const QList<QRectF> cells = KQTabBar::tabRectsForTabBarRect(bar, count);
    QCOMPARE(cells.size(), xs.size());
    for (qsizetype i = 0; i < cells.size(); ++i) {
        QCOMPARE(cells[i].x(), xs[i]);
        QCOMPARE(cells[i].y(), bar.y());
        QCOMPARE(cells[i].width(), 40.0);
        QCOMPARE(cells[i].height(), 26.0);
    }
    if (count == 6)
        QCOMPARE(cells.last().x() + cells.last().width(), 220.0);
}

void tst_KQTabBarGeometry::tabIndexAtPoint_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("index");

    // Three tabs in a 200 x 100 view: cells [40,80) [80,120) [120,160) by
    // [0,26). Edges in general: hitTestingAgreesWithCells.
    QTest::newRow("shared edge belongs to the right cell") << 3 << QPointF(80, 10) << 1;
    QTest::newRow("separator row") << 3 << QPointF(100, 26.5) << -1;
    QTest::newRow("no tabs") << 0 << QPointF(100, 10) << -1;
}

void tst_KQTabBarGeometry::tabIndexAtPoint()
{
    QFETCH(int, count);
    QFETCH(QPointF, point);
    QFETCH(int, index);
    QCOMPARE(KQTabBar::tabIndexAtPoint(QRectF(0, 0, 200, 100), count, point), qsizetype(index));
}

void tst_KQTabBarGeometry::hitTestingAgreesWithCells_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<int>("count");

    QTest::newRow("odd width, 3 tabs") << QRectF(0, 0, 201, 80) << 3;
    QTest::newRow("fractional origin, 4 tabs") << QRectF(3.25, 7.5, 190.5, 60) << 4;
    QTest::newRow("spilling, 7 tabs") << QRectF(0, 0, 150, 40) << 7;
}

void tst_KQTabBarGeometry::hitTestingAgreesWithCells()
{
    QFETCH(QRectF, bounds);
    QFETCH(int, count);

    // The drawn cells and the hit test must never disagree, edges included.
    const QList<QRectF> cells = KQTabBar::tabRectsForTabBarRect(KQTabBar::tabBarRectForBounds(bounds), count);
    for (double y = bounds.y() - 1; y < bounds.y() + 30; y += 0.5) {
        for (double x = bounds.x() - 160; x < bounds.x() + bounds.width() + 160; x += 0.5) {
            qsizetype expected = -1;
            for (qsizetype i = 0; i < cells.size() && expected < 0; ++i)
                expected = kq_pointInRect(QPointF(x, y), cells[i]) ? i : -1;
            QCOMPARE(KQTabBar::tabIndexAtPoint(bounds, count, QPointF(x, y)), expected);
        }
    }
}

void tst_KQTabBarGeometry::iconRect_data()
{
    QTest::addColumn<QRectF>("cell");
    QTest::addColumn<QRectF>("icon");

    QTest::newRow("whole cell") << QRectF(40, 0, 40, 26) << QRectF(52, 5, 16, 16);
    QTest::newRow("fractional origin floored") << QRectF(17.5, 0.25, 40, 26) << QRectF(29, 5, 16, 16);
}

void tst_KQTabBarGeometry::iconRect()
{
    QFETCH(QRectF, cell);
    QFETCH(QRectF, icon);
    QCOMPARE(KQTabBar::iconRectForCell(cell), icon);
}

void tst_KQTabBarGeometry::contentFrame_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QRectF>("content");

    QTest::newRow("below the bar") << QRectF(0, 0, 200, 100) << QRectF(0, 27, 200, 73);
    QTest::newRow("too short for content") << QRectF(0, 0, 200, 20) << QRectF(0, 27, 200, 0);
    QTest::newRow("offset bounds") << QRectF(5, 10, 100, 50) << QRectF(5, 37, 100, 23);
}

void tst_KQTabBarGeometry::contentFrame()
{
    QFETCH(QRectF, bounds);
    QFETCH(QRectF, content);
    QCOMPARE(KQTabBar::contentFrameForBounds(bounds), content);
    QCOMPARE(KQTabBar::tabBarRectForBounds(bounds), QRectF(bounds.x(), bounds.y(), bounds.width(), 27));
}

void tst_KQTabBarGeometry::accessibilityButtonFrame_data()
{
    QTest::addColumn<QRectF>("window");
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    QTest::addColumn<QRectF>("frame");

    // y = 500 + (H - 27) + 20 - 27 = 466 + H.
    QTest::newRow("second of three, H = 100") << QRectF(100, 500, 300, 200) << QRectF(0, 0, 200, 100) << 3 << 1
                                              << QRectF(180, 566, 40, 28);
    QTest::newRow("first of three, H = 60") << QRectF(100, 500, 300, 200) << QRectF(0, 0, 200, 60) << 3 << 0
                                            << QRectF(140, 526, 40, 28);
    QTest::newRow("bounds origin counts against y") << QRectF(0, 0, 300, 200) << QRectF(0, 10, 100, 100) << 1
                                                    << 0 << QRectF(30, 56, 40, 28);
}

void tst_KQTabBarGeometry::accessibilityButtonFrame()
{
    QFETCH(QRectF, window);
    QFETCH(QRectF, bounds);
    QFETCH(int, count);
    QFETCH(int, index);
    QFETCH(QRectF, frame);
    QCOMPARE(KQTabBar::accessibilityButtonFrame(window, bounds, count, index), frame);
}

void tst_KQTabBarGeometry::clickTracking_data()
{
    // Each step: index of the tab under the pointer (-1: none) and whether
    // the button went up. Expected: the pressed tab after each step and the
    // tab selected at the end (-1: none).
    QTest::addColumn<QList<int>>("under");
    QTest::addColumn<QList<bool>>("released");
    QTest::addColumn<QList<int>>("pressed");
    QTest::addColumn<int>("selected");

    QTest::newRow("click") << QList<int>{0, 0} << QList<bool>{false, true} << QList<int>{0, -1} << 0;
    QTest::newRow("press A, drag to B, release") << QList<int>{0, 1, 1} << QList<bool>{false, false, true}
                                                 << QList<int>{0, 1, -1} << 1;
    QTest::newRow("drag off all cells and release") << QList<int>{0, -1, -1} << QList<bool>{false, false, true}
                                                    << QList<int>{0, -1, -1} << -1;
    QTest::newRow("drag off and back on") << QList<int>{2, -1, 2, 2} << QList<bool>{false, false, false, true}
                                          << QList<int>{2, -1, 2, -1} << 2;
    QTest::newRow("press outside, release on a cell") << QList<int>{-1, 1, 1} << QList<bool>{false, false, true}
                                                      << QList<int>{-1, 1, -1} << 1;
    QTest::newRow("stray release over a cell") << QList<int>{2} << QList<bool>{true} << QList<int>{-1} << 2;
}

void tst_KQTabBarGeometry::clickTracking()
{
    QFETCH(QList<int>, under);
    QFETCH(QList<bool>, released);
    QFETCH(QList<int>, pressed);
    QFETCH(int, selected);

    KQTab tabs[3];
    const auto tabAt = [&tabs](int index) { return index < 0 ? nullptr : &tabs[index]; };
    KQTabClickTracker tracker;
    KQTab *selection = nullptr;
    bool finished = false;
    for (qsizetype i = 0; i < under.size(); ++i) {
        KQTab *before = tracker.pressedDownTab();
        const KQTabClickTracker::Step step = tracker.track(tabAt(under[i]), released[i]);
        QCOMPARE(step.pressedChanged, before != tabAt(under[i]));
        QCOMPARE(step.finished, bool(released[i]));
        if (step.finished) {
            selection = step.selection;
            finished = true;
            tracker.reset();
        }
        QCOMPARE(tracker.pressedDownTab(), tabAt(pressed[i]));
    }
    QVERIFY(finished);
    QCOMPARE(selection, tabAt(selected));
}

void tst_KQTabBarGeometry::trackerForgetsDestroyedTab()
{
    KQTabClickTracker tracker;
    auto *tab = new KQTab;
    tracker.track(tab, false);
    QCOMPARE(tracker.pressedDownTab(), tab);
    delete tab;
    QCOMPARE(tracker.pressedDownTab(), nullptr);
    const KQTabClickTracker::Step step = tracker.track(nullptr, true);
    QVERIFY(step.finished);
    QCOMPARE(step.selection, nullptr);
}

QTEST_MAIN(tst_KQTabBarGeometry)
#include "tst_KQTabBarGeometry.moc"
