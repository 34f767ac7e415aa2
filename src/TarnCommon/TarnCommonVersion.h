#pragma once

#include <TarnCommon/TarnCommonExport.h>

// The library's version, as the platform's framework headers publish it.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const double TarnCommonVersionNumber;
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const unsigned char TarnCommonVersionString[];
