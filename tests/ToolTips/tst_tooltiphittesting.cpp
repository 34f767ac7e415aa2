// Finding the widget under a point: by frames, front-most first, hidden
// children included, no backtracking, tool bars after the content, and only
// the application's own windows.
#include "AnsweringWidget.h"
#include "ToolTipHitTesting_ZL_p.h"

#include <TarnCommon/KQSettings.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QToolBar>

#include <memory>

class TestToolTipHitTesting : public QObject
{
    Q_OBJECT

    // A 400 x 300 window at (100, 100) with:
    //   back   (answers)      10,10 200x100
    //   front  (answers)      60,60 200x100, later sibling, overlapping back
    //   labelled (answers)    10,180 150x100 with a label at 0,0 50x50
    //   hiding (answers)      200,180 150x100 with a hidden child at 0,0 50x50
    //   cover  (does not)     280,10 100x100 over answering "under" (earlier sibling)
    std::unique_ptr<QWidget> window;
    AnsweringWidget *back = nullptr;
    AnsweringWidget *front = nullptr;
    AnsweringWidget *labelled = nullptr;
    AnsweringWidget *hiding = nullptr;
    AnsweringWidget *under = nullptr;

    QVariant at(QPointF global, bool *wrap = nullptr)
    {
        bool localWrap = true;
        QWidget *w = window.get();
        return ToolTipAtScreenPoint(wrap ? wrap : &localWrap, global, [w](QPointF) { return w; });
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void init()
    {
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 400, 300);
        under = new AnsweringWidget(QStringLiteral("under"), window.get());
        under->setGeometry(280, 10, 100, 100);
        back = new AnsweringWidget(QStringLiteral("back"), window.get());
        back->setGeometry(10, 10, 200, 100);
        front = new AnsweringWidget(QStringLiteral("front"), window.get());
        front->setGeometry(60, 60, 200, 100);
        labelled = new AnsweringWidget(QStringLiteral("labelled"), window.get());
        labelled->setGeometry(10, 180, 150, 100);
        (new QLabel(QStringLiteral("label"), labelled))->setGeometry(0, 0, 50, 50);
        hiding = new AnsweringWidget(QStringLiteral("hiding"), window.get());
        hiding->setGeometry(200, 180, 150, 100);
        auto *hidden = new QWidget(hiding);
        hidden->setGeometry(0, 0, 50, 50);
        hidden->hide();
        auto *cover = new QWidget(window.get());
        cover->setGeometry(280, 10, 100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() { window.reset(); }

    // Window coordinates = global - (100, 100).
    void answers_data()
    {
        QTest::addColumn<QPointF>("global");
        QTest::addColumn<QString>("tooltip"); // empty: no tooltip
        QTest::newRow("back alone") << QPointF(120, 120) << QStringLiteral("back 10,10");
        QTest::newRow("overlap: later sibling wins") << QPointF(170, 170) << QStringLiteral("front 10,10");
        QTest::newRow("back's top-left corner, inclusive") << QPointF(110, 110) << QStringLiteral("back 0,0");
        QTest::newRow("right edge of back, exclusive") << QPointF(310, 130) << QString();
        QTest::newRow("just inside back's right edge") << QPointF(309.5, 130) << QStringLiteral("back 199.5,20");
        QTest::newRow("label covers the point") << QPointF(120, 290) << QString();
        QTest::newRow("beside the label") << QPointF(200, 330) << QStringLiteral("labelled 90,50");
        QTest::newRow("hidden child covers the point") << QPointF(310, 290) << QString();
        QTest::newRow("beside the hidden child") << QPointF(400, 330) << QStringLiteral("hiding 100,50");
        QTest::newRow("no backtracking past a cover") << QPointF(390, 120) << QString();
        QTest::newRow("window background") << QPointF(480, 120) << QString();
        QTest::newRow("fractional point") << QPointF(120.5, 120.25) << QStringLiteral("back 10.5,10.25");
    }
    void answers()
    {
        QFETCH(QPointF, global);
        QFETCH(QString, tooltip);
        const QVariant answer = at(global);
        if (tooltip.isEmpty())
            QVERIFY2(!answer.isValid(), qPrintable(answer.toString()));
        else
            QCOMPARE(answer.toString(), tooltip);
    }

    void onlyTheDeepestIsAsked()
    {
        QVERIFY(!at(QPointF(120, 290)).isValid());
        QVERIFY(!at(QPointF(310, 290)).isValid());
        QVERIFY(!at(QPointF(390, 120)).isValid());
        QCOMPARE(labelled->asked, 0);
        QCOMPARE(hiding->asked, 0);
        QCOMPARE(under->asked, 0);
    }

    void wrapFlagGoesToTheWidget()
    {
        auto *noWrap = new AnsweringWidget(QStringLiteral("nowrap"), window.get(), false);
        noWrap->setGeometry(0, 0, 5, 5);
        bool wrap = true;
        QVERIFY(at(QPointF(101, 101), &wrap).isValid());
        QVERIFY(!wrap);
    }

    void outsideTheContentIsNothing_data()
    {
        QTest::addColumn<QPointF>("global");
        QTest::newRow("title area above the window") << QPointF(200, 90);
        QTest::newRow("left of the window") << QPointF(95, 200);
        QTest::newRow("bottom edge, exclusive") << QPointF(200, 400);
    }
    void outsideTheContentIsNothing()
    {
        QFETCH(QPointF, global);
        QVERIFY(!at(global).isValid());
    }

    // The window system says whose window is at the point.
    void otherApplicationOrDesktopIsNothing()
    {
        bool wrap = true;
        const QVariant covered = ToolTipAtScreenPoint(&wrap, QPointF(120, 120), [](QPointF) { return nullptr; });
        QVERIFY(!covered.isValid());
        QCOMPARE(back->asked, 0);
        // Nothing of ours at all (the desktop), with the real lookup.
        QVERIFY(!ToolTipAtScreenPoint(&wrap, QPointF(900, 650)).isValid());
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(900, 650)), nullptr);
    }

