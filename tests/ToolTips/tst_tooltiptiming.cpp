// The tooltip timing rules, driven with an injected clock, pointer and hit
// test against a recording stand-in for the window.
#include "CapturedOutput.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQSettings.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>

#include <memory>

namespace {

class FakeWindow : public ToolTipPresenter_ZL
{
public:
    bool isShown() const override { return shown; }
    void setString(const QString &text, bool wrapText) override
    {
        ++layouts;
        this->text = text;
        wrap = wrapText;
    }
    void setAttributedString(const QTextDocumentFragment &text, bool wrapText) override
    {
        ++layouts;
        this->text = text.toPlainText();
        rich = true;
        wrap = wrapText;
    }
    void positionAtMouseLocation(QPointF point) override { position = point; }
    void show() override { shown = true; }
    void hide(bool fade) override
    {
        shown = false;
        hides.append(fade);
    }

    bool shown = false;
    int layouts = 0;
    QString text;
    bool rich = false;
    bool wrap = true;
    QPointF position;
    QList<bool> hides; // the fade argument of each hide
};

using Effect = ToolTipEventEffect_ZL;

std::unique_ptr<QEvent> mouseEvent(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    return std::make_unique<QMouseEvent>(type, QPointF(1, 1), QPointF(1, 1), button, buttons,
                                         Qt::NoModifier);
}

std::unique_ptr<QEvent> moved() { return mouseEvent(QEvent::MouseMove, Qt::NoButton, Qt::NoButton); }
std::unique_ptr<QEvent> pressed() { return mouseEvent(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton); }
std::unique_ptr<QEvent> released() { return mouseEvent(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton); }
std::unique_ptr<QEvent> keyPressed() { return std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier); }

} // namespace

class TestToolTipTiming : public QObject
{
    Q_OBJECT

private:
    double now = 0;
    QPointF pointer;
    QVariant answer;          // what the widget under the pointer says
    bool answerWraps = true;
    int hitTests = 0;
    FakeWindow window;
    std::unique_ptr<ToolTipTiming_ZL> rules;

    void at(double seconds) { now = seconds; }
    void poll(double seconds)
    {
        now = seconds;
        rules->timerFired();
    }
    void event(double seconds, std::unique_ptr<QEvent> e)
    {
        now = seconds;
        rules->handleEvent(e.get());
    }
    // Armed by a movement at t = 0, shown at the poll at 1.0.
    void showFirstTooltip()
    {
        event(0.0, moved());
        poll(1.0);
        QVERIFY(window.shown);
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void init()
    {
        now = 0;
        pointer = QPointF(300, 200);
        answer = QStringLiteral("Red: 12");
        answerWraps = true;
        hitTests = 0;
        window = FakeWindow();
        rules = std::make_unique<ToolTipTiming_ZL>();
        rules->setClock([this] { return now; });
        rules->setPointerLocation([this] { return pointer; });
        rules->setHitTest([this](bool *wrap, QPointF) {
            ++hitTests;
            if (!answerWraps)
                *wrap = false;
            return answer;
        });
        rules->setPresenter(&window);
    }

    void eventTable_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("readiness");
        QTest::addColumn<bool>("hides");
        const int none = Qt::NoButton, left = Qt::LeftButton, right = Qt::RightButton, middle = Qt::MiddleButton;
        QTest::newRow("left down") << int(QEvent::MouseButtonPress) << left << left << int(Effect::Disarm) << true;
        QTest::newRow("left up") << int(QEvent::MouseButtonRelease) << left << none << int(Effect::Arm) << true;
        QTest::newRow("right down") << int(QEvent::MouseButtonPress) << right << right << int(Effect::Disarm) << true;
        QTest::newRow("right up") << int(QEvent::MouseButtonRelease) << right << none << int(Effect::Arm) << true;
        QTest::newRow("moved") << int(QEvent::MouseMove) << none << none << int(Effect::Arm) << false;
        QTest::newRow("left dragged") << int(QEvent::MouseMove) << none << left << int(Effect::Disarm) << true;
        QTest::newRow("right dragged") << int(QEvent::MouseMove) << none << right << int(Effect::Disarm) << true;
        QTest::newRow("other down") << int(QEvent::MouseButtonPress) << middle << middle << int(Effect::Disarm) << true;
        QTest::newRow("other up") << int(QEvent::MouseButtonRelease) << middle << none << int(Effect::Arm) << true;
        QTest::newRow("other dragged") << int(QEvent::MouseMove) << none << middle << int(Effect::Disarm) << true;
        QTest::newRow("double click") << int(QEvent::MouseButtonDblClick) << left << left << int(Effect::Disarm) << true;
        QTest::newRow("title bar moved") << int(QEvent::NonClientAreaMouseMove) << none << none << int(Effect::Arm) << false;
    }
    void eventTable()
    {
        QFETCH(int, type);
        QFETCH(int, button);
        QFETCH(int, buttons);
        QFETCH(int, readiness);
        QFETCH(bool, hides);
        const auto e = mouseEvent(QEvent::Type(type), Qt::MouseButton(button), Qt::MouseButtons(buttons));
        const Effect effect = ToolTipEventEffect(e.get());
        QCOMPARE(int(effect.readiness), readiness);
        QCOMPARE(effect.hidesAtOnce, hides);
    }

