#pragma once

class QEvent;

// The library's own observers of KQAfterEventNotifier, called straight from
// post() before the signal is emitted. The hook runs for every input event
// of the application, and a signal emission costs more than all the tooltip
// rules do with the event; a plain call does not.
using KQAfterEventHook = void (*)(void *context, QEvent *event);

// Adds hook with context; the same pair twice is called twice.
void kq_addAfterEventHook(KQAfterEventHook hook, void *context);
// Removes one registration of the pair; safe from inside a hook.
void kq_removeAfterEventHook(KQAfterEventHook hook, void *context);
