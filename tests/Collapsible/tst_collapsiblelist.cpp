#include "KQViewAnimation_p.h"
#include "RecordingDelegates.h"
#include "KQWidgetState_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <QtCore/QFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLayoutItem>
#include <QtWidgets/QScrollArea>

#include <memory>

namespace {

KQCollapsibleView *makeView(const QString &title, int contentHeight = 100, bool resizable = false,
                            bool collapsable = true)
{
    auto *content = new QWidget;
    content->resize(100, contentHeight);
    return new KQCollapsibleView(title, content, collapsable, resizable);
}

// A list of 100 x height holding fixed views titled A, B, C...
std::unique_ptr<KQCollapsibleListView> makeList(const QStringList &titles, int height = 400)
{
    auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 100, height));
    for (const QString &title : titles)
        list->addCollapsableView(makeView(title));
    return list;
}

QList<bool> collapsedStates(const KQCollapsibleListView &list)
{
    QList<bool> states;
    for (const KQCollapsibleView *view : list.collapsableViews())
        states.append(view->isCollapsed());
    return states;
}

QVariant storedValue(const QString &key)
{
    return KQSettings::userDefaults()->value(key);
}

void store(const QString &key, const QVariant &value)
{
    const auto settings = KQSettings::userDefaults();
    settings->setValue(key, value);
    settings->sync();
}

// How many slots listen to the application's exit (receivers() is protected).
struct ApplicationPeek : QCoreApplication
{
    static int exitHooks() { return (instance()->*(&ApplicationPeek::receivers))(SIGNAL(aboutToQuit())); }
};

const QStringList ABC{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};

} // namespace

