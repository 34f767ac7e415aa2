#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QTextDocumentFragment>

#include <functional>

class QEvent;

// The tooltip machinery's inner rules, for the library's tests and tools
// only; applications use ToolTipController_ZL.
namespace KQToolTipRules {

// What one event does to the tooltip: whether a tooltip may follow it, and
// whether it removes a visible tooltip at once. Only a plain movement or a
// button release arms; presses, drags and keys disarm; of those only the
// plain movement leaves a visible tooltip alone. Everything else (wheel,
// crossings, a modifier key pressed or released on its own...) changes
// nothing: users hold Shift or Control before a modified click.
struct ToolTipEventEffect_ZL
{
    enum Readiness { Unchanged, Arm, Disarm };
    Readiness readiness = Unchanged;
    bool hidesAtOnce = false;
};

ToolTipEventEffect_ZL ToolTipEventEffect(const QEvent *event);

// Whether two answers are the same tooltip: the very same text first (a copy
// shares its data), equal contents second, so an unchanged tooltip is never
// laid out again.
bool ToolTipsAreSame_ZL(const QVariant &a, const QVariant &b);

// The tooltip window as the timing rules see it.
class ToolTipPresenter_ZL
{
public:
    virtual ~ToolTipPresenter_ZL();
    virtual bool isShown() const = 0;
    virtual void setString(const QString &text, bool wrapText) = 0;
    virtual void setAttributedString(const QTextDocumentFragment &text, bool wrapText) = 0;
    virtual void positionAtMouseLocation(QPointF globalPoint) = 0;
    virtual void show() = 0;
    virtual void hide(bool fade) = 0;
};

// The controller's rules: when a tooltip appears, is replaced, fades or goes
// at once. Time, the pointer and the hit test are injected, so every
// transition can be driven without waiting for a timer.
class ToolTipTiming_ZL
{
public:
    using Clock = std::function<double()>;                 // seconds, monotonic
    using PointerLocation = std::function<QPointF()>;       // Qt global coordinates
    using HitTest = std::function<QVariant(bool *wrapText, QPointF globalPoint)>;

    static constexpr double pollInterval = 0.5;  // the controller's timer
    static constexpr double restTime = 1.0;      // pointer at rest before a tooltip
    static constexpr double showLimit = 10.0;    // one unchanged tooltip at most
    static constexpr double graceTime = 1.0;     // away from tooltips before fading

    enum class State { Idle, Armed, Showing };

    ToolTipTiming_ZL();
    ~ToolTipTiming_ZL();
    Q_DISABLE_COPY_MOVE(ToolTipTiming_ZL)

    void setClock(Clock clock);
    void setPointerLocation(PointerLocation location);
    void setHitTest(HitTest hitTest);
    // Not owned; nullptr while there is no window.
    void setPresenter(ToolTipPresenter_ZL *presenter);

    // After every dispatched event.
    void handleEvent(const QEvent *event);
    // Every pollInterval.
    void timerFired();
    // Hides a shown tooltip (with or without the fade) and disarms.
    void hideToolTip(bool fade);
    // The window went away without the rules asking (the application was
    // deactivated, the window closed): the tooltip is forgotten as if
    // hidden here, so the same answer shows again after the next rest.
    void windowWasHidden();

    State state() const;
    bool lastEventCanPreceedToolTip() const { return lastEventCanPreceedToolTip_; }
    double lastEventTime() const { return lastEventTime_; }
    double lastTimeToolTipChanged() const { return lastTimeToolTipChanged_; }
    QVariant lastShownToolTip() const { return lastShownToolTip_; }

    static double defaultClock();

private:
    bool isShown() const;
    bool tryShowToolTip(bool &destroyed);
    void showToolTip(const QVariant &toolTip, QPointF location, bool wrapText);
    void updateToolTipForEvent(const ToolTipEventEffect_ZL &effect);

    Clock clock_;
    PointerLocation pointerLocation_;
    HitTest hitTest_;
    ToolTipPresenter_ZL *presenter_ = nullptr;

    bool lastEventCanPreceedToolTip_ = false;
    double lastEventTime_ = 0;
    double lastTimeInsideToolTipWindow_ = 0;
    double lastTimeToolTipChanged_ = 0;
    QVariant lastShownToolTip_;
    // Whether the window shows what the rules last put up; cleared before
    // the rules themselves hide it, so only other hidings count as news.
    bool putUp_ = false;
    // Set while the hit test runs: the application's code it calls may
    // destroy whoever owns these rules, and the rules with it.
    bool *destroyed_ = nullptr;
};

} // namespace KQToolTipRules
