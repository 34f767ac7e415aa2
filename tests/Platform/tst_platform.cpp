#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QTimer>
#include <QtGui/QAction>
#include <QtTest/QtTest>

class tst_Platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        KQSettings::enableTestMode(); // moves the settings file into the test's own place
        QVERIFY(KQSettings::userDefaults()->fileName().contains(QLatin1String(".qttest/")));
    }

    void singleRect()
    {
        const QRectF r(10, 20, 30, 40);
        QVERIFY(kq_pointInRect(QPointF(10, 20), r));
        QVERIFY(!kq_pointInRect(QPointF(40, 30), r)); // the far edges are outside
        QVERIFY(kq_equalRects(kq_offsetRect(r, 2, 3), QRectF(12, 23, 30, 40)));
        QVERIFY(kq_equalRects(kq_insetRect(r, 2, -3), QRectF(12, 17, 26, 46))); // negative grows
    }

    void rectPairs_data()
    {
        QTest::addColumn<QRectF>("a");
        QTest::addColumn<QRectF>("b");
        QTest::addColumn<QRectF>("common");
        QTest::addColumn<QRectF>("united");
        QTest::newRow("overlap") << QRectF(0, 0, 10, 10) << QRectF(5, 5, 10, 10) << QRectF(5, 5, 5, 5) << QRectF(0, 0, 15, 15);
        QTest::newRow("touching edges") << QRectF(0, 0, 10, 10) << QRectF(10, 0, 5, 5) << QRectF() << QRectF(0, 0, 15, 10);
        QTest::newRow("zero height inside") << QRectF(0, 0, 10, 10) << QRectF(2, 5, 4, 0) << QRectF() << QRectF(0, 0, 10, 10);
        QTest::newRow("both empty") << QRectF(3, 3, 0, 0) << QRectF(4, 4, -1, 2) << QRectF() << QRectF();
    }
    void rectPairs()
    {
        QFETCH(QRectF, a);
        QFETCH(QRectF, b);
        QFETCH(QRectF, common);
        QFETCH(QRectF, united);
        QVERIFY(kq_equalRects(kq_intersectionRect(a, b), common));
        QVERIFY(kq_equalRects(kq_unionRect(a, b), united));
    }

    void screenSpace()
    {
        // Against tests/offscreen-screens.json: a 1000 x 700 primary; y grows upwards.
        const QRectF global(1100, 50, 300, 200);
        QVERIFY(kq_equalRects(KQScreenSpace::fromGlobal(global), QRectF(1100, 450, 300, 200)));
        QCOMPARE(KQScreenSpace::fromGlobal(global.topLeft()), QPointF(1100, 650));
        // The 600-high second screen shares the primary's top edge: 100 up in y-up space.
        const QList<KQScreenSpace::Screen> screens = KQScreenSpace::screens();
        QCOMPARE(screens.size(), 2);
        QVERIFY(kq_equalRects(screens[1].frame, QRectF(1000, 100, 800, 600)));
    }

    void responderChain()
    {
        QWidget window;
        auto *view = new QWidget(new QWidget(&window));
        auto delegate = std::make_unique<QTimer>();
        QAction controller;
        kq_setWindowDelegate(view, delegate.get()); // attaches to the window
        kq_setWindowController(&window, &controller);
        QCOMPARE(kq_responderChain(view),
                 (QList<QObject *>{view, view->parent(), &window, delegate.get(), &controller, qApp}));
        QCOMPARE(kq_targetForMethod("start", view), delegate.get());
        QCOMPARE(kq_targetForMethod("noSuchMethod", view), nullptr);
        delegate.reset(); // held weakly
        QCOMPARE(kq_windowDelegate(&window), nullptr);
        kq_setWindowDelegate(nullptr, nullptr); // harmless
    }
};

QTEST_MAIN(tst_Platform)
#include "tst_platform.moc"
