#include <TarnCommon/ToolTipping_ZL.h>

ToolTipping_ZL::~ToolTipping_ZL() = default;
