// The tooltip timing rules, driven by scripts on an injected clock against a
// recording stand-in for the window.
#include "MessageCapture.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQSettings.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtTest/QTest>

#include <memory>

using namespace KQToolTipRules;

namespace {

// Logs what the rules do to the window: "set:Text" ("set~:" unwrapped),
// "rich:Text", "at:x", and "show@t", "hide@t" (at once), "fade@t".
class RecordingWindow : public ToolTipPresenter_ZL
{
public:
    explicit RecordingWindow(const double &now) : m_now(now) {}
    bool isShown() const override { return shown; }
    void setString(const QString &text, bool wrap) override { log << (wrap ? "set:" : "set~:") + text; }
    void setAttributedString(const QTextDocumentFragment &text, bool) override { log << "rich:" + text.toPlainText(); }
    void positionAtMouseLocation(QPointF p) override { log << QStringLiteral("at:%1").arg(p.x()); }
    void show() override { shown = true; log << QStringLiteral("show@%1").arg(m_now); }
    void hide(bool fade) override { shown = false; log << QStringLiteral("%1@%2").arg(fade ? "fade" : "hide").arg(m_now); }
    bool shown = false;
    QStringList log;

private:
    const double &m_now;
};

std::unique_ptr<QEvent> makeEvent(QEvent::Type type, Qt::MouseButtons held = Qt::NoButton, int key = Qt::Key_A)
{
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease)
        return std::make_unique<QKeyEvent>(type, key, Qt::NoModifier);
    if (type == QEvent::Leave)
        return std::make_unique<QEvent>(type);
    return std::make_unique<QMouseEvent>(type, QPointF(1, 1), QPointF(1, 1), Qt::LeftButton, held, Qt::NoModifier);
}

} // namespace

