// The tooltips: timing rules on an injected clock, hit testing, the window, the controller on real input.
#include "MessageCapture.h"
#include "ToolTipController_ZL_p.h"
#include "ToolTipHitTesting_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"
#include "ToolTipWindow_ZL_p.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipHitTesting_ZL.h>
#include <TarnCommon/ToolTipTextView_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QToolBar>

#include <cmath>
#include <memory>

using namespace KQToolTipRules;

// A widget whose tooltip names it and the point it was asked about.
class AnsweringWidget : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    explicit AnsweringWidget(const QString &name, QWidget *parent = nullptr)
        : QWidget(parent)
    {
        setObjectName(name);
    }
    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override
    {
        ++asked;
        *wrapText = wraps;
        return QStringLiteral("%1 %2,%3").arg(objectName()).arg(point.x()).arg(point.y());
    }
    int asked = 0;
    bool wraps = true;
};

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
    // Script steps: m/d/u/k/o/n@t = move, left down, left up, key, other
    // event (leave), no event at all; g/t/s@t = left-dragged move, title bar
    // move, Shift alone; p@t = poll. a=Text answers text (a= nothing),
    // r=Text rich text, i=42 a number, x=350 moves the pointer,
    // "detach" leaves the rules windowless.
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
        row("a title bar move arms too", "t@0 p@1", shownAt1, "Showing");
        row("other events restart the rest", "m@0 o@0.8 p@1.5 p@2", "set:Red at:300 show@2", "Showing");
        row("armed over nothing keeps polling", "a= m@0 p@1 p@1.5 a=Found p@2", "set:Found at:300 show@2", "Showing");
        row("mouse down then rest: nothing until up", "m@0 d@0.2 p@1 p@3 u@5.2 p@6 p@6.5", "set:Red at:300 show@6.5", "Showing");
        row("button up hides at once", "m@0 p@1 u@1.2", shownAt1 + " hide@1.2", "Idle");
        row("key hides at once, stays hidden", "m@0 p@1 k@1.2 p@3", shownAt1 + " hide@1.2", "Idle");
        row("dragging hides at once, disarms", "m@0 p@1 g@1.2 p@3", shownAt1 + " hide@1.2", "Idle");
        row("a modifier alone changes nothing", "m@0 p@1 s@1.2 p@1.5", shownAt1, "Showing");
        row("same answer: not moved, limit from first showing",
            "m@0 p@1 x=310 m@1.2 p@1.5 x=320 m@4 p@4.5 p@8 p@11 p@11.5", shownAt1 + " fade@11.5", "Idle");
        row("different answer: old at once, new at pointer",
            "m@0 p@1 a=Blue x=350 p@3 p@12.5 p@13.5", shownAt1 + " hide@3 set:Blue at:350 show@3 fade@13.5", "Idle");
        row("leaving fades after more than a second", "m@0 p@1 a= p@1.5 p@2 p@2.5", shownAt1 + " fade@2.5", "Idle");
        row("same rich text is not laid out again", "r=<b>Bold</b> m@0 p@1 p@1.5", "rich:Bold at:300 show@1", "Showing");
        row("other rich text replaces it", "r=<b>Bold</b> m@0 p@1 r=<i>Other</i> p@1.5",
            "rich:Bold at:300 show@1 hide@1.5 rich:Other at:300 show@1.5", "Showing");
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
        RecordingWindow recorder(now);
        ToolTipTiming_ZL rules;
        rules.setClock([&now] { return now; });
        rules.setPointerLocation([&pointer] { return pointer; });
        rules.setHitTest([&](bool *, QPointF) {
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
            else if (step.startsWith(QLatin1String("x=")))
                pointer.setX(value.toDouble());
            else {
                now = value.toDouble();
                const int kind = QByteArrayLiteral("pmdukogts").indexOf(step.at(0).toLatin1());
                const QEvent::Type types[] = {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::KeyPress,
                                              QEvent::Leave,     QEvent::MouseMove,        QEvent::NonClientAreaMouseMove, QEvent::KeyPress};
                if (kind == 0)
                    rules.timerFired();
                else if (kind > 0)
                    rules.handleEvent(makeEvent(types[kind - 1], kind == 2 || kind == 6 ? Qt::LeftButton : Qt::NoButton,
                                                kind == 8 ? Qt::Key_Shift : Qt::Key_A).get());
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
};

class TestToolTipHitTesting : public QObject
{
    Q_OBJECT

    // A 400 x 300 window at (100, 100); answering widgets unless said:
    //   back 10,10 200x100 and front 60,60 200x100 (later: in front)
    //   labelled 10,180 150x100 with a label at 0,0 50x50
    //   hiding 200,180 150x100 with a hidden child at 0,0 50x50
    //   nowrap 360,250 30x30, which clears the wrap flag
    std::unique_ptr<QWidget> window;
    QList<AnsweringWidget *> answering;

    AnsweringWidget *add(const char *name, QRect frame)
    {
        auto *w = new AnsweringWidget(QString::fromLatin1(name), window.get());
        w->setGeometry(frame);
        answering.append(w);
        return w;
    }

private Q_SLOTS:
    void init()
    {
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 400, 300);
        answering.clear();
        add("back", QRect(10, 10, 200, 100));
        add("front", QRect(60, 60, 200, 100));
        (new QLabel(QStringLiteral("label"), add("labelled", QRect(10, 180, 150, 100))))->setGeometry(0, 0, 50, 50);
        auto *hidden = new QWidget(add("hiding", QRect(200, 180, 150, 100)));
        hidden->setGeometry(0, 0, 50, 50);
        hidden->hide();
        add("nowrap", QRect(360, 250, 30, 30))->wraps = false;
        (new QWidget(window.get(), Qt::Dialog))->setGeometry(0, 0, 400, 300); // its own window
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() { window.reset(); }

    // Window coordinates = global - (100, 100).
    void answers_data()
    {
        QTest::addColumn<QPointF>("global");
        QTest::addColumn<QString>("tooltip"); // empty: none, and nobody asked; "~": the wrap flag cleared
        const auto row = [](const char *name, QPointF global, const char *tooltip) { QTest::newRow(name) << global << QString::fromLatin1(tooltip); };
        row("back alone", {120, 120}, "back 10,10");
        row("overlap: later sibling wins", {170, 170}, "front 10,10");
        row("right edge is outside", {310, 130}, "");
        row("a label covers the point", {120, 290}, "");
        row("beside the label", {200, 330}, "labelled 90,50");
        row("a hidden child covers the point", {310, 290}, "");
        row("title area above the window", {200, 90}, "");
        row("a widget that does not wrap", {470, 360}, "nowrap 10,10~");
    }
    void answers()
    {
        QFETCH(QPointF, global);
        QFETCH(QString, tooltip);
        bool wrap = true;
        QWidget *w = window.get();
        const QVariant answer = ToolTipAtScreenPoint(&wrap, global, [w](QPointF) { return w; });
        QCOMPARE(answer.toString() + (wrap ? "" : "~"), tooltip);
        int asked = 0;
        for (const AnsweringWidget *w : std::as_const(answering))
            asked += w->asked;
        QCOMPARE(asked, tooltip.isEmpty() ? 0 : 1); // only the deepest widget is asked
    }

    // Whose window is at the point is the window system's answer.
    void otherApplicationOrDesktop()
    {
        bool wrap = true;
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(120, 120)), window.get());
        QCOMPARE(ToolTipApplicationWindowAt(QPointF(900, 650)), nullptr);
        QVERIFY(!ToolTipAtScreenPoint(&wrap, QPointF(900, 650)).isValid());
    }

    // A widget in a tool bar answers too; a hidden item is never asked, and the
    // bar's own area between items is neither the content nor an item.
    void toolBarItem()
    {
        QMainWindow main;
        main.setCentralWidget(new AnsweringWidget(QStringLiteral("central")));
        QToolBar *toolBar = main.addToolBar(QStringLiteral("Tools"));
        auto *gone = new AnsweringWidget(QStringLiteral("gone"));
        toolBar->addWidget(gone)->setVisible(false);
        auto *swatch = new AnsweringWidget(QStringLiteral("swatch"));
        swatch->setFixedSize(40, 20);
        toolBar->addWidget(swatch);
        main.setGeometry(100, 100, 400, 300);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        bool wrap = true;
        const QPointF global(swatch->mapToGlobal(QPoint(3, 4)));
        QCOMPARE(ToolTipAtScreenPoint(&wrap, global, [&main](QPointF) { return &main; }).toString(), QStringLiteral("swatch 3,4"));
        const QPoint between = toolBar->mapTo(&main, QPoint(toolBar->width() - 2, toolBar->height() / 2));
        QCOMPARE(GetViewAtPointInWindow(&main, QPointF(between)), nullptr);
        QCOMPARE(gone->asked, 0);
        QCOMPARE(GetViewAtPointInToolbar(nullptr, QPointF(5, 5)), nullptr);
    }
};

class TestToolTipWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The window fits the used rectangle of the text plus 3 above and below. A plain string replaces
    // the text in place when it can: the result must be the document a plain fragment gives,
    // whatever was shown before.
    void sizeAndText_data()
    {
        QTest::addColumn<QString>("before"); // HTML; empty: an earlier plain string
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("wrap");
        QTest::addColumn<bool>("narrow"); // several lines, at most 100 wide
        const QString longText = QStringLiteral("A long tooltip text that needs several lines when it wraps");
        QTest::newRow("long, wrapped") << QString() << longText << true << true;
        QTest::newRow("long, one line") << QString() << longText << false << false;
        QTest::newRow("after a bold list") << QStringLiteral("<ul><li><b>bold</b></li></ul>") << QStringLiteral("plain") << true << false;
    }
    void sizeAndText()
    {
        QFETCH(QString, before);
        QFETCH(QString, text);
        QFETCH(bool, wrap);
        QFETCH(bool, narrow);
        ToolTipWindow_ZL reused;
        before.isEmpty() ? reused.setString(QStringLiteral("earlier text"), wrap)
                         : reused.setAttributedString(QTextDocumentFragment::fromHtml(before), true);
        reused.setString(text, wrap);
        ToolTipWindow_ZL fresh;
        fresh.setAttributedString(QTextDocumentFragment::fromPlainText(text), wrap);
        QCOMPARE(reused.size(), fresh.size());
        QCOMPARE(reused.textView()->document()->toHtml(), fresh.textView()->document()->toHtml());
        const QRectF used = reused.textView()->usedRect();
        QCOMPARE(reused.size(), QSize(int(std::ceil(used.right())), int(std::ceil(used.bottom() + 6))));
        QCOMPARE(reused.textView()->geometry(), QRect(QPoint(0, 0), reused.size()));
        const double line = QFontMetricsF(reused.textView()->document()->defaultFont()).lineSpacing();
        QCOMPARE(used.height() >= 3 * line - 1 && reused.width() <= 100, narrow);
    }

    // Pale yellow with a black frame at a third, unless a subclass paints its own background.
    void painting_data()
    {
        QTest::addColumn<bool>("subclassPaints");
        QTest::newRow("default background and frame") << false;
        QTest::newRow("background painted by a subclass") << true;
    }
    void painting()
    {
        QFETCH(bool, subclassPaints);
        struct GreenView : ToolTipTextView_ZL
        {
            void drawViewBackgroundInRect(QPainter &painter, const QRectF &) override { painter.fillRect(rect(), Qt::green); }
        } green;
        green.resize(40, 20);
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("W"), true);
        QWidget *view = subclassPaints ? static_cast<QWidget *>(&green) : window.textView();
        QImage image(view->size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        if (subclassPaints) {
            QCOMPARE(image.pixelColor(0, 0), QColor(Qt::green));
        } else {
            QCOMPARE(image.pixelColor(2, view->height() / 2), QColor(255, 255, 215, 221));
            QCOMPARE(image.pixelColor(view->width() / 2, 0), QColor(0, 0, 0, 85));
        }
    }

    // In y-up space: primary (0, 0, 1000, 700), secondary (1000, 100, 800, 600);
    // the cursor reaches 16 below its hot spot.
    void placement_data()
    {
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<double>("width");
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<bool>("onScreen");
        const auto row = [](const char *name, QPointF p, double width, QPointF origin, bool on) {
            QTest::newRow(name) << p << width << origin << on;
        };
        row("top 5 under the cursor", {300, 400}, 80, {300, 359}, true);
        row("bottom: 30 above", {300, 30}, 80, {300, 60}, true);
        row("right edge", {950, 400}, 80, {920, 359}, true);
        row("secondary's left edge", {1000, 300}, 80, {1000, 259}, true);
        row("right of every screen: at the pointer", {1800, 300}, 80, {1800, 259}, false);
    }
    void placement()
    {
        QFETCH(QPointF, pointer);
        QFETCH(double, width);
        QFETCH(QPointF, origin);
        QFETCH(bool, onScreen);
        MessageCapture output;
        QCOMPARE(ToolTipWindowOrigin(pointer, QSizeF(width, 20), {QRectF(0, 0, 1000, 700), QRectF(1000, 100, 800, 600)}, 16.0), origin);
        const QByteArray expected = QStringLiteral("No screen found at point {%1, %2}").arg(pointer.x()).arg(pointer.y()).toUtf8();
        QCOMPARE(output.text().contains(expected), !onScreen);
    }

    // Hidden at once or faded; a fade counts as hidden, and showing again cuts it short.
    void fade()
    {
        ToolTipWindow_ZL window;
        window.hide(true); // not shown: nothing, not even an animation
        QVERIFY(window.findChild<QVariantAnimation *>() == nullptr);
        window.show();
        window.hide(false);
        QVERIFY(!window.isVisible());
        window.show();
        window.hide(true);
        QVERIFY(window.isVisible() && !window.isShown());
        auto *fade = window.findChild<QVariantAnimation *>();
        fade->setCurrentTime(fade->duration() / 2);
        QVERIFY(window.windowOpacity() < 1.0);
        window.show();
        QVERIFY(!window.isFading() && window.isShown() && window.windowOpacity() == 1.0);
        window.hide(true);
        fade->setCurrentTime(fade->duration());
        QVERIFY(!window.isFading() && !window.isVisible());
    }
};

