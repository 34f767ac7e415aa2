// The collapsible views, their list and its collapsed titles kept across runs.
#include "KQCollapsibleStacking_p.h"
#include "KQWidgetState_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <memory>

using namespace KQCollapsibleStacking;
using Spans = QList<std::pair<double, double>>; // (y, height) per item

namespace {

// An item at y = 0 (stacking ignores the current y) as a view reports itself.
KQStackItem item(double height, bool resizable, bool collapsed = false, bool hidden = false, double maxHeight = 0)
{
    const KQHeightLimits limits = viewHeightLimits(height, resizable, collapsed);
    return {QRectF(0, 0, 50, height), limits.minHeight, maxHeight ? maxHeight : limits.maxHeight, hidden, resizable, collapsed};
}

KQCollapsibleView *makeView(const QString &title, int contentHeight = 100, bool resizable = false, bool collapsable = true, int width = 100)
{
    auto *content = new QWidget;
    content->resize(width, contentHeight);
    return new KQCollapsibleView(title, content, collapsable, resizable);
}

const QStringList ABC{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};

// A list of 100 x height holding fixed views of 118 titled A, B, C...
std::unique_ptr<KQCollapsibleListView> makeList(const QStringList &titles = ABC, int height = 400)
{
    auto list = std::make_unique<KQCollapsibleListView>(QRect(0, 0, 100, height));
    for (const QString &title : titles)
        list->addCollapsableView(makeView(title));
    return list;
}

QToolButton *button(const KQCollapsibleView &view) { return view.findChild<QToolButton *>(QStringLiteral("collapseButton")); }
void toHalf(QVariantAnimation *a) { a->setCurrentTime(a->duration() / 2); }

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
    }
    QStringList log;
    KQViewAnimations finished;
    QPointer<QWidget> extraTarget;
};

struct RecordingListDelegate : QObject, KQCollapsibleListViewDelegate
{
    void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double from, double to, KQViewAnimations &) override
    {
        log.append(QStringLiteral("list %1 -> %2").arg(from).arg(to));
        delete victim.data();
    }
    QStringList log;
    QPointer<KQCollapsibleView> victim;
};

