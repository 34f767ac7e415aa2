#include <TarnCommon/KQAfterEvent.h>

#include <QtCore/QEvent>

const char NOTIFICATION__After_Event_Sent[] = "NOTIFICATION__After_Event_Sent";

// Nothing to keep yet; the pointer leaves room without changing the class's size.
class KQAfterEventNotifierPrivate
{
};

KQAfterEventNotifier::KQAfterEventNotifier()
    : d(std::make_unique<KQAfterEventNotifierPrivate>())
{
}

KQAfterEventNotifier::~KQAfterEventNotifier() = default;

KQAfterEventNotifier *KQAfterEventNotifier::instance()
{
    // Plain QObject without a parent: safe to outlive the application object.
    static KQAfterEventNotifier notifier;
    return &notifier;
}

void KQAfterEventNotifier::post(QEvent *event)
{
    Q_EMIT afterEventSent(event);
}

int KQAfterEventNotifier::observerCount() const
{
    return receivers(SIGNAL(afterEventSent(QEvent*)));
}

void KQPostAfterEventNotification(QEvent *event)
{
    KQAfterEventNotifier::instance()->post(event);
}

bool KQIsAfterEventCandidate(const QObject *receiver, const QEvent *event)
{
    if (receiver == nullptr || event == nullptr || !receiver->isWindowType())
        return false;
    // Pointer crossings count as events too (they reset the rest time), like
    // every other input the window system sends; paint and timer traffic
    // addressed to a window does not.
    return event->isInputEvent() || event->type() == QEvent::Leave;
}