// Showing after a real pointer rests, wrapped, and hiding when it leaves: tst_tooltips_xvfb.
class TestToolTipController : public QObject
{
    Q_OBJECT

    double now = 100.0;
    std::unique_ptr<QWidget> window;
    QPointer<AnsweringWidget> chart;
    std::unique_ptr<ToolTipController_ZL> controller;

    ToolTipWindow_ZL *tip() const { return controller->toolTipWindow(); }
    // Time passes, then the timer fires (through its own signal).
    void poll(double seconds)
    {
        now += seconds;
        QVERIFY(QMetaObject::invokeMethod(ToolTipControllerTimer(controller.get()), "timeout"));
    }
    QString shownText() const { return tip() && tip()->isShown() ? tip()->attributedString().toPlainText() : QString(); }

private Q_SLOTS:
    // A chart window at (100, 100) and a started controller whose pointer rests at chart (50, 60).
    void init()
    {
        window = std::make_unique<QWidget>();
        window->setGeometry(100, 100, 300, 200);
        chart = new AnsweringWidget(QStringLiteral("chart"), window.get());
        chart->setGeometry(0, 0, 300, 200);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        controller = std::make_unique<ToolTipController_ZL>();
        controller->setClock([this] { return now; }); // as an application's own test does
        ToolTipControllerTiming(controller.get()).setPointerLocation([] { return QPointF(150, 160); });
        controller->startup();
    }
    void cleanup()
    {
        controller.reset();
        window.reset();
    }

