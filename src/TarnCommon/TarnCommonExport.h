#pragma once

// One export macro for the whole library: symbols are hidden by default and
// only what carries TARNCOMMON_EXPORT is part of the ABI.
#if defined(_WIN32)
#  if defined(TARNCOMMON_LIBRARY)
#    define TARNCOMMON_EXPORT __declspec(dllexport)
#  else
#    define TARNCOMMON_EXPORT __declspec(dllimport)
#  endif
#else
#  define TARNCOMMON_EXPORT __attribute__((visibility("default")))
#endif

// C linkage for the names that must stay unmangled.
#ifdef __cplusplus
#  define TARNCOMMON_EXTERN_C extern "C"
#else
#  define TARNCOMMON_EXTERN_C extern
#endif
