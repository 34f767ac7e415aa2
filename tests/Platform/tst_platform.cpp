#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QStandardPaths>
#include <QtCore/QTimer>
#include <QtGui/QAction>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>


class tst_Platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void pointInRect_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<bool>("inside");
        QTest::newRow("origin is inside") << QPointF(0, 0) << QRectF(0, 0, 10, 10) << true;
        QTest::newRow("max x is outside") << QPointF(10, 5) << QRectF(0, 0, 10, 10) << false;
        QTest::newRow("max y is outside") << QPointF(5, 10) << QRectF(0, 0, 10, 10) << false;
        QTest::newRow("before min") << QPointF(-0.001, 5) << QRectF(0, 0, 10, 10) << false;
    }
    void pointInRect()
    {
        QFETCH(QPointF, point);
        QFETCH(QRectF, rect);
        QFETCH(bool, inside);
        QCOMPARE(kq_pointInRect(point, rect), inside);
    }

    void rectPairs_data()
    {
        QTest::addColumn<QRectF>("a");
        QTest::addColumn<QRectF>("b");
        QTest::addColumn<QRectF>("common");
        QTest::addColumn<QRectF>("united");
        const QRectF none(0, 0, 0, 0);
        QTest::newRow("overlap") << QRectF(0, 0, 10, 10) << QRectF(5, 5, 10, 10) << QRectF(5, 5, 5, 5) << QRectF(0, 0, 15, 15);
        QTest::newRow("touching edges") << QRectF(0, 0, 10, 10) << QRectF(10, 0, 5, 5) << none << QRectF(0, 0, 15, 10);
        QTest::newRow("apart") << QRectF(0, 0, 1, 1) << QRectF(4, 5, 1, 1) << none << QRectF(0, 0, 5, 6);
        QTest::newRow("contained") << QRectF(0, 0, 10, 10) << QRectF(2, 3, 4, 5) << QRectF(2, 3, 4, 5) << QRectF(0, 0, 10, 10);
        QTest::newRow("zero height inside") << QRectF(0, 0, 10, 10) << QRectF(2, 5, 4, 0) << none << QRectF(0, 0, 10, 10);
        QTest::newRow("zero width far away") << QRectF(1, 1, 2, 2) << QRectF(-50, -50, 0, 9) << none << QRectF(1, 1, 2, 2);
        QTest::newRow("both empty") << QRectF(3, 3, 0, 0) << QRectF(4, 4, -1, 2) << none << none;
    }
    void rectPairs()
    {
        QFETCH(QRectF, a);
        QFETCH(QRectF, b);
        QFETCH(QRectF, common);
        QFETCH(QRectF, united);
        for (const auto &[first, second] : {std::pair(a, b), std::pair(b, a)}) {
            QVERIFY(kq_equalRects(kq_intersectionRect(first, second), common));
            QVERIFY(kq_equalRects(kq_unionRect(first, second), united));
            QCOMPARE(kq_intersectsRect(first, second), !kq_isEmptyRect(common));
        }
    }

    void offsetAndInset()
    {
        QVERIFY(kq_equalRects(kq_offsetRect(QRectF(10, 20, 30, 40), 2, 3), QRectF(12, 23, 30, 40)));
        QVERIFY(kq_equalRects(kq_insetRect(QRectF(10, 20, 30, 40), 2, -3), QRectF(12, 17, 26, 46))); // negative grows
    }

    void screenSpace_data()
    {
        // Against the 1000 x 700 primary of tests/offscreen-screens.json.
        QTest::addColumn<QRectF>("global");
        QTest::addColumn<QRectF>("yUp");
        QTest::newRow("top-left window") << QRectF(0, 0, 200, 100) << QRectF(0, 600, 200, 100);
        QTest::newRow("on the second screen") << QRectF(1100, 50, 300, 200) << QRectF(1100, 450, 300, 200);
        QTest::newRow("above the primary") << QRectF(10, -100, 10, 50) << QRectF(10, 750, 10, 50);
    }
    void screenSpace()
    {
        QFETCH(QRectF, global);
        QFETCH(QRectF, yUp);
        QVERIFY(kq_equalRects(KQScreenSpace::fromGlobal(global), yUp));
        QVERIFY(kq_equalRects(KQScreenSpace::toGlobal(yUp), global));
        QCOMPARE(KQScreenSpace::fromGlobal(global.topLeft()), QPointF(yUp.x(), yUp.y() + yUp.height()));
        const QRectF elsewhere(0, 20, 500, 300);
        QVERIFY(kq_equalRects(KQScreenSpace::fromGlobal(QRectF(0, 20, 10, 10), elsewhere), QRectF(0, 290, 10, 10)));
        // The 600-high second screen shares the primary's top edge: 100 up in y-up space.
        const QList<KQScreenSpace::Screen> screens = KQScreenSpace::screens();
        QCOMPARE(screens.size(), 2);
        QVERIFY(kq_equalRects(screens[0].frame, QRectF(0, 0, 1000, 700)));
        QVERIFY(kq_equalRects(screens[1].frame, QRectF(1000, 100, 800, 600)));
    }

    void responderChain()
    {
        QWidget window;
        auto *edit = new QLineEdit(new QWidget(&window));
        auto delegate = std::make_unique<QTimer>();
        QAction controller;
        kq_setWindowDelegate(edit, delegate.get()); // attaches to the window
        kq_setWindowController(&window, &controller);
        QCOMPARE(kq_responderChain(edit),
                 (QList<QObject *>{edit, edit->parent(), &window, delegate.get(), &controller, qApp}));
        QCOMPARE(kq_targetForMethod("start", edit), delegate.get());
        QCOMPARE(kq_targetForMethod("trigger", edit), &controller);
        QCOMPARE(kq_targetForMethod("noSuchMethod", edit), nullptr);
        QVERIFY(!kq_respondsToMethod(delegate.get(), "star"));
        QVERIFY(!kq_respondsToMethod(nullptr, "deleteLater"));
        delegate.reset(); // held weakly
        QCOMPARE(kq_windowDelegate(&window), nullptr);
        kq_setWindowDelegate(nullptr, nullptr); // harmless
    }

    void settingsAreIsolated()
    {
        const QString testLocation = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        QVERIFY2(KQSettings::userDefaults()->fileName().startsWith(testLocation + QLatin1String("/")), qPrintable(testLocation));
        QVERIFY(testLocation.contains(QLatin1String(".qttest")));
        KQSettings::userDefaults()->setValue(QStringLiteral("QN.example"), 3);
        QVERIFY(KQSettings::userDefaults()->contains(QStringLiteral("QN.example")));
        KQSettings::enableTestMode(); // clears
        QVERIFY(!KQSettings::userDefaults()->contains(QStringLiteral("QN.example")));
    }
};

QTEST_MAIN(tst_Platform)
#include "tst_platform.moc"
