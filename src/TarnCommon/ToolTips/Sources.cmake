tarncommon_add_files(
    PUBLIC
        ToolTipping_ZL.h
    PRIVATE
        ToolTipping_ZL.cpp)
