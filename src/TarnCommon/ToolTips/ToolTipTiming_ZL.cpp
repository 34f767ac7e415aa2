#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>

#include <chrono>
#include <cstring>
#include <utility>

namespace KQToolTipRules {

namespace {

// Keys that only change the modifier flags.
bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
        return true;
    default:
        return false;
    }
}

} // namespace

ToolTipEventEffect_ZL ToolTipEventEffect(const QEvent *event)
{
    using E = ToolTipEventEffect_ZL;
    if (event == nullptr)
        return {};
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::NonClientAreaMouseButtonDblClick:
        return {E::Disarm, true};
    case QEvent::MouseButtonRelease:
    case QEvent::NonClientAreaMouseButtonRelease:
        return {E::Arm, true};
    case QEvent::MouseMove:
    case QEvent::NonClientAreaMouseMove:
        // A movement with any button held is a drag.
        if (static_cast<const QMouseEvent *>(event)->buttons() != Qt::NoButton)
            return {E::Disarm, true};
        return {E::Arm, false};
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (isModifierKey(static_cast<const QKeyEvent *>(event)->key()))
            return {};
        return {E::Disarm, true};
    default:
        return {};
    }
}

bool ToolTipsAreSame_ZL(const QVariant &a, const QVariant &b)
{
    if (a.metaType() != b.metaType() || !a.isValid())
        return false;
    if (a.metaType() == QMetaType::fromType<QString>()) {
        const QString &x = *static_cast<const QString *>(a.constData());
        const QString &y = *static_cast<const QString *>(b.constData());
        if (x.constData() == y.constData() && x.size() == y.size())
            return true;
        return x == y;
    }
    if (a.metaType() == QMetaType::fromType<QTextDocumentFragment>()) {
        const auto *x = static_cast<const QTextDocumentFragment *>(a.constData());
        const auto *y = static_cast<const QTextDocumentFragment *>(b.constData());
        // A fragment is one shared pointer: equal bits, the same fragment.
        static_assert(sizeof(QTextDocumentFragment) == sizeof(void *));
        if (std::memcmp(x, y, sizeof(QTextDocumentFragment)) == 0)
            return true;
        return x->toHtml() == y->toHtml();
    }
    return a == b;
}

ToolTipPresenter_ZL::~ToolTipPresenter_ZL() = default;

double ToolTipTiming_ZL::defaultClock()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

ToolTipTiming_ZL::ToolTipTiming_ZL()
    : clock_(&ToolTipTiming_ZL::defaultClock)
{
}

ToolTipTiming_ZL::~ToolTipTiming_ZL()
{
    if (destroyed_ != nullptr)
        *destroyed_ = true;
}

void ToolTipTiming_ZL::setClock(Clock clock)
{
    KQAssert(clock != nullptr);
    clock_ = std::move(clock);
}

void ToolTipTiming_ZL::setPointerLocation(PointerLocation location)
{
    pointerLocation_ = std::move(location);
}

void ToolTipTiming_ZL::setHitTest(HitTest hitTest)
{
    hitTest_ = std::move(hitTest);
}

void ToolTipTiming_ZL::setPresenter(ToolTipPresenter_ZL *presenter)
{
    presenter_ = presenter;
}

ToolTipTiming_ZL::State ToolTipTiming_ZL::state() const
{
    if (isShown())
        return State::Showing;
    return lastEventCanPreceedToolTip_ ? State::Armed : State::Idle;
}

bool ToolTipTiming_ZL::isShown() const
{
    return presenter_ != nullptr && presenter_->isShown();
}

void ToolTipTiming_ZL::handleEvent(const QEvent *event)
{
    const QEvent *theEvent = event;
    KQAssert(theEvent);
    const ToolTipEventEffect_ZL effect = ToolTipEventEffect(event);
    if (effect.readiness != ToolTipEventEffect_ZL::Unchanged)
        lastEventCanPreceedToolTip_ = effect.readiness == ToolTipEventEffect_ZL::Arm;
    // Qt's event timestamps come from the window system's clock, which
    // nothing else here shares; the event has just been dispatched, so the
    // time it is seen is its time on the rules' clock.
    lastEventTime_ = clock_();
    if (isShown())
        updateToolTipForEvent(effect);
}

void ToolTipTiming_ZL::updateToolTipForEvent(const ToolTipEventEffect_ZL &effect)
{
    if (effect.hidesAtOnce)
        hideToolTip(false);
}

void ToolTipTiming_ZL::timerFired()
{
    const double now = clock_();
    if (!isShown()) {
        if (!lastEventCanPreceedToolTip_ || restTime > now - lastEventTime_)
            return;
    }
    bool destroyed = false;
    const bool shown = tryShowToolTip(destroyed);
    if (destroyed)
        return;
    if (shown) {
        lastTimeInsideToolTipWindow_ = now;
        if (now - lastTimeToolTipChanged_ > showLimit)
            hideToolTip(true);
        return;
    }
    if (isShown() && now - lastTimeInsideToolTipWindow_ > graceTime)
        hideToolTip(true);
}

bool ToolTipTiming_ZL::tryShowToolTip(bool &destroyed)
{
    if (!pointerLocation_ || !hitTest_)
        return false;
    const QPointF location = pointerLocation_();
    bool wrap = true;
    bool gone = false;
    bool *const outer = std::exchange(destroyed_, &gone);
    // A copy: the hit test may destroy the rules, their members with them.
    const HitTest hitTest = hitTest_;
    const QVariant toolTip = hitTest(&wrap, location);
    if (gone) {
        if (outer != nullptr)
            *outer = true;
        destroyed = true;
        return false;
    }
    destroyed_ = outer;
    if (!toolTip.isValid())
        return false;
    // The window stays where it is for the same answer: no relayout, no move.
    if (ToolTipsAreSame_ZL(toolTip, lastShownToolTip_))
        return true;
    lastShownToolTip_ = toolTip;
    showToolTip(toolTip, location, wrap);
    return true;
}

void ToolTipTiming_ZL::showToolTip(const QVariant &toolTip, QPointF location, bool wrapText)
{
    if (presenter_ == nullptr)
        return;
    putUp_ = false;
    if (presenter_->isShown())
        presenter_->hide(false);
    if (toolTip.metaType() == QMetaType::fromType<QString>()) {
        presenter_->setString(toolTip.toString(), wrapText);
    } else if (toolTip.metaType() == QMetaType::fromType<QTextDocumentFragment>()) {
        presenter_->setAttributedString(toolTip.value<QTextDocumentFragment>(), wrapText);
    } else {
        ZLLogError("The result of `toolTipAtPoint:` must be either an `NSString` or an "
                   "`NSAttributedString`");
        return;
    }
    presenter_->positionAtMouseLocation(location);
    presenter_->show();
    putUp_ = true;
    lastTimeToolTipChanged_ = clock_();
}

void ToolTipTiming_ZL::hideToolTip(bool fade)
{
    if (!isShown())
        return;
    putUp_ = false;
    lastShownToolTip_ = QVariant();
    lastEventCanPreceedToolTip_ = false;
    presenter_->hide(fade);
}

void ToolTipTiming_ZL::windowWasHidden()
{
    if (!putUp_)
        return;
    putUp_ = false;
    lastShownToolTip_ = QVariant();
    lastEventCanPreceedToolTip_ = false;
}

} // namespace KQToolTipRules
