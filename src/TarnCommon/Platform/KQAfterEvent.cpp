#include <TarnCommon/KQAfterEvent.h>

#include "KQAfterEvent_p.h"

#include <QtCore/QEvent>

#include <algorithm>
#include <vector>

const char NOTIFICATION__After_Event_Sent[] = "NOTIFICATION__After_Event_Sent";

class KQAfterEventNotifierPrivate
{
public:
    struct Hook
    {
        KQAfterEventHook function;
        void *context;
    };

    // Entries removed while posting are cleared, not erased, so the loop's
    // indexes stay valid; they are swept when the outermost post ends.
    std::vector<Hook> hooks;
    int posting = 0;
    bool cleared = false;

    void sweep()
    {
        hooks.erase(std::remove_if(hooks.begin(), hooks.end(), [](const Hook &h) { return h.function == nullptr; }),
                    hooks.end());
        cleared = false;
    }
};

namespace {
// The one notifier's hooks, for the free functions that edit them.
KQAfterEventNotifierPrivate *s_notifierState = nullptr;
} // namespace

KQAfterEventNotifier::KQAfterEventNotifier()
    : d(std::make_unique<KQAfterEventNotifierPrivate>())
{
    s_notifierState = d.get();
}

KQAfterEventNotifier::~KQAfterEventNotifier()
{
    s_notifierState = nullptr;
}

KQAfterEventNotifier *KQAfterEventNotifier::instance()
{
    // Plain QObject without a parent: safe to outlive the application object.
    static KQAfterEventNotifier notifier;
    return &notifier;
}

void KQAfterEventNotifier::post(QEvent *event)
{
    // Blocking the notifier's signals silences every observer, hooks too.
    if (signalsBlocked())
        return;
    ++d->posting;
    // Indexed, as a hook may add or remove hooks.
    for (size_t i = 0; i < d->hooks.size(); ++i) {
        const KQAfterEventNotifierPrivate::Hook hook = d->hooks[i];
        if (hook.function != nullptr)
            hook.function(hook.context, event);
    }
    if (--d->posting == 0 && d->cleared)
        d->sweep();
    Q_EMIT afterEventSent(event);
}

int KQAfterEventNotifier::observerCount() const
{
    const auto hooks = std::count_if(d->hooks.cbegin(), d->hooks.cend(),
                                     [](const KQAfterEventNotifierPrivate::Hook &h) { return h.function != nullptr; });
    return receivers(SIGNAL(afterEventSent(QEvent*))) + int(hooks);
}

void kq_addAfterEventHook(KQAfterEventHook hook, void *context)
{
    KQAfterEventNotifier::instance();
    if (hook != nullptr && s_notifierState != nullptr)
        s_notifierState->hooks.push_back({hook, context});
}

void kq_removeAfterEventHook(KQAfterEventHook hook, void *context)
{
    if (s_notifierState == nullptr)
        return;
    KQAfterEventNotifierPrivate &d = *s_notifierState;
    const auto found = std::find_if(d.hooks.begin(), d.hooks.end(), [&](const KQAfterEventNotifierPrivate::Hook &h) {
        return h.function == hook && h.context == context;
    });
    if (found == d.hooks.end())
        return;
    if (d.posting > 0) {
        found->function = nullptr;
        d.cleared = true;
    } else {
        d.hooks.erase(found);
    }
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