    void keysAndOtherEvents_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("readiness");
        QTest::addColumn<bool>("hides");
        QTest::newRow("key down") << 0 << int(Effect::Disarm) << true;
        QTest::newRow("key up") << 1 << int(Effect::Disarm) << true;
        QTest::newRow("wheel") << 2 << int(Effect::Unchanged) << false;
        QTest::newRow("leave") << 3 << int(Effect::Unchanged) << false;
        QTest::newRow("shortcut override") << 4 << int(Effect::Unchanged) << false;
    }
    void keysAndOtherEvents()
    {
        QFETCH(int, kind);
        QFETCH(int, readiness);
        QFETCH(bool, hides);
        std::unique_ptr<QEvent> e;
        switch (kind) {
        case 0: e = std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier); break;
        case 1: e = std::make_unique<QKeyEvent>(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier); break;
        case 2:
            e = std::make_unique<QWheelEvent>(QPointF(), QPointF(), QPoint(), QPoint(0, 120), Qt::NoButton,
                                              Qt::NoModifier, Qt::NoScrollPhase, false);
            break;
        case 3: e = std::make_unique<QEvent>(QEvent::Leave); break;
        default: e = std::make_unique<QEvent>(QEvent::ShortcutOverride); break;
        }
        const Effect effect = ToolTipEventEffect(e.get());
        QCOMPARE(int(effect.readiness), readiness);
        QCOMPARE(effect.hidesAtOnce, hides);
    }

    // Other events leave readiness alone but still count as activity.
    void otherEventsRestartTheRest()
    {
        event(0.0, moved());
        event(0.8, std::make_unique<QEvent>(QEvent::Leave));
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Armed);
        poll(1.5);
        QVERIFY(!window.shown);
        poll(2.0);
        QVERIFY(window.shown);
    }

    void nothingWithoutEvents()
    {
        for (double t = 0.5; t <= 20.0; t += 0.5)
            poll(t);
        QVERIFY(!window.shown);
        QCOMPARE(hitTests, 0);
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
    }

    void nullEventIsReported()
    {
        event(0.0, moved());
        CapturedOutput output;
        rules->handleEvent(nullptr);
        QVERIFY(output.text().contains("theEvent"));
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Armed);
        QCOMPARE(rules->lastEventTime(), 0.0);
    }

    // The first poll at which at least 1.0 s has passed shows the tooltip.
    void appearsAfterRest_data()
    {
        QTest::addColumn<double>("movedAt");
        QTest::addColumn<double>("firstShownPoll");
        QTest::newRow("exactly one second") << 0.0 << 1.0;
        QTest::newRow("just under at 1.0") << 0.1 << 1.5;
        QTest::newRow("at 1.5") << 0.5 << 1.5;
    }
    void appearsAfterRest()
    {
        QFETCH(double, movedAt);
        QFETCH(double, firstShownPoll);
        event(movedAt, moved());
        for (double t = 0.5; t < firstShownPoll; t += 0.5) {
            poll(t);
            QVERIFY2(!window.shown, qPrintable(QStringLiteral("shown early at %1").arg(t)));
        }
        poll(firstShownPoll);
        QVERIFY(window.shown);
        QCOMPARE(window.text, QStringLiteral("Red: 12"));
        QCOMPARE(window.position, pointer);
        QCOMPARE(rules->lastTimeToolTipChanged(), firstShownPoll);
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Showing);
    }

    void armedOverNothingKeepsPolling()
    {
        answer = QVariant();
        event(0.0, moved());
        poll(1.0);
        poll(1.5);
        QVERIFY(!window.shown);
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Armed);
        QCOMPARE(hitTests, 2);
        answer = QStringLiteral("Found");
        poll(2.0);
        QVERIFY(window.shown);
    }

    void wrapFlagReachesTheWindow()
    {
        answerWraps = false;
        showFirstTooltip();
        QCOMPARE(window.wrap, false);
    }

    void mouseDownThenRestShowsNothingUntilMouseUp()
    {
        event(0.0, moved());
        event(0.2, pressed());
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
        for (double t = 0.5; t <= 5.0; t += 0.5)
            poll(t);
        QVERIFY(!window.shown);
        event(5.2, released());
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Armed);
        poll(6.0);
        QVERIFY(!window.shown);
        poll(6.5);
        QVERIFY(window.shown);
    }

    void disarmingEventsWhileShowingHideAtOnce_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("key down") << 0;
        QTest::newRow("mouse down") << 1;
        QTest::newRow("mouse up") << 2;
        QTest::newRow("drag") << 3;
    }
    void disarmingEventsWhileShowingHideAtOnce()
    {
        QFETCH(int, which);
        showFirstTooltip();
        std::unique_ptr<QEvent> e = which == 0 ? keyPressed()
                                   : which == 1 ? pressed()
                                   : which == 2 ? released()
                                                : mouseEvent(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
        event(1.2, std::move(e));
        QVERIFY(!window.shown);
        QCOMPARE(window.hides, QList<bool>{false}); // no fade
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
        QVERIFY(!rules->lastShownToolTip().isValid());
        // Idle: resting does not bring it back.
        poll(3.0);
        QVERIFY(!window.shown);
    }

    void movingWhileShowingChangesNothing()
    {
        showFirstTooltip();
        event(1.2, moved());
        QVERIFY(window.shown);
        QVERIFY(window.hides.isEmpty());
        QCOMPARE(rules->lastEventTime(), 1.2);
    }

    // Same answer: neither laid out again nor moved; the limit counts from
    // the first showing.
    void sameAnswerKeepsWindowAndLimit()
    {
        showFirstTooltip();
        const QPointF firstPosition = window.position;
        for (double t = 1.5; t <= 11.0; t += 0.5) {
            pointer += QPointF(3, 1);
            event(t - 0.25, moved());
            answer = QString(QStringLiteral("Red: ") + QString::number(12)); // equal, not identical
            poll(t);
            QVERIFY2(window.shown, qPrintable(QString::number(t)));
        }
        QCOMPARE(window.layouts, 1);
        QCOMPARE(window.position, firstPosition);
        poll(11.5); // 10.5 s after the first showing
        QVERIFY(!window.shown);
        QCOMPARE(window.hides, QList<bool>{true});
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
    }

    void limitIsStrictlyMoreThanTenSeconds()
    {
        showFirstTooltip();
        poll(11.0); // exactly 10.0 s
        QVERIFY(window.shown);
        poll(11.5);
        QVERIFY(!window.shown);
    }

    void sameRichTextIsNotLaidOutAgain()
    {
        answer = QVariant::fromValue(QTextDocumentFragment::fromHtml(QStringLiteral("<b>Bold</b> answer")));
        showFirstTooltip();
        QVERIFY(window.rich);
        answer = QVariant::fromValue(QTextDocumentFragment::fromHtml(QStringLiteral("<b>Bold</b> answer")));
        poll(1.5);
        QCOMPARE(window.layouts, 1);
        answer = QVariant::fromValue(QTextDocumentFragment::fromHtml(QStringLiteral("<i>Bold</i> answer")));
        poll(2.0);
        QCOMPARE(window.layouts, 2);
    }

    void differentAnswerReplacesAtPointer()
    {
        showFirstTooltip();
        answer = QStringLiteral("Blue: 40");
        pointer = QPointF(350, 210);
        poll(3.0);
        QVERIFY(window.shown);
        QCOMPARE(window.hides, QList<bool>{false}); // old one at once
        QCOMPARE(window.text, QStringLiteral("Blue: 40"));
        QCOMPARE(window.position, QPointF(350, 210));
        QCOMPARE(rules->lastTimeToolTipChanged(), 3.0);
        // The new tooltip has its own ten seconds.
        poll(12.5);
        QVERIFY(window.shown);
        poll(13.5);
        QVERIFY(!window.shown);
    }

    void leavingFadesAfterGrace_data()
    {
        QTest::addColumn<double>("leftAfterInsidePoll");
        QTest::newRow("last inside at 1.0") << 1.0;
        QTest::newRow("last inside at 2.5") << 2.5;
    }
    void leavingFadesAfterGrace()
    {
        QFETCH(double, leftAfterInsidePoll);
        showFirstTooltip();
        for (double t = 1.5; t <= leftAfterInsidePoll; t += 0.5)
            poll(t);
        answer = QVariant();
        poll(leftAfterInsidePoll + 0.5);
        poll(leftAfterInsidePoll + 1.0); // exactly 1.0 s: still there
        QVERIFY(window.shown);
        poll(leftAfterInsidePoll + 1.5);
        QVERIFY(!window.shown);
        QCOMPARE(window.hides, QList<bool>{true});
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
    }

    void comingBackWithinGraceKeepsTooltip()
    {
        showFirstTooltip();
        answer = QVariant();
        poll(1.5);
        poll(2.0);
        answer = QStringLiteral("Red: 12");
        poll(2.5);
        answer = QVariant();
        poll(3.0);
        poll(3.5);
        QVERIFY(window.shown);
        QCOMPARE(window.layouts, 1);
    }

    // Neither text nor rich text: reported, nothing shown, and the same
    // answer is not reported again.
    void unsupportedAnswerIsReportedOnce()
    {
        answer = QVariant(42);
        event(0.0, moved());
        QByteArray text;
        {
            CapturedOutput output;
            poll(1.0);
            text = output.text();
        }
        QVERIFY(text.contains("The result of `toolTipAtPoint:` must be either an `NSString` or an "
                              "`NSAttributedString`"));
        QVERIFY(!window.shown);
        QCOMPARE(window.layouts, 0);
        CapturedOutput again;
        poll(1.5);
        QVERIFY(!again.text().contains("toolTipAtPoint"));
        QVERIFY(!window.shown);
    }

    void hideWhenNotShownDoesNothing()
    {
        event(0.0, moved());
        rules->hideToolTip(true);
        QVERIFY(window.hides.isEmpty());
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Armed);
    }

    void noWindowIsHarmless()
    {
        rules->setPresenter(nullptr);
        event(0.0, moved());
        poll(1.0);
        poll(1.5);
        event(2.0, keyPressed());
        QCOMPARE(rules->state(), ToolTipTiming_ZL::State::Idle);
    }

    void sameAnswerRule_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<bool>("same");
        const QString text = QStringLiteral("abc");
        const auto rich = QTextDocumentFragment::fromHtml(QStringLiteral("<b>x</b>"));
        QTest::newRow("identical text") << QVariant(text) << QVariant(text) << true;
        QTest::newRow("equal text") << QVariant(text) << QVariant(QString(QStringLiteral("ab")) + QLatin1Char('c')) << true;
        QTest::newRow("different text") << QVariant(text) << QVariant(QStringLiteral("abd")) << false;
        QTest::newRow("identical rich") << QVariant::fromValue(rich) << QVariant::fromValue(rich) << true;
        QTest::newRow("text vs rich") << QVariant(QStringLiteral("x")) << QVariant::fromValue(rich) << false;
        QTest::newRow("nothing") << QVariant() << QVariant() << false;
        QTest::newRow("nothing vs text") << QVariant() << QVariant(text) << false;
    }
    void sameAnswerRule()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QFETCH(bool, same);
        QCOMPARE(ToolTipsAreSame_ZL(a, b), same);
    }
};

QTEST_MAIN(TestToolTipTiming)
#include "tst_tooltiptiming.moc"
