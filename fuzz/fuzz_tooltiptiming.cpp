// The tooltip timing rules over arbitrary sequences of events, polls, clock
// steps, hit-test answers and hidings. The oracle is what a user must never
// see: a tooltip that appears without the pointer having rested after a
// movement or a release, one that stays past its time limit or its grace
// time, one that survives a click or a key, or one showing a stale text.
#include "FuzzSupport.h"
#include "ToolTipTiming_ZL_p.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>

#include <memory>

using namespace FuzzSupport;
using namespace KQToolTipRules;

namespace {

using Timing = ToolTipTiming_ZL;

struct Presenter : ToolTipPresenter_ZL
{
    bool shown = false;
    int shows = 0;
    QVariant text;
    bool isShown() const override { return shown; }
    void setString(const QString &s, bool) override { text = s; }
    void setAttributedString(const QTextDocumentFragment &f, bool) override { text = QVariant::fromValue(f); }
    void positionAtMouseLocation(QPointF) override {}
    void show() override
    {
        shown = true;
        ++shows;
    }
    void hide(bool) override { shown = false; }
};

// What an event does by the rules' table: arms, disarms, hides at once.
struct Event
{
    std::unique_ptr<QEvent> event;
    int readiness; // +1 arms, -1 disarms, 0 leaves alone
    bool hides;
};

Event makeEvent(uint8_t kind)
{
    const QPointF p(10, 10);
    auto mouse = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons) {
        return std::make_unique<QMouseEvent>(type, p, p, button, buttons, Qt::NoModifier);
    };
    switch (kind % 9) {
    case 0:
        return {mouse(QEvent::MouseMove, Qt::NoButton, Qt::NoButton), +1, false};
    case 1:
        return {mouse(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton), -1, true};
    case 2:
        return {mouse(QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton), -1, true};
    case 3:
        return {mouse(QEvent::MouseButtonRelease, Qt::MiddleButton, Qt::NoButton), +1, true};
    case 4:
        return {std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier), -1, true};
    case 5:
        return {std::make_unique<QKeyEvent>(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier), -1, true};
    case 6:
        return {std::make_unique<QKeyEvent>(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier), 0, false};
    case 7:
        return {std::make_unique<QWheelEvent>(p, p, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                                              Qt::NoScrollPhase, false),
                0, false};
    default:
        return {std::make_unique<QEvent>(QEvent::Enter), 0, false};
    }
}

double clockStep(FuzzedDataProvider &data)
{
    static const double steps[] = {0.0, 0.25, 0.5, 0.5, 0.999999, 1.0, 1.0000001, 5.0, 9.5, 10.0, 30.0};
    const uint8_t pick = data.ConsumeIntegral<uint8_t>();
    if (pick < 200)
        return steps[pick % (sizeof(steps) / sizeof(steps[0]))];
    return data.ConsumeFloatingPointInRange(0.0, 20.0);
}

QVariant answer(uint8_t pick)
{
    static const auto *fragment = new QTextDocumentFragment(QTextDocumentFragment::fromPlainText(QStringLiteral("rich")));
    switch (pick % 6) {
    case 0:
    case 1:
        return QVariant();
    case 2:
        return QStringLiteral("A");
    case 3:
        return QStringLiteral("B");
    case 4:
        return QVariant::fromValue(*fragment);
    default:
        return QVariant(7); // neither kind of text: logged, never shown
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    installQuietHandler();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the fuzzer exits with Qt's objects still alive.
    static auto *app = new QGuiApplication(*argc, *argv);
    Q_UNUSED(app);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    double now = 1000.0;
    double lastEventTime = -1e9; // the rules have seen no event yet
    bool armed = false;
    double putUpAt = 0.0, lastFound = 0.0;
    QVariant current;      // what the hit test answers now
    QVariant shownAnswer;  // the answer the presenter shows
    bool polledNow = false, foundNow = false;

    Presenter presenter;
    Timing timing;
    timing.setClock([&] { return now; });
    timing.setPointerLocation([] { return QPointF(10, 10); });
    timing.setHitTest([&](bool *wrap, QPointF) {
        *wrap = (int(now) & 1) == 0;
        polledNow = true;
        foundNow = current.isValid();
        if (foundNow)
            lastFound = now;
        return current;
    });
    timing.setPresenter(&presenter);

    while (data.remaining_bytes() > 0) {
        const bool wasShown = presenter.shown;
        const int shows = presenter.shows;
        switch (data.ConsumeIntegralInRange(0, 6)) {
        case 0: {
            const Event e = makeEvent(data.ConsumeIntegral<uint8_t>());
            timing.handleEvent(e.event.get());
            lastEventTime = now;
            if (e.readiness != 0)
                armed = e.readiness > 0;
            check(presenter.shows == shows, "an event shows nothing");
            if (e.hides) {
                check(!presenter.shown, "hidden at once by a click or key");
                if (wasShown)
                    armed = false; // hiding clears the readiness the event gave
            } else {
                check(presenter.shown == wasShown, "a plain movement leaves the tooltip alone");
            }
            break;
        }
        case 1:
        case 2: {
            polledNow = foundNow = false;
            timing.timerFired();
            if (presenter.shows != shows) {
                if (!wasShown)
                    check(armed && now - lastEventTime >= Timing::restTime, "shown only after a rest");
                check(foundNow && current.metaType() != QMetaType::fromType<int>(), "shown only what is answered");
                putUpAt = now;
                shownAnswer = current;
            }
            if (presenter.shown) {
                check(polledNow, "a shown tooltip is checked at every poll");
                if (foundNow)
                    check(now - putUpAt <= Timing::showLimit, "never past the time limit");
                else
                    check(now - lastFound <= Timing::graceTime, "never past the grace time");
                check(ToolTipsAreSame_ZL(presenter.text, shownAnswer), "the shown text is the answer put up");
            } else if (wasShown && current.metaType() != QMetaType::fromType<int>()) {
                // Hidden by the rules, not replaced by an answer that cannot be shown.
                armed = false;
            }
            break;
        }
        case 3:
            now += clockStep(data);
            break;
        case 4:
            current = answer(data.ConsumeIntegral<uint8_t>());
            break;
        case 5:
            // The window goes away by itself (deactivation, closing).
            if (presenter.shown) {
                presenter.shown = false;
                armed = false;
            }
            timing.windowWasHidden();
            break;
        default:
            timing.hideToolTip(data.ConsumeBool());
            check(!presenter.shown, "hidden on request");
            if (wasShown)
                armed = false;
            break;
        }
        check(presenter.shown == (timing.state() == Timing::State::Showing), "state matches the window");
        if (!presenter.shown)
            check(armed == (timing.state() == Timing::State::Armed), "armed as the events say");
    }
    return 0;
}
