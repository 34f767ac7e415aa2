#include "KQCollapsibleStacking_p.h"

#include <TarnCommon/KQSettings.h>

#include <QtCore/QRect>
#include <QtTest/QTest>

#include <limits>

using namespace KQCollapsibleStacking;

namespace {

constexpr double Unlimited = std::numeric_limits<double>::max();

// Builds an item at y = 0 (stacking ignores the current y) the way a view
// reports itself.
KQStackItem item(double height, bool resizable, bool collapsed = false, bool hidden = false)
{
    const KQHeightLimits limits = viewHeightLimits(height, resizable, collapsed);
    return {QRectF(0, 0, 50, height), limits.minHeight, limits.maxHeight, hidden, resizable, collapsed};
}

KQStackItem limitedItem(double height, double maxHeight)
{
    KQStackItem limited = item(height, true);
    limited.maxHeight = maxHeight;
    return limited;
}

using Spans = QList<std::pair<double, double>>; // (y, height) per item

} // namespace

class TestCollapsibleStacking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void stackFrames_data()
    {
        QTest::addColumn<QList<KQStackItem>>("items");
        QTest::addColumn<double>("listHeight");
        QTest::addColumn<Spans>("expected");

        QTest::newRow("spare height given in list order")
            << QList<KQStackItem>{item(18, true, true), limitedItem(100, 150), item(50, true)} << 300.0
            << Spans{{0, 18}, {18, 150}, {168, 132}};
        QTest::newRow("shortfall taken from the first resizable view down to its minimum")
            << QList<KQStackItem>{item(40, false), item(100, true), item(60, true)} << 100.0
            << Spans{{0, 40}, {40, 18}, {58, 42}};
        QTest::newRow("rest of a shortfall passes to the next resizable view")
            << QList<KQStackItem>{item(40, true), item(100, true)} << 50.0 << Spans{{0, 18}, {18, 32}};
        QTest::newRow("hidden views keep their frame and take no room")
            << QList<KQStackItem>{item(30, false), item(70, true, false, true), item(20, true)} << 100.0
            << Spans{{0, 30}, {0, 70}, {30, 70}};
        QTest::newRow("fixed and collapsed views leave the stack short")
            << QList<KQStackItem>{item(30, false), item(18, true, true)} << 200.0 << Spans{{0, 30}, {30, 18}};
        QTest::newRow("limits that cannot absorb a shortfall overflow the bottom")
            << QList<KQStackItem>{item(30, false), item(50, true)} << 40.0 << Spans{{0, 30}, {30, 18}};
    }

    void stackFrames()
    {
        QFETCH(QList<KQStackItem>, items);
        QFETCH(double, listHeight);
        QFETCH(Spans, expected);

        const std::optional<QList<QRectF>> frames = KQCollapsibleStacking::stackFrames(items, 200, listHeight);
        QVERIFY(frames.has_value());
        QCOMPARE(frames->size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i) {
            const bool hidden = items.at(i).hidden;
            QCOMPARE(frames->at(i).y(), expected.at(i).first);
            QCOMPARE(frames->at(i).height(), expected.at(i).second);
            // Visible views span the list; hidden ones are left as they were.
            QCOMPARE(frames->at(i).width(), hidden ? 50.0 : 200.0);
        }
    }

    void listLimits_data()
    {
        QTest::addColumn<QList<KQStackItem>>("items");
        QTest::addColumn<double>("expectedMin");
        QTest::addColumn<double>("expectedMax");
        QTest::newRow("no views") << QList<KQStackItem>{} << 0.0 << 0.0;
        QTest::newRow("all hidden") << QList<KQStackItem>{item(30, false, false, true), item(40, true, false, true)}
                                    << 0.0 << 0.0;
        QTest::newRow("one unlimited view")
            << QList<KQStackItem>{item(30, false), item(60, true)} << 48.0 << Unlimited;
        QTest::newRow("two unlimited views overflow to infinity")
            << QList<KQStackItem>{item(60, true), item(60, true)} << 36.0
            << std::numeric_limits<double>::infinity();
    }

    void listLimits()
    {
        QFETCH(QList<KQStackItem>, items);
        QFETCH(double, expectedMin);
        QFETCH(double, expectedMax);
        const KQHeightLimits limits = listHeightLimits(items);
        QCOMPARE(limits.minHeight, expectedMin);
        QCOMPARE(limits.maxHeight, expectedMax);
    }

    void fittedHeightLetsTheMaximumWin()
    {
        QCOMPARE(fittedListHeight(10.0, {50.0, 200.0}), 50.0);
        QCOMPARE(fittedListHeight(300.0, {50.0, 200.0}), 200.0);
        QCOMPARE(fittedListHeight(100.0, {80.0, 60.0}), 60.0);
    }

    void animationPlanSkipsHiddenViews()
    {
        QList<KQStackItem> items{item(40, true), item(70, false, false, true), item(60, false)};
        items[2].frame.moveTop(40);
        const KQAnimationPlan plan = animationPlan(items, 0, 40, 90);
        QCOMPARE(plan.moves.size(), 1);
        QCOMPARE(plan.moves.at(0).first, 2);
        QCOMPARE(plan.moves.at(0).second.y(), 90.0);
        QCOMPARE(plan.listHeight, 150.0);
    }

    void storedTitles_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("expectedDamaged");
        const QString b = QStringLiteral("B");
        QTest::newRow("nothing stored") << QVariant() << QStringList{} << false;
        QTest::newRow("list of strings") << QVariant(QStringList{b, QStringLiteral("C")})
                                         << QStringList{b, QStringLiteral("C")} << false;
        QTest::newRow("one title read back as a string") << QVariant(b) << QStringList{b} << false;
        QTest::newRow("mixed list keeps its strings")
            << QVariant(QVariantList{b, QVariantMap{{b, 1}}, 7}) << QStringList{b} << true;
        QTest::newRow("a rectangle") << QVariant(QRect(1, 2, 3, 4)) << QStringList{} << true;
    }

    void storedTitles()
    {
        QFETCH(QVariant, stored);
        QFETCH(QStringList, expected);
        QFETCH(bool, expectedDamaged);
        bool damaged = !expectedDamaged;
        QCOMPARE(KQCollapsibleStacking::storedTitles(stored, &damaged), expected);
        QCOMPARE(damaged, expectedDamaged);
    }
};

QTEST_GUILESS_MAIN(TestCollapsibleStacking)
#include "tst_collapsiblestacking.moc"
