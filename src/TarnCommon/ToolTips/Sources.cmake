tarncommon_add_files(
    PUBLIC
        ToolTipping_ZL.h ToolTipController_ZL.h ToolTipWindow_ZL.h ToolTipTextView_ZL.h
        ToolTipHitTesting_ZL.h
    PRIVATE
        ToolTipping_ZL.cpp
        ToolTipTiming_ZL_p.h ToolTipTiming_ZL.cpp
        ToolTipHitTesting_ZL_p.h ToolTipHitTesting_ZL.cpp
        ToolTipWindow_ZL_p.h ToolTipWindow_ZL.cpp ToolTipTextView_ZL.cpp
        ToolTipColors_ZL_p.h ToolTipColors_ZL.cpp
        ToolTipController_ZL_p.h ToolTipController_ZL.cpp)
