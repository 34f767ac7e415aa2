#include <TarnCommon/TarnCommonVersion.h>

#define TARNCOMMON_STRINGIFY2(x) #x
#define TARNCOMMON_STRINGIFY(x) TARNCOMMON_STRINGIFY2(x)

extern "C" {
const double TarnCommonVersionNumber = TARNCOMMON_VERSION_MAJOR + TARNCOMMON_VERSION_MINOR / 10.0;
const unsigned char TarnCommonVersionString[] =
    "@(#)PROGRAM:TarnCommon  PROJECT:TarnCommon-" TARNCOMMON_STRINGIFY(TARNCOMMON_VERSION_MAJOR) "\n";
}