    // Real input through the window system, which KQApplication posts.
    void hidesAtOnceOnPressAndNeedsTheNotification()
    {
        {
            const QSignalBlocker silence(KQAfterEventNotifier::instance());
            QTest::mouseMove(window.get(), QPoint(50, 70));
            poll(3.0);
            QVERIFY(!tip()->isVisible());
            QCOMPARE(chart->asked, 0);
        }
        QTest::mouseMove(window.get(), QPoint(50, 60));
        poll(1.0);
        QCOMPARE(shownText(), QStringLiteral("chart 50,60"));
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
        QVERIFY(!tip()->isVisible()); // at once, no fade
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
    }

    // Closing every window (as a quit that is then cancelled does) takes the tooltip
    // window too, and the next tooltip comes in a new one.
    void closingEveryWindowTakesTheTooltipWindow()
    {
        QTest::mouseMove(window.get(), QPoint(40, 60));
        poll(1.0);
        QVERIFY(tip()->isShown());
        QApplication::closeAllWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(tip(), nullptr);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTest::mouseMove(window.get(), QPoint(50, 60));
        poll(1.0);
        QCOMPARE(shownText(), QStringLiteral("chart 50,60"));
    }

    // Qt hands a window's input on to widgets as new events; the hook posts once per
    // input, for the event addressed to the window.
    void postsOncePerInput()
    {
        QTest::mouseMove(window.get(), QPoint(10, 10));
        int posted = 0;
        const auto counter = connect(KQAfterEventNotifier::instance(), &KQAfterEventNotifier::afterEventSent, this,
                                     [&](QEvent *e) { posted += e->type() == QEvent::MouseButtonPress ? 1 : 0; });
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        disconnect(counter);
        QCOMPARE(posted, 1);
        // Paint traffic of a window and events sent straight to a widget are not input.
        QEvent update(QEvent::UpdateRequest);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        QVERIFY(!KQIsAfterEventCandidate(window->windowHandle(), &update) && !KQIsAfterEventCandidate(chart, &key));
        QVERIFY(KQIsAfterEventCandidate(window->windowHandle(), &key));
    }
};

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    KQSettings::enableTestMode();
    TestToolTipTiming timing;
    TestToolTipHitTesting hitTesting;
    TestToolTipWindow window;
    TestToolTipController controller;
    int failures = 0;
    for (QObject *test : std::initializer_list<QObject *>{&timing, &hitTesting, &window, &controller})
        failures += QTest::qExec(test, argc, argv);
    return failures;
}
#include "tst_tooltips.moc"
