#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

class QEvent;

// The name of the notification an application posts after dispatching each
// event it received from the window system: "NOTIFICATION__After_Event_Sent".
// Its object is the event just dispatched. The tooltip controller arms and
// disarms itself on it; without it no computed tooltip ever appears.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NOTIFICATION__After_Event_Sent[];

// The sender of NOTIFICATION__After_Event_Sent. Observers connect to
// afterEventSent(); the event is only valid during the emission.
class TARNCOMMON_EXPORT KQAfterEventNotifier : public QObject
{
    Q_OBJECT
public:
    static KQAfterEventNotifier *instance();

    // How many connections observe the notification.
    int observerCount() const;

    void post(QEvent *event) { Q_EMIT afterEventSent(event); }

Q_SIGNALS:
    void afterEventSent(QEvent *event);

private:
    KQAfterEventNotifier() = default;
};

// Posts NOTIFICATION__After_Event_Sent for event.
TARNCOMMON_EXPORT void KQPostAfterEventNotification(QEvent *event);

// Whether the notification is due after receiver has handled event: an event
// the window system delivered to one of the application's windows. Qt hands
// that event on to widgets as fresh events of their own; only the one
// addressed to the window is counted, so each input is posted once.
TARNCOMMON_EXPORT bool KQIsAfterEventCandidate(const QObject *receiver, const QEvent *event);

// The whole hook for an application with its own QApplication subclass:
//
//     bool notify(QObject *receiver, QEvent *event) override
//     {
//         return KQNotifyPostingAfterEvent(receiver, event,
//                                          [&] { return QApplication::notify(receiver, event); });
//     }
//
// The candidate test runs before dispatching, as the receiver may be
// destroyed by its own event.
template<typename Dispatch>
bool KQNotifyPostingAfterEvent(QObject *receiver, QEvent *event, Dispatch &&dispatch)
{
    const bool post = KQIsAfterEventCandidate(receiver, event);
    const bool handled = dispatch();
    if (post)
        KQPostAfterEventNotification(event);
    return handled;
}
