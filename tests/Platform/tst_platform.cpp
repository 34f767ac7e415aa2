#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include <memory>

namespace {

// Answers one method by name, as a window delegate would.
class Delegate : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE bool windowShouldZoom(int) { return true; }
public Q_SLOTS:
    void inspectorFocusOwner() {}
};

class Controller : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE void showHelp() {}
};

} // namespace

class tst_Platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void pointInRect_data();
    void pointInRect();
    void intersection_data();
    void intersection();
    void unionIgnoresEmptyRects_data();
    void unionIgnoresEmptyRects();
    void offsetAndInset_data();
    void offsetAndInset();

    void screenSpaceRoundTrip_data();
    void screenSpaceRoundTrip();
    void screensInScreenSpace();

    void delegateIsWeak();
    void responderChainOrder();
    void methodsByName();

    void settingsAreIsolated();
};

void tst_Platform::initTestCase()
{
    KQSettings::enableTestMode();
}

void tst_Platform::pointInRect_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<bool>("inside");
    const QRectF r(0, 0, 10, 10);
    QTest::newRow("origin is inside") << QPointF(0, 0) << r << true;
    QTest::newRow("max x is outside") << QPointF(10, 5) << r << false;
    QTest::newRow("max y is outside") << QPointF(5, 10) << r << false;
    QTest::newRow("just below max") << QPointF(9.999, 9.999) << r << true;
    QTest::newRow("before min") << QPointF(-0.001, 5) << r << false;
    QTest::newRow("empty rect holds nothing") << QPointF(0, 0) << QRectF(0, 0, 0, 10) << false;
    QTest::newRow("negative size holds nothing") << QPointF(-5, 5) << QRectF(0, 0, -10, 10) << false;
}

void tst_Platform::pointInRect()
{
    QFETCH(QPointF, point);
    QFETCH(QRectF, rect);
    QFETCH(bool, inside);
    QCOMPARE(kq_pointInRect(point, rect), inside);
}

void tst_Platform::intersection_data()
{
    QTest::addColumn<QRectF>("a");
    QTest::addColumn<QRectF>("b");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("overlap") << QRectF(0, 0, 10, 10) << QRectF(5, 5, 10, 10) << QRectF(5, 5, 5, 5);
    QTest::newRow("touching edges: zero rect") << QRectF(0, 0, 10, 10) << QRectF(10, 0, 5, 5) << QRectF(0, 0, 0, 0);
    QTest::newRow("apart") << QRectF(0, 0, 1, 1) << QRectF(5, 5, 1, 1) << QRectF(0, 0, 0, 0);
    QTest::newRow("contained") << QRectF(0, 0, 10, 10) << QRectF(2, 3, 4, 5) << QRectF(2, 3, 4, 5);
    QTest::newRow("zero height inside: no overlap") << QRectF(0, 0, 10, 10) << QRectF(2, 5, 4, 0) << QRectF(0, 0, 0, 0);
}

void tst_Platform::intersection()
{
    QFETCH(QRectF, a);
    QFETCH(QRectF, b);
    QFETCH(QRectF, expected);
    QVERIFY(kq_equalRects(kq_intersectionRect(a, b), expected));
    QVERIFY(kq_equalRects(kq_intersectionRect(b, a), expected));
    QCOMPARE(kq_intersectsRect(a, b), !kq_isEmptyRect(expected));
}

void tst_Platform::unionIgnoresEmptyRects_data()
{
    QTest::addColumn<QRectF>("a");
    QTest::addColumn<QRectF>("b");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("two rects") << QRectF(0, 0, 1, 1) << QRectF(4, 5, 1, 1) << QRectF(0, 0, 5, 6);
    QTest::newRow("empty far away is ignored") << QRectF(100, 100, 0, 0) << QRectF(1, 1, 2, 2) << QRectF(1, 1, 2, 2);
    QTest::newRow("zero-width is empty") << QRectF(1, 1, 2, 2) << QRectF(-50, -50, 0, 9) << QRectF(1, 1, 2, 2);
    QTest::newRow("both empty: zero rect") << QRectF(3, 3, 0, 0) << QRectF(4, 4, -1, 2) << QRectF(0, 0, 0, 0);
}

void tst_Platform::unionIgnoresEmptyRects()
{
    QFETCH(QRectF, a);
    QFETCH(QRectF, b);
    QFETCH(QRectF, expected);
    QVERIFY(kq_equalRects(kq_unionRect(a, b), expected));
    QVERIFY(kq_equalRects(kq_unionRect(b, a), expected));
}

void tst_Platform::offsetAndInset_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QPointF>("delta");
    QTest::addColumn<QRectF>("offset");
    QTest::addColumn<QRectF>("inset");
    QTest::newRow("shrunk") << QRectF(10, 20, 30, 40) << QPointF(2, 3) << QRectF(12, 23, 30, 40) << QRectF(12, 23, 26, 34);
    QTest::newRow("negative grows") << QRectF(0, 0, 4, 4) << QPointF(-1, -2) << QRectF(-1, -2, 4, 4) << QRectF(-1, -2, 6, 8);
}

void tst_Platform::offsetAndInset()
{
    QFETCH(QRectF, rect);
    QFETCH(QPointF, delta);
    QFETCH(QRectF, offset);
    QFETCH(QRectF, inset);
    QVERIFY(kq_equalRects(kq_offsetRect(rect, delta.x(), delta.y()), offset));
    QVERIFY(kq_equalRects(kq_insetRect(rect, delta.x(), delta.y()), inset));
}