// A run of an application that collapses the titles given in its list of A, B, C
// saved under a name, then quits through the event loop: the list is never
// deleted, so only the exit hook can save.
int restartRun(int argc, char *argv[])
{
    QApplication application(argc, argv);
    KQSettings::enableTestMode(false);
    auto *list = makeList().release();
    list->setAutosaveName(QStringLiteral("RestartList"));
    const QStringList titles = QString::fromLocal8Bit(argv[2]).split(QLatin1Char(','));
    for (KQCollapsibleView *view : list->collapsableViews())
        view->setCollapsed(titles.contains(view->title()), false);
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return application.exec();
}

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
        const auto row = [](const char *name, QList<KQStackItem> items, double height, Spans spans) {
            QTest::newRow(name) << items << height << spans;
        };
        row("spare height given in list order",
            {item(18, true, true), item(100, true, false, false, 150), item(50, true)}, 300,
            {{0, 18}, {18, 150}, {168, 132}});
        row("shortfall taken from the first resizable view down to its minimum",
            {item(40, false), item(100, true), item(60, true)}, 100, {{0, 40}, {40, 18}, {58, 42}});
        row("rest of a shortfall passes to the next resizable view", {item(40, true), item(100, true)}, 50, {{0, 18}, {18, 32}});
        row("hidden views keep their frame and take no room",
            {item(30, false), item(70, true, false, true), item(20, true)}, 100, {{0, 30}, {0, 70}, {30, 70}});
        row("fixed and collapsed views leave the stack short", {item(30, false), item(18, true, true)}, 200, {{0, 30}, {30, 18}});
        row("limits that cannot absorb a shortfall overflow the bottom", {item(30, false), item(50, true)}, 40, {{0, 30}, {30, 18}});
    }
    void stackFrames()
    {
        QFETCH(QList<KQStackItem>, items);
        QFETCH(double, listHeight);
        QFETCH(Spans, expected);
        const std::optional<QList<QRectF>> frames = KQCollapsibleStacking::stackFrames(items, 200, listHeight);
        QVERIFY(frames.has_value());
        Spans spans;
        for (qsizetype i = 0; i < frames->size(); ++i) {
            spans.append({frames->at(i).y(), frames->at(i).height()});
            QCOMPARE(frames->at(i).width(), items.at(i).hidden ? 50.0 : 200.0); // hidden ones left as they were
        }
        QCOMPARE(spans, expected);
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
        QCOMPARE(limits({item(30, false, false, true), item(40, true, false, true)}), std::pair(0.0, 0.0));
        QCOMPARE(limits({item(30, false), item(60, true)}), std::pair(48.0, std::numeric_limits<double>::max()));
        // Collapsed, a resizable view is held at its header's height.
        QCOMPARE(limits({item(30, false), item(18, true, true)}), std::pair(48.0, 48.0));
        QCOMPARE(fittedListHeight(10.0, {50.0, 200.0}), 50.0);
        QCOMPARE(fittedListHeight(100.0, {80.0, 60.0}), 60.0); // the maximum wins a conflict
        // Only the visible views after the animating one move.
        QList<KQStackItem> items{item(40, true), item(70, false, false, true), item(60, false)};
        items[2].frame.moveTop(40);
        const KQAnimationPlan plan = animationPlan(items, 0, 40, 90);
        QCOMPARE(plan.moves.size(), 1);
        QCOMPARE(plan.moves.at(0), std::pair(qsizetype(2), QRectF(0, 90, 50, 60)));
        QCOMPARE(plan.listHeight, 150.0);
        QCOMPARE(animationPlan(items, -1, 40, 90).moves.size(), 0);
    }

    void storedTitles_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("damaged");
        const QString b = QStringLiteral("B");
        QTest::newRow("list of strings") << QVariant(QStringList{b, "C"}) << QStringList{b, "C"} << false;
        QTest::newRow("one title read back as a string") << QVariant(b) << QStringList{b} << false;
        QTest::newRow("mixed list keeps its strings") << QVariant(QVariantList{b, QVariantMap{{b, 1}}, 7}) << QStringList{b} << true;
        QTest::newRow("a rectangle") << QVariant(QRect(1, 2, 3, 4)) << QStringList{} << true;
    }
    void storedTitles()
    {
        QFETCH(QVariant, stored);
        QFETCH(QStringList, expected);
        QFETCH(bool, damaged);
        bool got = !damaged;
        QCOMPARE(KQCollapsibleStacking::storedTitles(stored, &got), expected);
        QCOMPARE(got, damaged);
    }

    void collapsing()
    {
        // Without animation: both delegate messages, the delegate's entries first, all applied.
        const std::unique_ptr<KQCollapsibleView> view(makeView(QStringLiteral("A"), 100, false, true, 200));
        QWidget neighbour;
        RecordingViewDelegate delegate;
        delegate.extraTarget = &neighbour;
        view->setDelegate(&delegate);
        view->move(4, 9);
        view->setCollapsed(true, false);
        QCOMPARE(delegate.log, (QStringList{"will A 118 -> 18", "finished A"}));
        QCOMPARE(neighbour.geometry(), QRect(5, 6, 7, 8));
        QCOMPARE(delegate.finished.at(1).target.data(), view.get());
        QCOMPARE(view->geometry(), QRect(4, 9, 200, 18));

        // Animated, by the button: collapsed at once, the height follows; toggling finishes first.
        delegate.log.clear();
        button(*view)->click();
        QVERIFY(!view->isCollapsed() && view->isAnimating());
        toHalf(view->currentAnimation());
        QCOMPARE(view->height(), 68);
        view->toggleCollapsed();
        QCOMPARE(view->height(), 118);
        QCOMPARE(delegate.log, (QStringList{"will A 18 -> 118", "finished A", "will A 118 -> 18"}));
        view->currentAnimation()->setCurrentTime(KQCollapsibleView::AnimationDurationMs);
        QCOMPARE(view->height(), 18);
        QVERIFY(!view->isAnimating() && view->isCollapsed());
    }

    // A header band exactly when there is a title; the top line when asked; the bottom line unless collapsed.
    void headerDrawing_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("topLine");
        QTest::addColumn<int>("collapse"); // 0 expanded, 1 collapsed, 2 collapse halfway
        QTest::addColumn<bool>("bottomLine");
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
        QFETCH(bool, bottomLine);
        const QColor band(200, 40, 40), shadow(30, 30, 220), window(40, 180, 40);
        const std::unique_ptr<KQCollapsibleView> view(makeView(title, 100, false, true, 200));
        QPalette palette;
        for (const auto &[role, colour] : {std::pair(QPalette::Button, band), {QPalette::Dark, shadow}, {QPalette::Window, window}})
            palette.setColor(role, colour);
        view->setPalette(palette);
        view->setAutoFillBackground(true);
        view->setDrawTopLine(topLine);
        if (collapse > 0)
            view->setCollapsed(true, collapse == 2);
        if (collapse == 2)
            toHalf(view->currentAnimation());
        const QImage image = view->grab().toImage();
        const int x = image.width() - 3; // right of the title text
        const QColor background = title.isNull() ? window : band;
        QCOMPARE(image.pixelColor(x, 8), background);
        QCOMPARE(image.pixelColor(x, 0), topLine ? shadow : background);
        QCOMPARE(image.pixelColor(x, 17), bottomLine ? shadow : background);
    }

    // Views "A B~ C" (~ resizable, ! not collapsable, _ untitled), 100 high, in a list of that height (0: none).
    // Steps: store:T,U under the list's name, autosave, save, frame:H, resize:WxH, show, fit, add:T, remove:T,
    // collapse:T, expand:T, hide:T, unhide:T (T may be none). Noted: "=" each view as y+height (c collapsed,
    // - hidden), "|" the list's height, "saved" the titles stored.
    void listScript_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<QString>("views");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QByteArray>("report");
        const auto row = [](const char *name, int height, const char *views, const char *steps, const char *expected,
                            const char *report = "") {
            QTest::newRow(name) << height << QString::fromLatin1(views) << QString::fromLatin1(steps)
                                << QString::fromLatin1(expected) << QByteArray(report);
        };
        row("restored before showing", 0, "A B~ C", "store:B frame:500 autosave = | expand:B = |",
            "0+118 118+18c 136+118 / 254 / 0+118 118+264 382+118 / 500");
        row("a hidden view takes no room", 400, "A B C", "hide:B = unhide:B =", "0+118 - 118+118 / 0+118 118+118 236+118");
        row("empty, shown: keeps its height until framed", 354, "", "resize:100x500 show | frame:10 |", "500 / 0");
        row("untitled not saved, hidden saved", 400, "A B C _ H", "hide:H autosave collapse:B collapse:_ collapse:H save saved", "B,H");
        row("unknown titles ignored on loading", 400, "A B C", "store:Z,C collapse:B autosave =", "0+118 118+118 236+18c");
        row("the same name again loads nothing", 400, "A B C",
            "store:A autosave = expand:A autosave =", "0+18c 18+118 136+118 / 0+118 118+118 236+118");
        row("a view added later keeps its state", 400, "A B C", "autosave store:D add:D =", "0+118 118+118 236+118 354+118");
        row("the first view sizes a list of no size, despite a removed one", 0, "", "add:O remove:O resize:0x0 add:R~ = |", "0+118 / 118");
        row("a view that cannot collapse", 0, "F!", "collapse:F expand:F =", "0+118", "(_canCollapse)");
        row("adding no view", 0, "", "add:none |", "0", "(collapsableView)");
        row("hiding no view", 0, "", "hide:none |", "0", "(view && [_collapsableViews containsObject:view])");
        row("fitting an empty list of zero size", 0, "", "fit |", "0", "([_collapsableViews count] > 0)");
    }
    void listScript()
    {
        QFETCH(int, height);
        QFETCH(QString, views);
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        QFETCH(QByteArray, report);
        QWidget window;
        auto *list = height ? new KQCollapsibleListView(QRect(0, 0, 100, height)) : new KQCollapsibleListView;
        list->setParent(&window);
        for (const QString &spec : views.split(u' ', Qt::SkipEmptyParts))
            list->addCollapsableView(makeView(spec.startsWith(u'_') ? QString() : spec.left(1), 100, spec.contains(u'~'), !spec.contains(u'!')));
        const auto view = [&](const QString &title) {
            for (KQCollapsibleView *v : list->collapsableViews()) {
                if (v->title() == title || (title == u"_" && v->title().isNull()))
                    return v;
            }
            return static_cast<KQCollapsibleView *>(nullptr);
        };
        QStringList noted;
        MessageCapture capture;
        for (const QString &step : steps.split(u' ')) {
            const QString op = step.section(u':', 0, 0), arg = step.section(u':', 1);
            if (op == u"=") {
                QStringList spans;
                for (const KQCollapsibleView *v : list->collapsableViews())
                    spans << (kq_isExplicitlyHidden(v) ? QStringLiteral("-")
                                                       : QStringLiteral("%1+%2%3")
                                                             .arg(v->y())
                                                             .arg(v->height())
                                                             .arg(v->isCollapsed() ? "c" : ""));
                noted << spans.join(u' ');
            } else if (op == u"|") {
                QCoreApplication::sendPostedEvents();
                noted << QString::number(list->height());
            } else if (op == u"saved") {
                noted << KQSettings::userDefaults()->value(QStringLiteral("list")).toStringList().join(u',');
            } else if (op == u"store") {
                KQSettings::userDefaults()->setValue(QStringLiteral("list"), arg.split(u','));
            } else if (op == u"autosave") {
                list->setAutosaveName(QStringLiteral("list"));
            } else if (op == u"save") {
                list->saveToAutosaveName();
            } else if (op == u"frame") {
                list->setFrame(QRect(0, 0, 100, arg.toInt()));
            } else if (op == u"resize") {
                list->resize(arg.section(u'x', 0, 0).toInt(), arg.section(u'x', 1).toInt());
            } else if (op == u"show") {
                window.show();
            } else if (op == u"fit") {
                list->resizeToFitSubviews();
            } else if (op == u"add") {
                list->addCollapsableView(arg == u"none" ? nullptr : makeView(arg.left(1), 100, arg.contains(u'~')));
            } else if (op == u"remove") {
                delete view(arg);
            } else if (op == u"collapse" || op == u"expand") {
                view(arg)->setCollapsed(op == u"collapse", false);
            } else if (op == u"hide" || op == u"unhide") {
                list->setHiddenForCollapsableView(op == u"hide", view(arg));
            } else {
                QFAIL(qPrintable(step));
            }
        }
        const QByteArray text = capture.text();
        QCOMPARE(noted.join(QStringLiteral(" / ")), expected);
        QVERIFY2(report.isEmpty() ? text.isEmpty() : text.contains(report), text.constData());
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
        QVariantAnimation *animation = b->currentAnimation();
        // Blocked while animating: halfway, the views below and the list move along.
        QVERIFY(list->isLayoutBlocked());
        toHalf(animation);
        QCOMPARE(std::pair(c->y(), list->height()), std::pair(186, 304));
        animation->setCurrentTime(animation->duration());
        QCOMPARE(blocked.size(), 2);
        QCOMPARE(c->geometry(), QRect(0, 136, 100, 118));
        QCOMPARE(std::pair(b->height(), list->height()), std::pair(18, 254));
    }

    void viewDestroyedWhileLoading()
    {
        KQSettings::userDefaults()->setValue(QStringLiteral("victim"), QStringList{QStringLiteral("A"), QStringLiteral("C")});
        const auto list = makeList();
        RecordingListDelegate destroyer;
        destroyer.victim = list->collapsableViews().at(2);
        list->setDelegate(&destroyer);
        list->setAutosaveName(QStringLiteral("victim"));
        QCOMPARE(list->collapsableViews().size(), 2);
        QVERIFY(list->collapsableViews().at(0)->isCollapsed() && !list->collapsableViews().at(1)->isCollapsed());
    }

    // What a run of this program collapsed comes back in the next list of that name, a
    // single title too, which the settings file keeps as a plain string.
    void collapsedViewsComeBackAfterRestart()
    {
        for (const QString &collapse : {QStringLiteral("B,C"), QStringLiteral("A")}) {
            QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), {QStringLiteral("--restart-run"), collapse}), 0);
            KQSettings::userDefaults()->sync();
            const auto list = makeList();
            list->setAutosaveName(QStringLiteral("RestartList"));
            for (const KQCollapsibleView *view : list->collapsableViews())
                QCOMPARE(view->isCollapsed(), collapse.split(u',').contains(view->title()));
        }
    }

    void scrollWrapper()
    {
        // Only vertical scrolling: the wrapped list follows the width.
        auto *list = makeList(ABC, 354).release();
        const std::unique_ptr<QScrollArea> area(ZLWrapVerticalScrollViewAroundView(list));
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        area->resize(160, 500);
        QCOMPARE(list->width(), area->viewport()->width());
    }

    void refusals()
    {
        MessageCapture capture;
        KQCollapsibleView invalid(QRect(0, 0, 50, 40));
        QVERIFY(invalid.title().isNull() && !invalid.contentView() && !invalid.canCollapse());
        QVERIFY(!ZLWrapVerticalScrollViewAroundView(nullptr));
        QVERIFY(capture.text().contains("Invalid initializer method called") && capture.text().contains("(view != nullptr)"));
    }
};

int main(int argc, char *argv[])
{
    if (argc > 2 && qstrcmp(argv[1], "--restart-run") == 0)
        return restartRun(argc, argv);
    QApplication application(argc, argv);
    tst_Collapsible test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_collapsible.moc"
