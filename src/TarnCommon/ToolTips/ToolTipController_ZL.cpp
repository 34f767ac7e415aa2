#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipHitTesting_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQAssert.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtWidgets/QApplication>

using namespace KQToolTipRules;

namespace {

// Tells the rules when their window goes hidden, whoever hides it.
class WindowHideWatcher : public QObject
{
public:
    explicit WindowHideWatcher(ToolTipTiming_ZL &timing) : timing_(timing) {}
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            timing_.windowWasHidden();
        return QObject::eventFilter(watched, event);
    }

private:
    ToolTipTiming_ZL &timing_;
};

} // namespace

// The window as the rules see it. The window goes when closed, and anyone
// may close it (QApplication::closeAllWindows() closes every visible
// window, and a quit may then be cancelled): until the next tooltip there
// is simply nothing shown, and the next tooltip gets a new window.
class ToolTipControllerPrivate_ZL : public ToolTipPresenter_ZL
{
public:
    // nullptr before startup.
    ToolTipWindow_ZL *window()
    {
        if (!toolTipWindow_ && timer_) {
            auto *window = new ToolTipWindow_ZL;
            window->setAttribute(Qt::WA_DeleteOnClose);
            // The window also hides itself (with the application) and may
            // be closed by anyone; the rules must not go on believing it shown.
            window->installEventFilter(&hideWatcher_);
            toolTipWindow_ = window;
        }
        return toolTipWindow_;
    }

    bool isShown() const override { return toolTipWindow_ && toolTipWindow_->isShown(); }
    void setString(const QString &text, bool wrapText) override
    {
        if (window())
            toolTipWindow_->setString(text, wrapText);
    }
    void setAttributedString(const QTextDocumentFragment &text, bool wrapText) override
    {
        if (window())
            toolTipWindow_->setAttributedString(text, wrapText);
    }
    void positionAtMouseLocation(QPointF point) override
    {
        if (toolTipWindow_)
            toolTipWindow_->positionAtMouseLocation(point);
    }
    void show() override
    {
        if (toolTipWindow_)
            toolTipWindow_->show();
    }
    void hide(bool fade) override
    {
        if (toolTipWindow_)
            toolTipWindow_->hide(fade);
    }

    QPointer<QTimer> timer_;
    QPointer<ToolTipWindow_ZL> toolTipWindow_;
    QMetaObject::Connection observer_;
    ToolTipTiming_ZL timing_;
    WindowHideWatcher hideWatcher_{timing_};
};

namespace {

QPointer<ToolTipController_ZL> s_sharedController;

// Children of qApp die only after ~QApplication has torn the widget system
// down, too late for the tooltip window. Post routines run at the start of
// ~QApplication, while widgets can still be destroyed.
void destroySharedController()
{
    delete s_sharedController.data();
}

} // namespace

ToolTipController_ZL *ToolTipController_ZL::sharedToolTipController()
{
    if (!s_sharedController) {
        KQAssert(QCoreApplication::instance() != nullptr, nullptr);
        s_sharedController = new ToolTipController_ZL(QCoreApplication::instance());
        s_sharedController->setObjectName(QStringLiteral("sharedToolTipController"));
        qAddPostRoutine(&destroySharedController);
    }
    return s_sharedController;
}

ToolTipController_ZL::ToolTipController_ZL(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<ToolTipControllerPrivate_ZL>())
{
    d->timing_.setPointerLocation([] { return QPointF(QCursor::pos()); });
    d->timing_.setHitTest([](bool *wrap, QPointF p) { return ToolTipAtScreenPoint(wrap, p); });
}

ToolTipController_ZL::~ToolTipController_ZL()
{
    QObject::disconnect(d->observer_);
    if (d->timer_)
        d->timer_->stop();
    d->timing_.setPresenter(nullptr);
    if (d->toolTipWindow_) {
        d->toolTipWindow_->removeEventFilter(&d->hideWatcher_);
        d->toolTipWindow_->close();
        delete d->toolTipWindow_; // gone already if it deletes itself on close
    }
}

void ToolTipController_ZL::startup()
{
    if (d->timer_)
        return;
    KQAssert(qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr);
    d->timer_ = new QTimer(this);
    d->window();
    d->timing_.setPresenter(d.get());

    d->timer_->setInterval(int(ToolTipTiming_ZL::pollInterval * 1000));
    connect(d->timer_, &QTimer::timeout, this, &ToolTipController_ZL::_timerFired);
    d->timer_->start();

    d->observer_ = connect(KQAfterEventNotifier::instance(), &KQAfterEventNotifier::afterEventSent, this,
                           &ToolTipController_ZL::_handleEvent);
}

ToolTipWindow_ZL *ToolTipController_ZL::toolTipWindow() const
{
    return d->toolTipWindow_;
}

void ToolTipController_ZL::setClock(Clock clock)
{
    if (clock)
        d->timing_.setClock(std::move(clock));
    else
        d->timing_.setClock(&ToolTipTiming_ZL::defaultClock);
}

void ToolTipController_ZL::poll()
{
    d->timing_.timerFired();
}

void ToolTipController_ZL::_handleEvent(QEvent *event)
{
    d->timing_.handleEvent(event);
}

void ToolTipController_ZL::_timerFired()
{
    d->timing_.timerFired();
}

ToolTipTiming_ZL &KQToolTipRules::ControllerAccess::timing(ToolTipController_ZL *controller)
{
    return controller->d->timing_;
}

QTimer *KQToolTipRules::ControllerAccess::timer(ToolTipController_ZL *controller)
{
    return controller->d->timer_;
}
