#include <TarnCommon/TarnCommonVersion.h>

extern "C" {
const double TarnCommonVersionNumber = 1.0;
const unsigned char TarnCommonVersionString[] = "@(#)PROGRAM:TarnCommon  PROJECT:TarnCommon-1\n";
}
