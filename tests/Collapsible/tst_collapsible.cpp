// The collapsible views and their list: the stacking rules, collapsing with
// and without animation, the delegates, and the collapsed titles kept across
// runs of an application.
#include "KQCollapsibleStacking_p.h"
#include "KQViewAnimation_p.h"
#include "KQWidgetState_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QVariantAnimation>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLayoutItem>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QToolButton>

#include <limits>
#include <memory>

using namespace KQCollapsibleStacking;

namespace {

constexpr double Unlimited = std::numeric_limits<double>::max();
using Spans = QList<std::pair<double, double>>; // (y, height) per item

// An item at y = 0 (stacking ignores the current y) as a view reports itself.
KQStackItem item(double height, bool resizable, bool collapsed = false, bool hidden = false, double maxHeight = 0)
{
    const KQHeightLimits limits = viewHeightLimits(height, resizable, collapsed);
    return {QRectF(0, 0, 50, height), limits.minHeight, maxHeight ? maxHeight : limits.maxHeight, hidden, resizable,
            collapsed};
}

KQCollapsibleView *makeView(const QString &title, int contentHeight = 100, bool resizable = false, bool collapsable = true,
                            int width = 100)
{
    auto *content = new QWidget;
    content->resize(width, contentHeight);
    return new KQCollapsibleView(title, content, collapsable, resizable);
}

// A list of 100 x height holding fixed views of 118 titled A, B, C...
std::unique_ptr<KQCollapsibleListView> makeList(const QStringList &titles, int height = 400)
{
    auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 100, height));
    for (const QString &title : titles)
        list->addCollapsableView(makeView(title));
    return list;
}

QToolButton *collapseButton(const KQCollapsibleView &view)
{
    return view.findChild<QToolButton *>(QStringLiteral("collapseButton"));
}

void finishAnimation(const KQCollapsibleView &view)
{
    QVariantAnimation *animation = view.currentAnimation();
    QVERIFY(animation != nullptr);
    animation->setCurrentTime(animation->duration());
}

QList<bool> collapsedStates(const KQCollapsibleListView &list)
{
    QList<bool> states;
    for (const KQCollapsibleView *view : list.collapsableViews())
        states.append(view->isCollapsed());
    return states;
}

void store(const QString &key, const QVariant &value)
{
    const auto settings = KQSettings::userDefaults();
    settings->setValue(key, value);
    settings->sync();
}

QStringList stored(const QString &key)
{
    return KQSettings::userDefaults()->value(key).toStringList();
}

// How many slots listen to the application's exit (receivers() is protected).
struct ApplicationPeek : QCoreApplication
{
    static int exitHooks() { return (instance()->*(&ApplicationPeek::receivers))(SIGNAL(aboutToQuit())); }
};

// Records every delegate message as one line, so tests can compare the order.
struct RecordingViewDelegate : QObject, KQCollapsibleViewDelegate
{
    void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double from, double to, KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("will %1 %2 -> %3").arg(view->title()).arg(from).arg(to));
        if (extraTarget)
            animations.append({extraTarget, QRectF(5, 6, 7, 8)});
    }
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("finished %1").arg(view->title()));
        finished = animations;
        if (destroy)
            delete view;
    }
    QStringList log;
    KQViewAnimations finished;
    QPointer<QWidget> extraTarget;
    bool destroy = false;
};

struct RecordingListDelegate : QObject, KQCollapsibleListViewDelegate
{
    void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double from, double to,
                                                  KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("list %1 -> %2").arg(from).arg(to));
        seen = animations;
        delete victim.data();
    }
    QStringList log;
    KQViewAnimations seen;
    QPointer<KQCollapsibleView> victim;
};

const QStringList ABC{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};

} // namespace

