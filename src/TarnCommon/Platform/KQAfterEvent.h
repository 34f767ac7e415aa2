#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

#include <memory>

/*!
    \file KQAfterEvent.h
    \brief The notification posted after each window-system event, and the hook that posts it.
*/

class QEvent;
class KQAfterEventNotifierPrivate;

/*!
    The name of the notification an application posts after dispatching each
    event it received from the window system: "NOTIFICATION__After_Event_Sent".
    Its object is the event just dispatched. The tooltip controller arms and
    disarms itself on it; without it no computed tooltip ever appears.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NOTIFICATION__After_Event_Sent[];

/*!
    \brief The sender of NOTIFICATION__After_Event_Sent.

    There is one notifier per process, made on first use and never deleted
    (it may outlive the application object). Observers connect to
    afterEventSent(); KQApplication, or an application's own notify() through
    KQNotifyPostingAfterEvent(), feeds it.

    \code
    connect(KQAfterEventNotifier::instance(), &KQAfterEventNotifier::afterEventSent,
            this, [](QEvent *event) { qDebug() << event->type(); });
    \endcode
*/
class TARNCOMMON_EXPORT KQAfterEventNotifier : public QObject
{
    Q_OBJECT
public:
    /*! The process's notifier. It belongs to the library: never delete it. */
    static KQAfterEventNotifier *instance();

    ~KQAfterEventNotifier() override;

    /*! How many connections observe afterEventSent(). */
    int observerCount() const;

    /*!
        Emits afterEventSent() with \a event, directly, to every observer.
        A null \a event is passed on as it is. While the notifier's signals
        are blocked (QObject::blockSignals()) nothing is told.
    */
    void post(QEvent *event);

Q_SIGNALS:
    /*!
        Sent after \a event has been dispatched. The event is only valid
        during the emission and still belongs to whoever sent it.
    */
    void afterEventSent(QEvent *event);

private:
    KQAfterEventNotifier();

    std::unique_ptr<KQAfterEventNotifierPrivate> const d;
};

/*! Posts NOTIFICATION__After_Event_Sent for \a event through KQAfterEventNotifier::instance(). */
TARNCOMMON_EXPORT void KQPostAfterEventNotification(QEvent *event);

/*!
    Whether the notification is due after \a receiver has handled \a event:
    an input event (or a pointer leaving) that the window system delivered to
    one of the application's windows. Qt hands that event on to widgets as
    fresh events of their own; only the one addressed to the window is
    counted, so each input is posted once. False when either is null.
*/
TARNCOMMON_EXPORT bool KQIsAfterEventCandidate(const QObject *receiver, const QEvent *event);

/*!
    Dispatches \a event to \a receiver through \a dispatch (a callable
    returning the dispatch's bool) and then, if the event was a candidate
    (see KQIsAfterEventCandidate()), posts the notification. Answers what
    \a dispatch answered. The candidate test runs before dispatching, as the
    receiver may be destroyed by its own event.

    The whole hook for an application with its own QApplication subclass:
    \code
    bool notify(QObject *receiver, QEvent *event) override
    {
        return KQNotifyPostingAfterEvent(receiver, event,
                                         [&] { return QApplication::notify(receiver, event); });
    }
    \endcode
*/
template<typename Dispatch>
bool KQNotifyPostingAfterEvent(QObject *receiver, QEvent *event, Dispatch &&dispatch)
{
    const bool post = KQIsAfterEventCandidate(receiver, event);
    const bool handled = dispatch();
    if (post)
        KQPostAfterEventNotification(event);
    return handled;
}