void tst_Platform::screenSpaceRoundTrip_data()
{
    QTest::addColumn<QRectF>("global");
    QTest::addColumn<QRectF>("yUp");
    // Primary screen 1000 x 700 at the origin (tests/offscreen-screens.json).
    QTest::newRow("top-left window") << QRectF(0, 0, 200, 100) << QRectF(0, 600, 200, 100);
    QTest::newRow("bottom-left window") << QRectF(0, 600, 200, 100) << QRectF(0, 0, 200, 100);
    QTest::newRow("on the second screen") << QRectF(1100, 50, 300, 200) << QRectF(1100, 450, 300, 200);
    QTest::newRow("above the primary") << QRectF(10, -100, 10, 50) << QRectF(10, 750, 10, 50);
}

void tst_Platform::screenSpaceRoundTrip()
{
    QFETCH(QRectF, global);
    QFETCH(QRectF, yUp);
    QCOMPARE(KQScreenSpace::primaryScreenGeometry(), QRectF(0, 0, 1000, 700));
    QVERIFY(kq_equalRects(KQScreenSpace::fromGlobal(global), yUp));
    QVERIFY(kq_equalRects(KQScreenSpace::toGlobal(yUp), global));
    // Points: the top-left corner of the rectangle maps to its y-up top edge.
    const QPointF corner = KQScreenSpace::fromGlobal(global.topLeft());
    QCOMPARE(corner, QPointF(yUp.x(), yUp.y() + yUp.height()));
    QCOMPARE(KQScreenSpace::toGlobal(corner), global.topLeft());
    // Against an explicit primary geometry that is not at the origin.
    const QRectF primary(0, 20, 500, 300);
    QVERIFY(kq_equalRects(KQScreenSpace::fromGlobal(QRectF(0, 20, 10, 10), primary), QRectF(0, 290, 10, 10)));
}

void tst_Platform::screensInScreenSpace()
{
    const QList<KQScreenSpace::Screen> screens = KQScreenSpace::screens();
    QCOMPARE(screens.size(), 2);
    QVERIFY(kq_equalRects(screens[0].frame, QRectF(0, 0, 1000, 700)));
    // The 600-high second screen shares the primary's top edge, so in y-up
    // space it starts 100 above the primary's bottom.
    QVERIFY(kq_equalRects(screens[1].frame, QRectF(1000, 100, 800, 600)));
}

void tst_Platform::delegateIsWeak()
{
    QWidget window;
    auto *child = new QWidget(&window);
    auto delegate = std::make_unique<Delegate>();
    kq_setWindowDelegate(child, delegate.get()); // attaches to the window
    QCOMPARE(kq_windowDelegate(&window), delegate.get());
    QCOMPARE(kq_windowDelegate(child), delegate.get());
    QCOMPARE(kq_windowController(&window), nullptr);
    delegate.reset();
    QCOMPARE(kq_windowDelegate(&window), nullptr);
    QCOMPARE(kq_windowDelegate(nullptr), nullptr);
    kq_setWindowDelegate(nullptr, nullptr); // harmless
}

void tst_Platform::responderChainOrder()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *group = new QWidget(&window);
    layout->addWidget(group);
    auto *edit = new QLineEdit(group);
    Delegate delegate;
    Controller controller;
    kq_setWindowDelegate(&window, &delegate);
    kq_setWindowController(&window, &controller);

    const QList<QObject *> chain = kq_responderChain(edit);
    const QList<QObject *> expected{edit, group, &window, &delegate, &controller, qApp};
    QCOMPARE(chain, expected);

    QCOMPARE(kq_targetForMethod("inspectorFocusOwner", edit), &delegate);
    QCOMPARE(kq_targetForMethod("showHelp", edit), &controller);
    QCOMPARE(kq_targetForMethod("selectAll", edit), edit); // a QLineEdit slot
    QCOMPARE(kq_targetForMethod("quit", edit), qApp);
    QCOMPARE(kq_targetForMethod("noSuchMethod", edit), nullptr);
}

void tst_Platform::methodsByName()
{
    Delegate delegate;
    QVERIFY(kq_respondsToMethod(&delegate, "windowShouldZoom"));
    QVERIFY(kq_respondsToMethod(&delegate, "deleteLater")); // inherited slot
    QVERIFY(!kq_respondsToMethod(&delegate, "windowShouldZoo"));
    QVERIFY(!kq_respondsToMethod(nullptr, "deleteLater"));
    QVERIFY(!kq_respondsToMethod(&delegate, ""));
    const int index = kq_indexOfMethodNamed(&delegate, "windowShouldZoom");
    QVERIFY(index >= 0);
    QCOMPARE(delegate.metaObject()->method(index).name(), QByteArray("windowShouldZoom"));
}

void tst_Platform::settingsAreIsolated()
{
    const QString testLocation = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QVERIFY2(testLocation.contains(QLatin1String(".qttest")), qPrintable(testLocation));
    {
        auto settings = KQSettings::userDefaults();
        QVERIFY2(settings->fileName().startsWith(testLocation), qPrintable(settings->fileName()));
        settings->setValue(QStringLiteral("QN.example"), 3);
    }
    QCOMPARE(KQSettings::userDefaults()->value(QStringLiteral("QN.example")).toInt(), 3);
    KQSettings::enableTestMode(); // clears
    QVERIFY(!KQSettings::userDefaults()->contains(QStringLiteral("QN.example")));
}

QTEST_MAIN(tst_Platform)
#include "tst_platform.moc"
