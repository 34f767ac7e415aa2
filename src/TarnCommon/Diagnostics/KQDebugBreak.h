#pragma once

#include <TarnCommon/TarnCommonExport.h>

#ifdef __cplusplus
#  include <cstdbool>
#else
#  include <stdbool.h>
#endif

/*!
    \file KQDebugBreak.h
    \brief A place for a debugger to stop on the library's warnings and errors.
*/

/*!
    When true, every warning and error calls KQDebugBreak() after printing
    (assertion reports do not). False by default; nothing in the library sets
    it: it is for the application or a debugger.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT bool g_breakOnWarningsAndErrors;

/*!
    A place for a debugger to stop ("break KQDebugBreak"). It runs the hook
    set with KQSetDebugBreakHook(), if any, and always returns.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT void KQDebugBreak(void);

/*! A function KQDebugBreak() runs, set with KQSetDebugBreakHook(). */
typedef void (*KQDebugBreakHook)(void);
/*!
    Makes \a hook the function KQDebugBreak() runs, e.g. to raise SIGTRAP
    under a debugger or to count breaks in a test, and answers the previous
    hook; nullptr removes it. Safe to call from any thread.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT KQDebugBreakHook KQSetDebugBreakHook(KQDebugBreakHook hook);

/*!
    The last "/"-separated component of \a path, pointing into \a path itself
    ("a/dir/" gives "dir/", "/" gives "/", "" gives ""); the static text
    "NULL" for a null \a path.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char *KQLastPathComponentOfPath(const char *path);
