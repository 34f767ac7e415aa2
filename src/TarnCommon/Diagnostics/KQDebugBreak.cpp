#include <TarnCommon/KQDebugBreak.h>

#include "KQPathComponent_p.h"

#include <atomic>

namespace {
std::atomic<KQDebugBreakHook> s_debugBreakHook{nullptr};
}

extern "C" {

bool g_breakOnWarningsAndErrors = false;

void KQDebugBreak(void)
{
    if (KQDebugBreakHook hook = s_debugBreakHook.load())
        hook();
}

KQDebugBreakHook KQSetDebugBreakHook(KQDebugBreakHook hook)
{
    return s_debugBreakHook.exchange(hook);
}

const char *KQLastPathComponentOfPath(const char *path)
{
    return KQPathComponent::last(path, KQPathComponent::SlashOnly);
}

} // extern "C"
