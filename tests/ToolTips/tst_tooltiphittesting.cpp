// Finding the widget under a point: by frames, front-most first, hidden
// children included, no backtracking, tool bars after the content, and only
// the application's own windows.
#include "AnsweringWidget.h"
#include "ToolTipHitTesting_ZL_p.h"

#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipHitTesting_ZL.h>

#include <QtTest/QTest>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>

#include <memory>

using namespace KQToolTipRules;

class TestToolTipHitTesting : public QObject
{
    Q_OBJECT

    // A 400 x 300 window at (100, 100); answering widgets unless said:
    //   under 280,10 100x100, covered by a plain widget at the same place
    //   back 10,10 200x100 and front 60,60 200x100 (later: in front)
    //   labelled 10,180 150x100 with a label at 0,0 50x50
    //   hiding 200,180 150x100 with a hidden child at 0,0 50x50
    std::unique_ptr<QWidget> window;
    QList<AnsweringWidget *> answering;

    AnsweringWidget *add(const char *name, QRect frame)
    {
        auto *w = new AnsweringWidget(QString::fromLatin1(name), window.get());
        w->setGeometry(frame);
        answering.append(w);
        return w;
    }

    QVariant at(QPointF global)
    {
        bool wrap = true;
        QWidget *w = window.get();
        return ToolTipAtScreenPoint(&wrap, global, [w](QPointF) { return w; });
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void init()
    {
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 400, 300);
        answering.clear();
        add("under", QRect(280, 10, 100, 100));
        add("back", QRect(10, 10, 200, 100));
        add("front", QRect(60, 60, 200, 100));
        (new QLabel(QStringLiteral("label"), add("labelled", QRect(10, 180, 150, 100))))->setGeometry(0, 0, 50, 50);
        auto *hidden = new QWidget(add("hiding", QRect(200, 180, 150, 100)));
        hidden->setGeometry(0, 0, 50, 50);
        hidden->hide();
        (new QWidget(window.get()))->setGeometry(280, 10, 100, 100);
        (new QWidget(window.get(), Qt::Dialog))->setGeometry(0, 0, 400, 300); // its own window
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() { window.reset(); }

    // Window coordinates = global - (100, 100).
    void answers_data()
    {
        QTest::addColumn<QPointF>("global");
        QTest::addColumn<QString>("tooltip"); // empty: none, and nobody asked
        QTest::newRow("back alone") << QPointF(120, 120) << QStringLiteral("back 10,10");
        QTest::newRow("overlap: later sibling wins") << QPointF(170, 170) << QStringLiteral("front 10,10");
        QTest::newRow("top-left corner is inside") << QPointF(110, 110) << QStringLiteral("back 0,0");
        QTest::newRow("just inside the right edge") << QPointF(309.5, 130) << QStringLiteral("back 199.5,20");
        QTest::newRow("right edge is outside") << QPointF(310, 130) << QString();
        QTest::newRow("a label covers the point") << QPointF(120, 290) << QString();
        QTest::newRow("beside the label") << QPointF(200, 330) << QStringLiteral("labelled 90,50");
        QTest::newRow("a hidden child covers the point") << QPointF(310, 290) << QString();
        QTest::newRow("beside the hidden child") << QPointF(400, 330) << QStringLiteral("hiding 100,50");
        QTest::newRow("no backtracking past a cover") << QPointF(390, 120) << QString();
        QTest::newRow("title area above the window") << QPointF(200, 90) << QString();
        QTest::newRow("bottom edge is outside") << QPointF(200, 400) << QString();
    }
    void answers()
    {
        QFETCH(QPointF, global);
        QFETCH(QString, tooltip);
        const QVariant answer = at(global);
        QCOMPARE(answer.toString(), tooltip);
        int asked = 0;
        for (const AnsweringWidget *w : std::as_const(answering))
            asked += w->asked;
        QCOMPARE(asked, tooltip.isEmpty() ? 0 : 1); // only the deepest widget is asked
    }

    void wrapFlagGoesToTheWidget()
    {
        auto *noWrap = new AnsweringWidget(QStringLiteral("nowrap"), window.get(), false);
        noWrap->setGeometry(0, 0, 5, 5);
        bool wrap = true;
        QVERIFY(ToolTipAtScreenPoint(&wrap, QPointF(101, 101)).isValid());
        QVERIFY(!wrap);
    }

    // Whose window is at the point is the window system's answer.
    void otherApplicationOrDesktop()
    {
        bool wrap = true;
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(120, 120)), window.get());
        QVERIFY(!ToolTipAtScreenPoint(&wrap, QPointF(120, 120), [](QPointF) { return nullptr; }).isValid());
        QCOMPARE(answering[1]->asked, 0);
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(900, 650)), nullptr);
        QVERIFY(!ToolTipAtScreenPoint(&wrap, QPointF(900, 650)).isValid());
    }

    void toolBarItemsAfterTheContent()
    {
        QMainWindow main;
        main.setCentralWidget(new AnsweringWidget(QStringLiteral("central")));
        auto *toolBar = main.addToolBar(QStringLiteral("Tools"));
        toolBar->addAction(QStringLiteral("Plain"));
        auto *gone = new AnsweringWidget(QStringLiteral("gone"));
        toolBar->addWidget(gone)->setVisible(false);
        auto *swatch = new AnsweringWidget(QStringLiteral("swatch"));
        swatch->setFixedSize(40, 20);
        toolBar->addWidget(swatch);
        auto *dock = new QDockWidget(QStringLiteral("Dock"), &main);
        auto *docked = new AnsweringWidget(QStringLiteral("docked"));
        docked->setMinimumSize(60, 60);
        dock->setWidget(docked);
        main.addDockWidget(Qt::LeftDockWidgetArea, dock);
        main.statusBar()->showMessage(QStringLiteral("Ready"));
        main.setGeometry(100, 100, 400, 300);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));

        bool wrap = true;
        const auto answerAt = [&](QWidget *w, QPoint p) {
            return ToolTipAtScreenPoint(&wrap, QPointF(w->mapToGlobal(p)), [&main](QPointF) { return &main; }).toString();
        };
        QCOMPARE(answerAt(swatch, QPoint(3, 4)), QStringLiteral("swatch 3,4"));
        QCOMPARE(answerAt(main.centralWidget(), QPoint(7, 8)), QStringLiteral("central 7,8"));
        // Docks and status bar are content too.
        QCOMPARE(answerAt(docked, QPoint(5, 6)), QStringLiteral("docked 5,6"));
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(main.statusBar()->mapTo(&main, main.statusBar()->rect().center()))),
                 main.statusBar());
        // The tool bar's own area, between items, is neither content nor an item.
        const QPoint between = toolBar->mapTo(&main, QPoint(toolBar->width() - 2, toolBar->height() / 2));
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(between)), nullptr);
        QWidget *button = toolBar->widgetForAction(toolBar->actions().first());
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(button->mapTo(&main, QPoint(2, 2)))), button);
        QCOMPARE(answerAt(button, QPoint(2, 2)), QString()); // a plain tool button does not answer
        QCOMPARE(gone->asked, 0);
        QCOMPARE(GetViewAtPointInToolbar(nullptr, QPointF(5, 5)), nullptr);
    }
};

QTEST_MAIN(TestToolTipHitTesting)
#include "tst_tooltiphittesting.moc"