class TestToolTipTiming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    // Script steps: m/d/u/k/o/n@t = move, left down, left up, key, other
    // event (leave), no event at all; p@t = poll. a=Text answers text
    // (a= nothing), r=Text rich text, i=42 a number, w=0 clears the wrap
    // flag, x=350 moves the pointer, "detach" leaves the rules windowless.
    void script_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("report"); // expected exactly once in the output
        const QString shownAt1 = QStringLiteral("set:Red at:300 show@1");
        const char *const unsupported = "The result of `toolTipAtPoint:` must be either an `NSString` or an `NSAttributedString`";
        auto row = [](const char *name, const char *steps, const QString &window, const char *state, const char *report = "") {
            QTest::newRow(name) << QString::fromLatin1(steps) << window << QString::fromLatin1(state) << QString::fromLatin1(report);
        };
        row("never armed: nothing", "p@0.5 p@1 p@5 p@20", "", "Idle");
        row("first poll a second after the move", "m@0 p@0.5 p@1", shownAt1, "Showing");
        row("rest counts from the last move", "m@0.1 p@0.5 p@1 p@1.5", "set:Red at:300 show@1.5", "Showing");
        row("other events restart the rest", "m@0 o@0.8 p@1.5 p@2", "set:Red at:300 show@2", "Showing");
        row("armed over nothing keeps polling", "a= m@0 p@1 p@1.5 a=Found p@2", "set:Found at:300 show@2", "Showing");
        row("mouse down then rest: nothing until up", "m@0 d@0.2 p@1 p@3 u@5.2 p@6 p@6.5", "set:Red at:300 show@6.5", "Showing");
        row("key hides at once, stays hidden", "m@0 p@1 k@1.2 p@3", shownAt1 + " hide@1.2", "Idle");
        row("moving keeps it", "m@0 p@1 x=320 m@1.2 p@1.5", shownAt1, "Showing");
        row("same answer: not moved, limit from first showing",
            "m@0 p@1 x=310 m@1.2 p@1.5 x=320 m@4 p@4.5 p@8 p@11 p@11.5", shownAt1 + " fade@11.5", "Idle");
        row("different answer: old at once, new at pointer",
            "m@0 p@1 a=Blue x=350 p@3 p@12.5 p@13.5", shownAt1 + " hide@3 set:Blue at:350 show@3 fade@13.5", "Idle");
        row("leaving fades after more than a second", "m@0 p@1 a= p@1.5 p@2 p@2.5", shownAt1 + " fade@2.5", "Idle");
        row("back within the grace keeps it", "m@0 p@1 a= p@1.5 a=Red p@2 a= p@2.5 p@3", shownAt1, "Showing");
        row("same rich text is not laid out again", "r=<b>Bold</b> m@0 p@1 p@1.5", "rich:Bold at:300 show@1", "Showing");
        row("the view may clear the wrap flag", "w=0 m@0 p@1", "set~:Red at:300 show@1", "Showing");
        row("neither text nor rich text: reported once", "i=42 m@0 p@1 p@1.5", "", "Armed", unsupported);
        row("a notification without an event", "m@0 n@0.5 p@1", shownAt1, "Showing", "theEvent");
        row("no window: harmless", "detach m@0 p@1 p@1.5 k@2", "", "Idle");
    }
    void script()
    {
        QFETCH(QString, steps);
        QFETCH(QString, window);
        QFETCH(QString, state);
        QFETCH(QString, report);
        double now = 0;
        QPointF pointer(300, 200);
        QVariant answer = QStringLiteral("Red");
        bool clearWrap = false;
        RecordingWindow recorder(now);
        ToolTipTiming_ZL rules;
        rules.setClock([&now] { return now; });
        rules.setPointerLocation([&pointer] { return pointer; });
        rules.setHitTest([&](bool *wrap, QPointF) {
            if (clearWrap)
                *wrap = false;
            if (answer.metaType() == QMetaType::fromType<QString>()) // equal, never the same object
                return QVariant(QString(answer.toString().constData(), answer.toString().size()));
            return answer;
        });
        rules.setPresenter(&recorder);

        MessageCapture output;
        for (const QString &step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QString value = step.mid(2);
            if (step == QLatin1String("detach"))
                rules.setPresenter(nullptr);
            else if (step.startsWith(QLatin1String("a=")))
                answer = value.isEmpty() ? QVariant() : QVariant(value);
            else if (step.startsWith(QLatin1String("r=")))
                answer = QVariant::fromValue(QTextDocumentFragment::fromHtml(value));
            else if (step.startsWith(QLatin1String("i=")))
                answer = value.toInt();
            else if (step.startsWith(QLatin1String("w=")))
                clearWrap = value == QLatin1String("0");
            else if (step.startsWith(QLatin1String("x=")))
                pointer.setX(value.toDouble());
            else {
                now = value.toDouble();
                const int kind = QByteArrayLiteral("pmduko").indexOf(step.at(0).toLatin1());
                const QEvent::Type types[] = {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                              QEvent::KeyPress, QEvent::Leave};
                if (kind == 0)
                    rules.timerFired();
                else if (kind > 0)
                    rules.handleEvent(makeEvent(types[kind - 1], kind == 2 ? Qt::LeftButton : Qt::NoButton).get());
                else if (step.startsWith(QLatin1Char('n')))
                    rules.handleEvent(nullptr);
                else
                    QFAIL(qPrintable(step));
            }
        }
        const QString text = QString::fromUtf8(output.text());
        QCOMPARE(recorder.log.join(QLatin1Char(' ')), window);
        const char *names[] = {"Idle", "Armed", "Showing"};
        QCOMPARE(QString::fromLatin1(names[int(rules.state())]), state);
        QCOMPARE(text.count(report.isEmpty() ? QStringLiteral("\n") : report), report.isEmpty() ? 0 : 1);
    }

    // What each kind of event does: readiness (+ arm, - disarm, = unchanged)
    // and whether it hides a shown tooltip at once.
    void eventTable_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("buttons"); // held, for moves; the key, for keys
        QTest::addColumn<QString>("effect");
        const int none = Qt::NoButton;
        const int a = Qt::Key_A;
        QTest::newRow("left/right/other down") << int(QEvent::MouseButtonPress) << none << "-hide";
        QTest::newRow("double click") << int(QEvent::MouseButtonDblClick) << none << "-hide";
        QTest::newRow("button up") << int(QEvent::MouseButtonRelease) << none << "+hide";
        QTest::newRow("moved") << int(QEvent::MouseMove) << none << "+";
        QTest::newRow("left dragged") << int(QEvent::MouseMove) << int(Qt::LeftButton) << "-hide";
        QTest::newRow("right dragged") << int(QEvent::MouseMove) << int(Qt::RightButton) << "-hide";
        QTest::newRow("other dragged") << int(QEvent::MouseMove) << int(Qt::MiddleButton) << "-hide";
        QTest::newRow("title bar move") << int(QEvent::NonClientAreaMouseMove) << none << "+";
        QTest::newRow("key down") << int(QEvent::KeyPress) << a << "-hide";
        QTest::newRow("key up") << int(QEvent::KeyRelease) << a << "-hide";
        // A modifier on its own only changes the flags.
        QTest::newRow("Shift down") << int(QEvent::KeyPress) << int(Qt::Key_Shift) << "=";
        QTest::newRow("Control up") << int(QEvent::KeyRelease) << int(Qt::Key_Control) << "=";
        QTest::newRow("Alt down") << int(QEvent::KeyPress) << int(Qt::Key_Alt) << "=";
        QTest::newRow("Meta down") << int(QEvent::KeyPress) << int(Qt::Key_Meta) << "=";
        QTest::newRow("wheel, crossing, anything else") << int(QEvent::Leave) << none << "=";
    }
    void eventTable()
    {
        QFETCH(int, type);
        QFETCH(int, buttons);
        QFETCH(QString, effect);
        const ToolTipEventEffect_ZL result = ToolTipEventEffect(makeEvent(QEvent::Type(type), Qt::MouseButtons(buttons), buttons).get());
        const QString got = QLatin1String("=+-").mid(int(result.readiness), 1) + (result.hidesAtOnce ? "hide" : "");
        QCOMPARE(got, effect);
    }

    // (Equal text, other text and the same rich text: the script's rows.)
    void sameAnswer_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<bool>("same");
        const auto rich = QTextDocumentFragment::fromHtml(QStringLiteral("<b>x</b>"));
        QTest::newRow("equal rich") << QVariant::fromValue(rich) << QVariant::fromValue(QTextDocumentFragment::fromHtml(QStringLiteral("<b>x</b>"))) << true;
        QTest::newRow("text vs rich") << QVariant(QStringLiteral("x")) << QVariant::fromValue(rich) << false;
        QTest::newRow("nothing twice") << QVariant() << QVariant() << false;
    }
    void sameAnswer()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QFETCH(bool, same);
        QCOMPARE(ToolTipsAreSame_ZL(a, b), same);
    }
};

QTEST_MAIN(TestToolTipTiming)
#include "tst_tooltiptiming.moc"
