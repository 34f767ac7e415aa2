#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipHitTesting_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include "ToolTipController_ZL_p.h"
#include "ToolTipTiming_ZL_p.h"

#include "Platform/KQAfterEvent_p.h"

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
class ToolTipController_ZLPrivate : public ToolTipPresenter_ZL
{
public:
    static ToolTipController_ZLPrivate *get(ToolTipController_ZL *controller) { return controller->d.get(); }

    // nullptr before startup.
    ToolTipWindow_ZL *window()
    {
        if (!toolTipWindow && timer) {
            auto *window = new ToolTipWindow_ZL;
            window->setAttribute(Qt::WA_DeleteOnClose);
            // The window also hides itself (with the application) and may
            // be closed by anyone; the rules must not go on believing it shown.
            window->installEventFilter(&hideWatcher);
            toolTipWindow = window;
        }
        return toolTipWindow;
    }

    bool isShown() const override { return toolTipWindow && toolTipWindow->isShown(); }
    void setString(const QString &text, bool wrapText) override
    {
        if (window())
            toolTipWindow->setString(text, wrapText);
    }
    void setAttributedString(const QTextDocumentFragment &text, bool wrapText) override
    {
        if (window())
            toolTipWindow->setAttributedString(text, wrapText);
    }
    void positionAtMouseLocation(QPointF point) override
    {
        if (toolTipWindow)
            toolTipWindow->positionAtMouseLocation(point);
    }
    void show() override
    {
        if (toolTipWindow)
            toolTipWindow->show();
    }
    void hide(bool fade) override
    {
        if (toolTipWindow)
            toolTipWindow->hide(fade);
    }

    // Every input event of the application passes here.
    static void afterEvent(void *context, QEvent *event)
    {
        static_cast<ToolTipController_ZLPrivate *>(context)->timing.handleEvent(event);
    }

    QPointer<QTimer> timer;
    QPointer<ToolTipWindow_ZL> toolTipWindow;
    bool observing = false;
    ToolTipTiming_ZL timing;
    WindowHideWatcher hideWatcher{timing};
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
    , d(std::make_unique<ToolTipController_ZLPrivate>())
{
    d->timing.setPointerLocation([] { return QPointF(QCursor::pos()); });
    d->timing.setHitTest([](bool *wrap, QPointF p) { return ToolTipAtScreenPoint(wrap, p); });
}

ToolTipController_ZL::~ToolTipController_ZL()
{
    if (d->observing)
        kq_removeAfterEventHook(&ToolTipController_ZLPrivate::afterEvent, d.get());
    if (d->timer)
        d->timer->stop();
    d->timing.setPresenter(nullptr);
    if (d->toolTipWindow) {
        d->toolTipWindow->removeEventFilter(&d->hideWatcher);
        d->toolTipWindow->close();
        delete d->toolTipWindow; // gone already if it deletes itself on close
    }
}

void ToolTipController_ZL::startup()
{
    if (d->timer)
        return;
    KQAssert(qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr);
    d->timer = new QTimer(this);
    d->window();
    d->timing.setPresenter(d.get());

    d->timer->setInterval(int(ToolTipTiming_ZL::pollInterval * 1000));
    connect(d->timer, &QTimer::timeout, this, &ToolTipController_ZL::_timerFired);
    d->timer->start();

    kq_addAfterEventHook(&ToolTipController_ZLPrivate::afterEvent, d.get());
    d->observing = true;
}

ToolTipWindow_ZL *ToolTipController_ZL::toolTipWindow() const
{
    return d->toolTipWindow;
}

void ToolTipController_ZL::setClock(Clock clock)
{
    if (clock)
        d->timing.setClock(std::move(clock));
    else
        d->timing.setClock(&ToolTipTiming_ZL::defaultClock);
}

void ToolTipController_ZL::poll()
{
    d->timing.timerFired();
}

void ToolTipController_ZL::_handleEvent(QEvent *event)
{
    d->timing.handleEvent(event);
}

void ToolTipController_ZL::_timerFired()
{
    d->timing.timerFired();
}

ToolTipTiming_ZL &KQToolTipRules::ToolTipControllerTiming(ToolTipController_ZL *controller)
{
    return ToolTipController_ZLPrivate::get(controller)->timing;
}

QTimer *KQToolTipRules::ToolTipControllerTimer(ToolTipController_ZL *controller)
{
    return ToolTipController_ZLPrivate::get(controller)->timer;
}