    void realLookupFindsOurWindow()
    {
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(120, 120)), window.get());
        bool wrap = true;
        QCOMPARE(ToolTipAtScreenPoint(&wrap, QPointF(120, 120)).toString(), QStringLiteral("back 10,10"));
    }

    void viewWalk()
    {
        QCOMPARE(GetViewAtPointInView(window.get(), QPointF(-1, 5)), nullptr);
        QCOMPARE(GetViewAtPointInView(window.get(), QPointF(400, 5)), nullptr);
        QCOMPARE(GetViewAtPointInView(window.get(), QPointF(5, 5)), window.get());
        QCOMPARE(GetViewAtPointInView(front, QPointF(5, 5)), front);
        QCOMPARE(GetViewAtPointInView(nullptr, QPointF(5, 5)), nullptr);
        QCOMPARE(GetViewAtPointInWindow(nullptr, QPointF(5, 5)), nullptr);
        QCOMPARE(GetViewAtPointInToolbar(nullptr, QPointF(5, 5)), nullptr);
    }

    void childWindowsAreNotPartOfTheWalk()
    {
        auto *dialog = new QWidget(window.get(), Qt::Dialog);
        dialog->setGeometry(0, 0, 400, 300);
        QCOMPARE(GetViewAtPointInView(window.get(), QPointF(20, 20)), back);
    }

    void toolBarItemsAfterTheContent()
    {
        QMainWindow main;
        auto *central = new AnsweringWidget(QStringLiteral("central"));
        main.setCentralWidget(central);
        auto *toolBar = main.addToolBar(QStringLiteral("Tools"));
        toolBar->setMovable(false);
        toolBar->addAction(QStringLiteral("Plain"));
        auto *swatch = new AnsweringWidget(QStringLiteral("swatch"));
        swatch->setFixedSize(40, 20);
        QAction *swatchAction = toolBar->addWidget(swatch);
        auto *hiddenItem = new AnsweringWidget(QStringLiteral("gone"));
        hiddenItem->setFixedSize(40, 20);
        toolBar->addWidget(hiddenItem)->setVisible(false);
        main.setGeometry(100, 100, 400, 300);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        QVERIFY(swatchAction->isVisible());

        const QPoint swatchInWindow = swatch->mapTo(&main, QPoint(3, 4));
        QVERIFY(!contentHolds(central, &main, swatchInWindow));
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(swatchInWindow)), swatch);
        QCOMPARE(GetViewAtPointInToolbar(&main, QPointF(swatchInWindow)), swatch);

        bool wrap = true;
        const auto finder = [&main](QPointF) -> QWidget * { return &main; };
        QCOMPARE(ToolTipAtScreenPoint(&wrap, QPointF(main.mapToGlobal(swatchInWindow)), finder).toString(),
                 QStringLiteral("swatch 3,4"));
        // The content comes first.
        const QPoint inCentral = central->mapTo(&main, QPoint(7, 8));
        QCOMPARE(ToolTipAtScreenPoint(&wrap, QPointF(main.mapToGlobal(inCentral)), finder).toString(),
                 QStringLiteral("central 7,8"));
        // A plain tool button does not answer.
        QWidget *button = toolBar->widgetForAction(toolBar->actions().first());
        const QPoint onButton = button->mapTo(&main, QPoint(2, 2));
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(onButton)), button);
        QVERIFY(!ToolTipAtScreenPoint(&wrap, QPointF(main.mapToGlobal(onButton)), finder).isValid());
    }

private:
    static bool contentHolds(QWidget *content, QWidget *window, QPoint windowPoint)
    {
        return QRect(content->mapTo(window, QPoint(0, 0)), content->size()).contains(windowPoint);
    }
};

QTEST_MAIN(TestToolTipHitTesting)
#include "tst_tooltiphittesting.moc"
