#pragma once

#include <TarnCommon/TarnCommonExport.h>

#ifdef __cplusplus
#  include <cstdbool>
#else
#  include <stdbool.h>
#endif

// When true, every warning and error calls KQDebugBreak() after printing.
// Nothing in the library sets it: it is for the application or a debugger.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT bool g_breakOnWarningsAndErrors;

// A place for a debugger to stop ("break KQDebugBreak"). It always returns.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT void KQDebugBreak(void);

// Optional hook run by KQDebugBreak(), e.g. to raise SIGTRAP under a debugger
// or to count breaks in a test. Returns the previous hook; nullptr removes it.
typedef void (*KQDebugBreakHook)(void);
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT KQDebugBreakHook KQSetDebugBreakHook(KQDebugBreakHook hook);

// The last "/"-separated component of path, pointing into path itself
// ("a/dir/" gives "dir/", "/" gives "/", "" gives ""); "NULL" for a null path.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char *KQLastPathComponentOfPath(const char *path);
