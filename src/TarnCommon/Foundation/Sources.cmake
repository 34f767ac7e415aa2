tarncommon_add_files(
    PUBLIC
        RGBColor.h KQColorExtensions.h
    PRIVATE
        KQColorComponents_p.h KQColorExtensions.cpp)