class tst_Collapsible : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void init() { KQSettings::userDefaults()->clear(); }

    void stackFrames_data()
    {
        QTest::addColumn<QList<KQStackItem>>("items");
        QTest::addColumn<double>("listHeight");
        QTest::addColumn<Spans>("expected");
        QTest::newRow("spare height given in list order")
            << QList<KQStackItem>{item(18, true, true), item(100, true, false, false, 150), item(50, true)} << 300.0
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
            QCOMPARE(frames->at(i).y(), expected.at(i).first);
            QCOMPARE(frames->at(i).height(), expected.at(i).second);
            // Visible views span the list; hidden ones are left as they were.
            QCOMPARE(frames->at(i).width(), items.at(i).hidden ? 50.0 : 200.0);
        }
        // Only a list without width or height has nothing to lay out.
        QVERIFY(!KQCollapsibleStacking::stackFrames(items, 0, listHeight));
        QVERIFY(!KQCollapsibleStacking::stackFrames(items, 200, 0));
        QVERIFY(KQCollapsibleStacking::stackFrames(items, 0.5, 0.5));
    }

    void listRules()
    {
        const auto limits = [](const QList<KQStackItem> &items) {
            const KQHeightLimits l = listHeightLimits(items);
            return std::pair(l.minHeight, l.maxHeight);
        };
        QCOMPARE(limits({}), std::pair(0.0, 0.0));
        QCOMPARE(limits({item(30, false, false, true), item(40, true, false, true)}), std::pair(0.0, 0.0));
        QCOMPARE(limits({item(30, false), item(60, true)}), std::pair(48.0, Unlimited));
        QCOMPARE(limits({item(60, true), item(60, true)}), std::pair(36.0, std::numeric_limits<double>::infinity()));

        // The fitted height: clamped, the maximum winning a conflict.
        QCOMPARE(fittedListHeight(10.0, {50.0, 200.0}), 50.0);
        QCOMPARE(fittedListHeight(300.0, {50.0, 200.0}), 200.0);
        QCOMPARE(fittedListHeight(100.0, {80.0, 60.0}), 60.0);

        // Only the visible views after the animating one move.
        QList<KQStackItem> items{item(40, true), item(70, false, false, true), item(60, false)};
        items[2].frame.moveTop(40);
        const KQAnimationPlan plan = animationPlan(items, 0, 40, 90);
        QCOMPARE(plan.moves.size(), 1);
        QCOMPARE(plan.moves.at(0).first, 2);
        QCOMPARE(plan.moves.at(0).second.y(), 90.0);
        QCOMPARE(plan.listHeight, 150.0);
        QCOMPARE(animationPlan(items, -1, 40, 90).moves.size(), 0);
    }

    void storedTitles_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("expectedDamaged");
        const QString b = QStringLiteral("B");
        QTest::newRow("nothing stored") << QVariant() << QStringList{} << false;
        QTest::newRow("list of strings") << QVariant(QStringList{b, QStringLiteral("C")}) << QStringList{b, QStringLiteral("C")} << false;
        QTest::newRow("list of strings as variants") << QVariant(QVariantList{b}) << QStringList{b} << false;
        QTest::newRow("one title read back as a string") << QVariant(b) << QStringList{b} << false;
        QTest::newRow("mixed list keeps its strings") << QVariant(QVariantList{b, QVariantMap{{b, 1}}, 7}) << QStringList{b} << true;
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

    // A view of a 200 x 100 content: its size, the content below the header,
    // and the title after the collapse button (when there is one).
    void viewLayout_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("collapsable");
        QTest::addColumn<int>("width");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("titleFrame"); // empty: no title field, no button
        QTest::newRow("titled") << "Fill" << true << 200 << QSize(200, 118) << QRect(18, 0, 182, 18);
        QTest::newRow("no button: starts at 3") << "Fill" << false << 200 << QSize(200, 118) << QRect(3, 0, 197, 18);
        QTest::newRow("narrower than the title origin") << "Fill" << true << 12 << QSize(12, 118) << QRect(18, 0, 10, 18);
        QTest::newRow("exactly the title origin") << "Fill" << false << 3 << QSize(3, 118) << QRect(3, 0, 10, 18);
        QTest::newRow("untitled") << QString() << true << 200 << QSize(200, 100) << QRect();
        QTest::newRow("empty title still has a header") << "" << true << 200 << QSize(200, 118) << QRect(18, 0, 182, 18);
    }

    void viewLayout()
    {
        QFETCH(QString, title);
        QFETCH(bool, collapsable);
        QFETCH(int, width);
        QFETCH(QSize, size);
        QFETCH(QRect, titleFrame);
        const std::unique_ptr<KQCollapsibleView> view(makeView(title, 100, false, collapsable, 200));
        view->resize(width, view->height());
        view->layoutSubviews();
        QCOMPARE(view->size(), size);
        const int header = titleFrame.isNull() ? 0 : 18;
        QCOMPARE(view->contentView()->geometry(), QRect(0, header, width, 100));
        auto *field = view->findChild<QWidget *>(QStringLiteral("titleField"));
        QCOMPARE(field != nullptr, header > 0);
        QCOMPARE(collapseButton(*view) != nullptr, header > 0);
        if (header) {
            QCOMPARE(field->geometry(), titleFrame);
            QCOMPARE(collapseButton(*view)->geometry(), QRect(0, 0, 18, 18));
            QCOMPARE(collapseButton(*view)->isHidden(), !collapsable);
        }
    }

    void viewHeights()
    {
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("T"), 100, false, true, 200));
        QCOMPARE(std::pair(view->minHeight(), view->maxHeight()), std::pair(118.0, 118.0));
        view->setIsHeightResizable(true);
        QCOMPARE(std::pair(view->minHeight(), view->maxHeight()), std::pair(18.0, Unlimited));
        view->setCollapsed(true, false);
        QCOMPARE(std::pair(view->minHeight(), view->maxHeight()), std::pair(18.0, 18.0));

        // Resized while hidden: no resize event reaches the view before it
        // collapses, yet the content keeps that height.
        const std::unique_ptr<KQCollapsibleView> resizable(makeView(QStringLiteral("R"), 100, true, true, 200));
        resizable->resize(200, 218);
        resizable->setCollapsed(true, false);
        QCOMPARE(resizable->contentView()->height(), 200);
        resizable->setCollapsed(false, false);
        QCOMPARE(resizable->contentView()->geometry(), QRect(0, 18, 200, 200));
        QCOMPARE(resizable->height(), 218);

        const std::unique_ptr<KQCollapsibleView> untitled(makeView(QString(), 60, true));
        QCOMPARE(untitled->minHeight(), 18.0);
        untitled->setCollapsed(true, false);
        QCOMPARE(untitled->height(), 18);
        untitled->setCollapsed(false, false);
        QCOMPARE(untitled->height(), 60);
    }

    void collapseWithoutAnimationStillSendsBothMessages()
    {
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("A"), 100, false, true, 200));
        QWidget neighbour;
        RecordingViewDelegate delegate;
        delegate.extraTarget = &neighbour;
        view->setDelegate(&delegate);
        view->move(4, 9);
        view->setCollapsed(true, false);
        QCOMPARE(delegate.log, (QStringList{QStringLiteral("will A 118 -> 18"), QStringLiteral("finished A")}));
        QCOMPARE(view->geometry(), QRect(4, 9, 200, 18));
        QVERIFY(view->isCollapsed() && !view->isAnimating());
        QCOMPARE(collapseButton(*view)->arrowType(), Qt::RightArrow);
        // The delegate's entries first, the view's own last; all applied.
        QCOMPARE(delegate.finished.size(), 2);
        QCOMPARE(delegate.finished.at(0).target.data(), &neighbour);
        QCOMPARE(neighbour.geometry(), QRect(5, 6, 7, 8));
        QCOMPARE(delegate.finished.at(1).target.data(), view.get());
        QCOMPARE(delegate.finished.at(1).endFrame, QRectF(4, 9, 200, 18));
    }

    void animatedCollapseDrivenToItsEnd()
    {
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("A"), 100, false, true, 200));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        collapseButton(*view)->click();
        QVERIFY(view->isCollapsed() && view->isAnimating()); // at once, before the height follows
        QCOMPARE(view->minHeight(), 118.0);
        QCOMPARE(delegate.log, QStringList{QStringLiteral("will A 118 -> 18")});
        QVariantAnimation *animation = view->currentAnimation();
        QCOMPARE(animation->duration(), KQCollapsibleView::AnimationDurationMs);
        animation->setCurrentTime(animation->duration() / 2);
        QCOMPARE(view->height(), 68);

        // Toggling again finishes the running animation first.
        view->toggleCollapsed();
        QCOMPARE(view->height(), 18);
        QCOMPARE(delegate.log, (QStringList{QStringLiteral("will A 118 -> 18"), QStringLiteral("finished A"),
                                            QStringLiteral("will A 18 -> 118")}));
        finishAnimation(*view);
        QCOMPARE(view->height(), 118);
        QVERIFY(!view->isAnimating() && !view->isCollapsed());
        QVERIFY(collapseButton(*view)->isChecked());
        QCOMPARE(delegate.log.size(), 4);
    }

    void changesTooSmallToAnimate()
    {
        // A change of epsilon neither tells the delegate nor animates.
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("E")));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        view->setHeight(118.0 + HeightEpsilon, true);
        QVERIFY(!view->currentAnimation() && !view->isAnimating());

        // Untitled with an 18-pixel content: collapsing leaves the height, so
        // both ways change only the state.
        const std::unique_ptr<KQCollapsibleView> flat(makeView(QString(), 18));
        flat->setDelegate(&delegate);
        flat->setCollapsed(true, true);
        QVERIFY(flat->isCollapsed());
        flat->setCollapsed(false, true);
        QVERIFY(!flat->isCollapsed() && !flat->currentAnimation());
        QVERIFY(delegate.log.isEmpty());

        // The same height asked mid-animation leaves the animation running.
        view->setCollapsed(true, true);
        QVariantAnimation *animation = view->currentAnimation();
        animation->setCurrentTime(animation->duration() / 2);
        view->setHeight(view->height(), true);
        QCOMPARE(view->currentAnimation(), animation);
        QCOMPARE(animation->state(), QAbstractAnimation::Running);
    }

    void refusals()
    {
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("Fixed"), 100, false, false));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        MessageCapture capture;
        view->setCollapsed(true, false);
        view->setCollapsed(false, false); // already expanded: no report
        KQCollapsibleView invalid(QRect(0, 0, 50, 40));
        const QByteArray report = capture.text();
        QCOMPARE(report.count("(_canCollapse)"), 1);
        QVERIFY(!view->isCollapsed());
        QCOMPARE(view->height(), 118);
        QVERIFY(delegate.log.isEmpty());
        QVERIFY(report.contains("Invalid initializer method called"));
        QVERIFY(invalid.title().isNull() && !invalid.contentView() && !invalid.canCollapse());
    }

    void headerDrawing_data()
    {
        // A header band is drawn exactly when there is a title; the top line
        // exactly when asked for; the bottom line unless collapsed.
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("topLine");
        QTest::addColumn<int>("collapse"); // 0 expanded, 1 collapsed, 2 collapse halfway
        QTest::addColumn<bool>("expectBottomLine");
        QTest::newRow("with top line") << "Header" << true << 0 << true;
        QTest::newRow("collapsed: no bottom line") << "Header" << false << 1 << false;
        QTest::newRow("collapse running: line stays") << "Header" << false << 2 << true;
        QTest::newRow("untitled: no header") << QString() << true << 0 << false;
    }

    void headerDrawing()
    {
        QFETCH(QString, title);
        QFETCH(bool, topLine);
        QFETCH(int, collapse);
        QFETCH(bool, expectBottomLine);
        const QColor band(200, 40, 40), shadow(30, 30, 220), window(40, 180, 40);
        const std::unique_ptr<KQCollapsibleView> view(makeView(title, 100, false, true, 200));
        QPalette palette = view->palette();
        palette.setColor(QPalette::Button, band);
        palette.setColor(QPalette::Dark, shadow);
        palette.setColor(QPalette::Window, window);
        view->setPalette(palette);
        view->setAutoFillBackground(true);
        view->setDrawTopLine(topLine);
        if (collapse > 0)
            view->setCollapsed(true, collapse == 2);
        if (collapse == 2)
            view->currentAnimation()->setCurrentTime(view->currentAnimation()->duration() / 2);
        const QImage image = view->grab().toImage();
        const int x = image.width() - 3; // right of the title text
        const QColor background = title.isNull() ? window : band;
        QCOMPARE(image.pixelColor(x, 8), background);
        QCOMPARE(image.pixelColor(x, 0), topLine ? shadow : background);
        QCOMPARE(image.pixelColor(x, 17), expectBottomLine ? shadow : background);
    }

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
        const QList<KQCollapsibleView *> views{makeView(QString()), new CappedView(QString(), cappedContent, true, true),
                                              makeView(QString(), 50, true)};
        for (KQCollapsibleView *view : views)
            list.addCollapsableView(view);
        views.at(0)->setCollapsed(true, false);
        views.at(1)->setFrame(QRect(0, 0, 100, 100));
        views.at(2)->setFrame(QRect(0, 0, 100, 50));
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
        // A list framed at 500 (holding A, B, C or nothing), shown, then
        // changed; it keeps its height until setFrame asks for a smaller one.
        QTest::addColumn<bool>("withViews");
        QTest::addColumn<int>("change");
        QTest::addColumn<int>("expectedMinimum");
        QTest::addColumn<int>("expectedMaximum");
        QTest::newRow("empty, shown") << false << 0 << 0 << 0;
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
            QCOMPARE(b->contentView()->height(), 246);
        } else {
            list.resize(100, 500);
        }
        list.setAutosaveName(QStringLiteral("hidden"));
        QVERIFY(b->isCollapsed());
        QCOMPARE(list.collapsableViews().at(2)->y(), 136);
        QCOMPARE(list.height(), 254);
        b->setCollapsed(false, false);
        QCOMPARE(b->contentView()->geometry(), QRect(0, 18, 100, 246));
        QCOMPARE(list.collapsableViews().at(2)->y(), 382);
        QCOMPARE(list.height(), 500);
    }

    void hiddenViewsAndEdgeCases()
    {
        const auto list = makeList(ABC);
        KQCollapsibleView *b = list->collapsableViews().at(1);
        list->setHiddenForCollapsableView(true, b);
        QCOMPARE(list->collapsableViews().at(2)->y(), 118);
        QCOMPARE(list->collapsableViewWithContentView(b->contentView()), b);
        list->setHiddenForCollapsableView(false, b);
        QCOMPARE(list->collapsableViews().at(2)->y(), 236);

        // All views hidden, or no width: the layout leaves the views alone.
        const QRect odd(7, 7, 7, 7);
        for (KQCollapsibleView *view : list->collapsableViews()) {
            list->setHiddenForCollapsableView(true, view);
            view->setGeometry(odd);
        }
        list->layoutSubviews();
        QCOMPARE(b->geometry(), odd);
        list->setHiddenForCollapsableView(false, b);
        list->resize(0, list->height());
        b->setGeometry(odd);
        list->layoutSubviews();
        QCOMPARE(b->geometry(), odd);

        // The first view sizes a list of no size, even after a removed view
        // left its limits behind; a view already held is not added again.
        KQCollapsibleListView empty;
        empty.addCollapsableView(makeView(QStringLiteral("Old")));
        delete empty.collapsableViews().first();
        empty.resize(0, 0);
        auto *first = makeView(QStringLiteral("First"), 60, true, true, 230);
        empty.addCollapsableView(first);
        empty.addCollapsableView(first);
        QCOMPARE(empty.size(), QSize(230, 78));
        QCOMPARE(empty.collapsableViews().size(), 1);
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
        QCOMPARE(c->geometry(), QRect(0, 136, 100, 118));
        QCOMPARE(b->height(), 18);
        QCOMPARE(list->height(), 254);
        QCOMPARE(list->minimumSizeHint().height(), 254);
    }

    void destroyedDuringAnimation_data()
    {
        QTest::addColumn<int>("victim");
        QTest::newRow("the animating view") << 0;
        QTest::newRow("a view moving along") << 1;
        QTest::newRow("the list's delegate") << 2;
        QTest::newRow("the list") << 3;
        QTest::newRow("the view, by its delegate when told") << 4;
    }

    void destroyedDuringAnimation()
    {
        QFETCH(int, victim);
        RecordingViewDelegate viewDelegate;
        auto list = makeList(ABC, 354);
        auto listDelegate = std::make_unique<RecordingListDelegate>();
        list->setDelegate(listDelegate.get());
        QPointer<KQCollapsibleView> a = list->collapsableViews().at(0);
        viewDelegate.destroy = victim == 4;
        a->setDelegate(&viewDelegate);
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
        QCOMPARE(a.isNull(), victim == 0 || victim == 3 || victim == 4);
        QVERIFY(!a || !a->isAnimating());
        if (list) {
            QVERIFY(!list->isLayoutBlocked());
            QCOMPARE(list->collapsableViews().size(), victim == 2 ? 3 : 2);
            list->layoutSubviews(); // must not touch a destroyed view
        }
    }

    void save_data()
    {
        // Views A, B, C, an untitled one and a hidden H.
        QTest::addColumn<QList<bool>>("collapsed");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("second and third") << QList<bool>{false, true, true, false, false} << QStringList{"B", "C"};
        QTest::newRow("none") << QList<bool>{false, false, false, false, false} << QStringList{};
        QTest::newRow("untitled skipped, hidden kept") << QList<bool>{false, false, false, true, true} << QStringList{"H"};
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
        QCOMPARE(stored(QStringLiteral("Lists/save")), expected);
    }

    void load_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QList<bool>>("expected");
        QTest::newRow("C only") << QVariant(QStringList{"C"}) << QList<bool>{false, false, true};
        QTest::newRow("nothing stored expands all") << QVariant() << QList<bool>{false, false, false};
        QTest::newRow("unknown titles are ignored") << QVariant(QStringList{"Z", "A"}) << QList<bool>{true, false, false};
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

    void autosaveLifecycle()
    {
        // The same name again loads nothing; a view added later keeps its state.
        store(QStringLiteral("twice"), QStringList{QStringLiteral("A")});
        auto list = makeList(ABC);
        list->setAutosaveName(QStringLiteral("twice"));
        KQCollapsibleView *a = list->collapsableViews().at(0);
        QVERIFY(a->isCollapsed());
        a->setCollapsed(false, false);
        list->setAutosaveName(QStringLiteral("twice"));
        QVERIFY(!a->isCollapsed());
        store(QStringLiteral("twice"), QStringList{QStringLiteral("D")});
        list->addCollapsableView(makeView(QStringLiteral("D")));
        QVERIFY(!list->collapsableViews().last()->isCollapsed());

        // One exit hook per named list, saving on exit; none without a name.
        list = makeList(ABC);
        const int before = ApplicationPeek::exitHooks();
        list->setAutosaveName(QStringLiteral("exit"));
        list->setAutosaveName(QStringLiteral("exit2"));
        QCOMPARE(ApplicationPeek::exitHooks(), before + 1);
        list->collapsableViews().at(2)->setCollapsed(true, false);
        QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection));
        QCOMPARE(stored(QStringLiteral("exit2")), QStringList{QStringLiteral("C")});
        list->setAutosaveName(QString());
        QCOMPARE(ApplicationPeek::exitHooks(), before);

        // Saved when destroyed (the new name found nothing stored: all expanded).
        list->setAutosaveName(QStringLiteral("destroyed"));
        list->collapsableViews().at(0)->setCollapsed(true, false);
        list.reset();
        QCOMPARE(stored(QStringLiteral("destroyed")), QStringList{QStringLiteral("A")});

        // A view destroyed while the stored state is applied is skipped.
        store(QStringLiteral("victim"), QStringList{QStringLiteral("A"), QStringLiteral("C")});
        list = makeList(ABC);
        RecordingListDelegate destroyer;
        destroyer.victim = list->collapsableViews().at(2);
        list->setDelegate(&destroyer);
        list->setAutosaveName(QStringLiteral("victim"));
        QCOMPARE(collapsedStates(*list), (QList<bool>{true, false}));
    }

    void garbageInTheSettingsFile()
    {
        store(QStringLiteral("garbage/other"), QStringList{QStringLiteral("B"), QStringLiteral("C")});
        {
            QFile file(KQSettings::userDefaults()->fileName());
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

    // Runs of a small program: the titles collapsed in one come back in the next.
    void collapsedViewsComeBackAfterRestart_data()
    {
        QTest::addColumn<QString>("collapse");
        QTest::newRow("second and third") << QStringLiteral("B,C");
        QTest::newRow("one title, which the settings file keeps as a plain string") << QStringLiteral("A");
    }

    void collapsedViewsComeBackAfterRestart()
    {
        QFETCH(QString, collapse);
        const auto run = [](const QStringList &arguments) {
            QProcess process;
            process.start(QStringLiteral(RESTART_HELPER), arguments);
            const bool ok = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit
                            && process.exitCode() == 0;
            return ok ? process.readAllStandardOutput() : QByteArray("helper failed: ") + process.readAllStandardError();
        };
        QCOMPARE(run({QStringLiteral("--clear"), QStringLiteral("--print")}), QByteArray("collapsed: \n"));
        QCOMPARE(run({QStringLiteral("--collapse"), collapse}), QByteArray());
        QCOMPARE(run({QStringLiteral("--print")}), QByteArray("collapsed: ") + collapse.toUtf8() + '\n');
    }

    void scrollWrapper()
    {
        // Only vertical scrolling: the view follows the width, even when
        // something else resizes it later, and mid-animation.
        auto *list = makeList(ABC, 354).release();
        const std::unique_ptr<QScrollArea> area(ZLWrapVerticalScrollViewAroundView(list));
        QCOMPARE(area->widget(), list);
        QCOMPARE(area->frameWidth(), 0);
        QCOMPARE(area->size(), QSize(100, 354));
        area->resize(300, 200);
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        QCOMPARE(list->width(), area->viewport()->width());
        list->resize(120, 500);
        QCOMPARE(list->width(), area->viewport()->width());

        KQCollapsibleView *a = list->collapsableViews().at(0);
        a->setCollapsed(true, true);
        area->resize(160, 500);
        finishAnimation(*a);
        QCOMPARE(list->width(), area->viewport()->width());
        for (const KQCollapsibleView *view : list->collapsableViews())
            QCOMPARE(view->width(), list->width());

        MessageCapture capture;
        QVERIFY(!ZLWrapVerticalScrollViewAroundView(nullptr));
        QVERIFY(capture.text().contains("(view != nullptr)"));
    }

    void subclassesPlaceTheirOwnWidgets()
    {
        // A view keeping a badge in its bottom right corner, in a list
        // keeping a footer line along its bottom edge.
        struct BadgedView : KQCollapsibleView
        {
            using KQCollapsibleView::KQCollapsibleView;
            void layoutSubviews() override
            {
                KQCollapsibleView::layoutSubviews();
                badge->setGeometry(width() - 18, height() - 18, 18, 18);
            }
            QWidget *const badge = new QWidget(this);
        };
        struct FooterList : KQCollapsibleListView
        {
            using KQCollapsibleListView::KQCollapsibleListView;
            void layoutSubviews() override
            {
                KQCollapsibleListView::layoutSubviews();
                footer->setGeometry(0, height() - 2, width(), 2);
            }
            QWidget *const footer = new QWidget(this);
        };
        auto *content = new QWidget;
        content->resize(100, 100);
        auto *view = new BadgedView(QStringLiteral("A"), content, true, true);
        FooterList list(QRect(0, 0, 100, 300));
        list.addCollapsableView(view);
        list.setFrame(QRect(0, 0, 160, 300));
        QCOMPARE(view->badge->geometry(), QRect(142, 282, 18, 18));
        QCOMPARE(list.footer->geometry(), QRect(0, 298, 160, 2));
        // The animation moves both through their own layouts.
        view->setCollapsed(true, false);
        QCOMPARE(view->badge->geometry(), QRect(142, 0, 18, 18));
        QCOMPARE(list.footer->geometry(), QRect(0, 16, 160, 2));
    }
};

QTEST_MAIN(tst_Collapsible)
#include "tst_collapsible.moc"