class TestCollapsibleList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void init() { KQSettings::userDefaults()->clear(); }

    void stackingPassesWhatAViewCannotTakeToTheNext_data()
    {
        // A collapsed view of 18, a resizable one of 100 that a subclass caps
        // at 150, and an unlimited resizable one of 50, in a list of this
        // height (raised to the limits' minimum of 54 when below it).
        QTest::addColumn<int>("listHeight");
        QTest::addColumn<QList<int>>("expectedHeights");
        QTest::newRow("spare beyond the cap goes on") << 300 << QList<int>{18, 150, 132};
        QTest::newRow("spare within the cap stays") << 200 << QList<int>{18, 132, 50};
        QTest::newRow("shortfall from the first") << 120 << QList<int>{18, 52, 50};
        QTest::newRow("below the minimum") << 40 << QList<int>{18, 18, 18};
    }

    void stackingPassesWhatAViewCannotTakeToTheNext()
    {
        QFETCH(int, listHeight);
        QFETCH(QList<int>, expectedHeights);
        struct CappedView : KQCollapsibleView
        {
            using KQCollapsibleView::KQCollapsibleView;
            double maxHeight() const override { return std::min(KQCollapsibleView::maxHeight(), 150.0); }
        };
        auto *cappedContent = new QWidget;
        cappedContent->resize(100, 100);
        KQCollapsibleListView list;
        const QList<KQCollapsibleView *> views{makeView(QString()),
                                              new CappedView(QString(), cappedContent, true, true),
                                              makeView(QString(), 50, true)};
        for (KQCollapsibleView *view : views)
            list.addCollapsableView(view);
        views.at(0)->setCollapsed(true, false);
        views.at(1)->setFrame(QRect(0, 0, 100, 100));
        views.at(2)->setFrame(QRect(0, 0, 100, 50));
        QCOMPARE(views.at(1)->property("maxHeight").toDouble(), 150.0);

        list.setFrame(QRect(0, 0, 100, listHeight));
        int y = 0;
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(views.at(i)->geometry(), QRect(0, y, 100, expectedHeights.at(i)));
            QCOMPARE(views.at(i)->drawTopLine(), i > 0);
            y += expectedHeights.at(i);
        }
        QCOMPARE(list.height(), y);
    }

    void heightChangesOnlyWhenTheFrameIsSet_data()
    {
        // A list framed at 500 (holding fixed views A, B, C of 118 each, or
        // nothing), shown, then changed; it keeps its height until setFrame
        // asks for a smaller one.
        QTest::addColumn<bool>("withViews");
        QTest::addColumn<int>("change");
        QTest::addColumn<int>("expectedMinimum");
        QTest::addColumn<int>("expectedMaximum");
        QTest::newRow("empty, shown") << false << 0 << 0 << 0;
        QTest::newRow("fixed views, shown") << true << 0 << 354 << 354;
        QTest::newRow("fixed views, laid out again") << true << 1 << 354 << 354;
        QTest::newRow("a view turns resizable") << true << 2 << 254 << int(QWIDGETSIZE_MAX);
    }

    void heightChangesOnlyWhenTheFrameIsSet()
    {
        QFETCH(bool, withViews);
        QFETCH(int, change);
        QFETCH(int, expectedMinimum);
        QFETCH(int, expectedMaximum);
        QWidget window;
        const auto list = makeList(withViews ? ABC : QStringList{}, 354);
        list->setParent(&window);
        list->resize(100, 500);
        window.show();
        if (change == 1)
            list->layoutSubviews();
        else if (change == 2)
            list->collapsableViews().at(1)->setIsHeightResizable(true);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(list->height(), 500);

        // What a layout holding the list learns of its limits.
        const QWidgetItem item(list.get());
        QCOMPARE(item.minimumSize().height(), expectedMinimum);
        QCOMPARE(item.maximumSize().height(), expectedMaximum);

        list->setFrame(QRect(0, 0, 100, 10));
        QCOMPARE(list->height(), expectedMinimum);
    }

    void framesFollowWhileHidden_data()
    {
        QTest::addColumn<bool>("throughSetFrame");
        QTest::newRow("setFrame") << true;
        QTest::newRow("QWidget::resize") << false;
    }

    void framesFollowWhileHidden()
    {
        // Built, sized and restored before any window shows: A and C fixed,
        // B resizable (squeezed to its header while the views were added).
        QFETCH(bool, throughSetFrame);
        store(QStringLiteral("hidden"), QStringList{QStringLiteral("B")});
        KQCollapsibleListView list;
        list.addCollapsableView(makeView(QStringLiteral("A")));
        list.addCollapsableView(makeView(QStringLiteral("B"), 100, true));
        list.addCollapsableView(makeView(QStringLiteral("C")));
        KQCollapsibleView *b = list.collapsableViews().at(1);
        if (throughSetFrame) {
            list.setFrame(QRect(0, 0, 100, 500));
            QCOMPARE(b->height(), 264);
            QCOMPARE(b->contentView()->height(), 246);
        } else {
            list.resize(100, 500);
        }
        list.setAutosaveName(QStringLiteral("hidden"));
        QVERIFY(b->isCollapsed());
        QCOMPARE(b->height(), 18);
        QCOMPARE(list.collapsableViews().at(2)->y(), 136);
        QCOMPARE(list.height(), 254);

        b->setCollapsed(false, false);
        QCOMPARE(b->height(), 264);
        QCOMPARE(b->contentView()->geometry(), QRect(0, 18, 100, 246));
        QCOMPARE(list.collapsableViews().at(2)->y(), 382);
        QCOMPARE(list.height(), 500);
    }

    void layoutLeavesViewsAlone_data()
    {
        QTest::addColumn<bool>("allHidden");
        QTest::newRow("all views hidden") << true;
        QTest::newRow("zero width") << false;
    }

    void layoutLeavesViewsAlone()
    {
        QFETCH(bool, allHidden);
        const auto list = makeList(ABC);
        if (!allHidden)
            list->resize(0, list->height());
        const QRect odd(7, 7, 7, 7);
        for (KQCollapsibleView *view : list->collapsableViews()) {
            if (allHidden)
                list->setHiddenForCollapsableView(true, view);
            view->setGeometry(odd);
        }
        list->layoutSubviews();
        for (KQCollapsibleView *view : list->collapsableViews())
            QCOMPARE(view->geometry(), odd);
    }

    void hiddenViewIsSkippedAndFoundByContent()
    {
        const auto list = makeList(ABC);
        KQCollapsibleView *b = list->collapsableViews().at(1);
        list->setHiddenForCollapsableView(true, b);
        QCOMPARE(list->collapsableViews().at(2)->y(), 118);
        QCOMPARE(list->collapsableViewWithContentView(b->contentView()), b);
        list->setHiddenForCollapsableView(false, b);
        QCOMPARE(list->collapsableViews().at(2)->y(), 236);
    }

    void firstViewOfZeroSizeList_data()
    {
        QTest::addColumn<bool>("afterEarlierView");
        QTest::newRow("new list") << false;
        // The limits left by a former view must not clamp the next first one.
        QTest::newRow("after a removed view") << true;
    }

    void firstViewOfZeroSizeList()
    {
        QFETCH(bool, afterEarlierView);
        KQCollapsibleListView list;
        if (afterEarlierView) {
            list.addCollapsableView(makeView(QStringLiteral("Old")));
            delete list.collapsableViews().first();
            list.resize(0, 0);
        }
        auto *view = makeView(QStringLiteral("First"), 60, afterEarlierView);
        view->resize(230, view->height());
        list.addCollapsableView(view);
        QCOMPARE(list.size(), QSize(230, 78));
        QCOMPARE(view->parentWidget(), &list);
        list.addCollapsableView(view); // already held: ignored
        QCOMPARE(list.collapsableViews().size(), 1);
    }

    void loadSurvivesAViewDestroyedOnTheWay()
    {
        struct Destroyer : QObject, KQCollapsibleListViewDelegate
        {
            QPointer<KQCollapsibleView> victim;
            void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double, double,
                                                          KQViewAnimations &) override
            {
                delete victim.data();
            }
        } destroyer;
        store(QStringLiteral("victim"), QStringList{QStringLiteral("A"), QStringLiteral("C")});
        const auto list = makeList(ABC);
        destroyer.victim = list->collapsableViews().at(2);
        list->setDelegate(&destroyer);
        list->setAutosaveName(QStringLiteral("victim"));
        QCOMPARE(collapsedStates(*list), (QList<bool>{true, false}));
    }

    void contractFailures_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QByteArray>("expectedText");
        QTest::newRow("adding no view") << 0 << QByteArray("(collapsableView)");
        QTest::newRow("hiding no view") << 1 << QByteArray("(view && [_collapsableViews containsObject:view])");
        QTest::newRow("hiding a stranger") << 2 << QByteArray("(view && [_collapsableViews containsObject:view])");
        QTest::newRow("fitting an empty list of zero size") << 3 << QByteArray("([_collapsableViews count] > 0)");
    }

    void contractFailures()
    {
        QFETCH(int, operation);
        QFETCH(QByteArray, expectedText);
        KQCollapsibleListView list;
        const std::unique_ptr<KQCollapsibleView> stranger(makeView(QStringLiteral("S")));
        MessageCapture capture;
        switch (operation) {
        case 0: list.addCollapsableView(nullptr); break;
        case 1: list.setHiddenForCollapsableView(true, nullptr); break;
        case 2: list.setHiddenForCollapsableView(true, stranger.get()); break;
        case 3: list.resizeToFitSubviews(); break;
        }
        const QByteArray report = capture.text();
        QVERIFY2(report.contains(expectedText), report.constData());
        QVERIFY(list.collapsableViews().isEmpty());
        QCOMPARE(list.size(), QSize(0, 0));
        QVERIFY(!kq_isExplicitlyHidden(stranger.get()));
    }

    void animationHookCollapsingTheMiddleOfThree()
    {
        const auto list = makeList(ABC, 354);
        RecordingListDelegate listDelegate;
        list->setDelegate(&listDelegate);
        KQCollapsibleView *b = list->collapsableViews().at(1);
        KQCollapsibleView *c = list->collapsableViews().at(2);
        QSignalSpy blocked(list.get(), &KQCollapsibleListView::layoutBlockedChanged);

        b->setCollapsed(true, true);

        QCOMPARE(listDelegate.log, QStringList{QStringLiteral("list 354 -> 254")});
        auto *animation = qobject_cast<KQViewAnimation *>(b->currentAnimation());
        QVERIFY(animation);
        const KQViewAnimations &entries = animation->viewAnimations();
        QCOMPARE(entries.size(), 3);
        QCOMPARE(entries.at(0).target.data(), c);
        QCOMPARE(entries.at(0).endFrame, QRectF(0, 136, 100, 118));
        QCOMPARE(entries.at(1).target.data(), list.get());
        QCOMPARE(entries.at(1).endFrame, QRectF(0, 0, 100, 254));
        QCOMPARE(entries.at(2).target.data(), b);
        QCOMPARE(entries.at(2).endFrame, QRectF(0, 118, 100, 18));
        QCOMPARE(listDelegate.seen.size(), 2); // the list's entry was in before its delegate

        // Halfway: the list neither stacks nor clamps.
        QVERIFY(list->isLayoutBlocked());
        animation->setCurrentTime(animation->duration() / 2);
        QCOMPARE(c->y(), 186);
        QCOMPARE(list->height(), 304);
        c->move(0, 999);
        list->layoutSubviews();
        QCOMPARE(c->y(), 999);

        QCOMPARE(blocked.size(), 1);
        animation->setCurrentTime(animation->duration());
        QVERIFY(!list->isLayoutBlocked());
        QCOMPARE(blocked.size(), 2);
        QCOMPARE(blocked.at(1).at(0).toBool(), false);
        QCOMPARE(c->geometry(), QRect(0, 136, 100, 118));
        QCOMPARE(b->height(), 18);
        QCOMPARE(list->height(), 254);
        QCOMPARE(list->minimumSizeHint().height(), 254);
    }

    void save_data()
    {
        // Views A, B, C, an untitled one and a hidden H.
        QTest::addColumn<QList<bool>>("collapsed");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("second and third") << QList<bool>{false, true, true, false, false}
                                          << QStringList{QStringLiteral("B"), QStringLiteral("C")};
        QTest::newRow("none") << QList<bool>{false, false, false, false, false} << QStringList{};
        QTest::newRow("untitled skipped, hidden kept") << QList<bool>{false, false, false, true, true}
                                                       << QStringList{QStringLiteral("H")};
    }

    void save()
    {
        QFETCH(QList<bool>, collapsed);
        QFETCH(QStringList, expected);
        const auto list = makeList(ABC);
        list->addCollapsableView(makeView(QString()));
        list->addCollapsableView(makeView(QStringLiteral("H")));
        list->setHiddenForCollapsableView(true, list->collapsableViews().last());
        list->setAutosaveName(QStringLiteral("Lists/save"));
        for (int i = 0; i < collapsed.size(); ++i)
            list->collapsableViews().at(i)->setCollapsed(collapsed.at(i), false);
        list->saveToAutosaveName();
        QCOMPARE(storedValue(QStringLiteral("Lists/save")).toStringList(), expected);
    }

    void load_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QList<bool>>("expected");
        QTest::newRow("C only") << QVariant(QStringList{QStringLiteral("C")}) << QList<bool>{false, false, true};
        QTest::newRow("nothing stored expands all") << QVariant() << QList<bool>{false, false, false};
        QTest::newRow("unknown titles are ignored")
            << QVariant(QStringList{QStringLiteral("Z"), QStringLiteral("A")}) << QList<bool>{true, false, false};
    }

    void load()
    {
        QFETCH(QVariant, stored);
        QFETCH(QList<bool>, expected);
        if (stored.isValid())
            store(QStringLiteral("load"), stored);
        const auto list = makeList(ABC);
        list->collapsableViews().at(1)->setCollapsed(true, false);
        list->setAutosaveName(QStringLiteral("load"));
        QCOMPARE(collapsedStates(*list), expected);
        for (KQCollapsibleView *view : list->collapsableViews()) {
            QVERIFY(!view->isAnimating());
            QCOMPARE(view->height(), view->isCollapsed() ? 18 : 118);
        }
    }

    void sameNameTwiceLoadsOnce()
    {
        store(QStringLiteral("twice"), QStringList{QStringLiteral("A")});
        const auto list = makeList(ABC);
        list->setAutosaveName(QStringLiteral("twice"));
        KQCollapsibleView *a = list->collapsableViews().at(0);
        QVERIFY(a->isCollapsed());
        a->setCollapsed(false, false);
        list->setAutosaveName(QStringLiteral("twice"));
        QVERIFY(!a->isCollapsed());
        // A view added after the name was set keeps its own state.
        store(QStringLiteral("twice"), QStringList{QStringLiteral("D")});
        list->addCollapsableView(makeView(QStringLiteral("D")));
        QVERIFY(!list->collapsableViews().last()->isCollapsed());
    }

    void exitHookFollowsTheName()
    {
        const int before = ApplicationPeek::exitHooks();
        const auto list = makeList(ABC);
        list->setAutosaveName(QStringLiteral("exit"));
        QCOMPARE(ApplicationPeek::exitHooks(), before + 1);
        list->setAutosaveName(QStringLiteral("exit2")); // renaming keeps one hook
        QCOMPARE(ApplicationPeek::exitHooks(), before + 1);

        list->collapsableViews().at(2)->setCollapsed(true, false);
        QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection));
        QCOMPARE(storedValue(QStringLiteral("exit2")).toStringList(), QStringList{QStringLiteral("C")});

        list->setAutosaveName(QString());
        QCOMPARE(ApplicationPeek::exitHooks(), before);
        QCOMPARE(storedValue(QStringLiteral("exit2")).toStringList(), QStringList{QStringLiteral("C")});
    }

    void savedOnDestruction()
    {
        auto list = makeList(ABC);
        list->setAutosaveName(QStringLiteral("destroyed"));
        list->collapsableViews().at(0)->setCollapsed(true, false);
        list.reset();
        QCOMPARE(storedValue(QStringLiteral("destroyed")).toStringList(), QStringList{QStringLiteral("A")});
    }

    void garbageInTheSettingsFile()
    {
        store(QStringLiteral("garbage/other"), QStringList{QStringLiteral("B"), QStringLiteral("C")});
        const QString fileName = KQSettings::userDefaults()->fileName();
        {
            QFile file(fileName);
            QVERIFY(file.open(QIODevice::Append));
            file.write("[garbage]\nmine=@Variant(\\0\\0\\0\\x7f\\0\\xff\\xfe garbage\nbroken=@Rect(1 2\n");
        }
        const auto list = makeList(ABC);
        list->setAutosaveName(QStringLiteral("garbage/mine"));
        QCOMPARE(collapsedStates(*list), (QList<bool>{false, false, false}));
        const auto other = makeList(ABC);
        other->setAutosaveName(QStringLiteral("garbage/other"));
        QCOMPARE(collapsedStates(*other), (QList<bool>{false, true, true}));
    }

    void destroyedDuringAnimation_data()
    {
        QTest::addColumn<int>("victim");
        QTest::newRow("the animating view") << 0;
        QTest::newRow("a view moving along") << 1;
        QTest::newRow("the list's delegate") << 2;
        QTest::newRow("the list") << 3;
    }

    void destroyedDuringAnimation()
    {
        QFETCH(int, victim);
        auto list = makeList(ABC, 354);
        auto listDelegate = std::make_unique<RecordingListDelegate>();
        list->setDelegate(listDelegate.get());
        QPointer<KQCollapsibleView> a = list->collapsableViews().at(0);
        a->setCollapsed(true, true);
        QPointer<QVariantAnimation> animation = a->currentAnimation();
        QVERIFY(animation);
        animation->setCurrentTime(50);

        switch (victim) {
        case 0: delete a.data(); break;
        case 1: delete list->collapsableViews().at(1); break;
        case 2: listDelegate.reset(); break;
        case 3: list.reset(); break;
        }
        if (animation)
            animation->setCurrentTime(animation->duration());
        QVERIFY(!a || !a->isAnimating());
        if (list) {
            QVERIFY(!list->isLayoutBlocked());
            QCOMPARE(list->collapsableViews().size(), victim <= 1 ? 2 : 3);
            list->layoutSubviews(); // must not touch a destroyed view
        }
    }

    void widthChangedMidAnimationIsCaughtUp()
    {
        auto *list = makeList(ABC, 354).release();
        const std::unique_ptr<QScrollArea> area(ZLWrapVerticalScrollViewAroundView(list));
        area->resize(100, 500);
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        KQCollapsibleView *a = list->collapsableViews().at(0);
        a->setCollapsed(true, true);
        area->resize(160, 500);
        a->currentAnimation()->setCurrentTime(a->currentAnimation()->duration());
        QCOMPARE(list->width(), area->viewport()->width());
        for (const KQCollapsibleView *view : list->collapsableViews())
            QCOMPARE(view->width(), list->width());
    }

    void subclassesPlaceTheirOwnWidgets()
    {
        // A view keeping a badge in its bottom right corner, in a list
        // keeping a footer line along its bottom edge.
        struct BadgedView : KQCollapsibleView
        {
            explicit BadgedView(QWidget *content)
                : KQCollapsibleView(QStringLiteral("A"), content, true, true)
                , badge(new QWidget(this))
            {
            }
            void layoutSubviews() override
            {
                KQCollapsibleView::layoutSubviews();
                badge->setGeometry(width() - 18, height() - 18, 18, 18);
            }
            QWidget *const badge;
        };
        struct FooterList : KQCollapsibleListView
        {
            FooterList()
                : KQCollapsibleListView(QRect(0, 0, 100, 300))
                , footer(new QWidget(this))
            {
            }
            void layoutSubviews() override
            {
                KQCollapsibleListView::layoutSubviews();
                footer->setGeometry(0, height() - 2, width(), 2);
            }
            QWidget *const footer;
        };
        auto *content = new QWidget;
        content->resize(100, 100);
        auto *view = new BadgedView(content);
        FooterList list;
        list.addCollapsableView(view);

        list.setFrame(QRect(0, 0, 160, 300));
        QCOMPARE(view->badge->geometry(), QRect(142, 282, 18, 18));
        QCOMPARE(list.footer->geometry(), QRect(0, 298, 160, 2));

        // The animation moves both through their own layouts.
        view->setCollapsed(true, false);
        QCOMPARE(view->badge->geometry(), QRect(142, 0, 18, 18));
        QCOMPARE(list.footer->geometry(), QRect(0, 16, 160, 2));
    }

    void scrollWrapper()
    {
        auto *view = new QWidget;
        view->resize(150, 400);
        const std::unique_ptr<QScrollArea> area(ZLWrapVerticalScrollViewAroundView(view));
        QCOMPARE(area->widget(), view);
        QCOMPARE(area->frameWidth(), 0);
        QCOMPARE(area->size(), QSize(150, 400));

        // Only vertical scrolling: the view follows the width, even when
        // something else resizes it later.
        area->resize(300, 200);
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        const int width = area->viewport()->width();
        QVERIFY(width > 150);
        QCOMPARE(view->size(), QSize(width, 400));
        view->resize(120, 500);
        QCOMPARE(view->size(), QSize(width, 500));

        MessageCapture capture;
        QVERIFY(!ZLWrapVerticalScrollViewAroundView(nullptr));
        QVERIFY(capture.text().contains("(view != nullptr)"));
    }
};

QTEST_MAIN(TestCollapsibleList)
#include "tst_collapsiblelist.moc"
