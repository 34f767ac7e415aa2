tarncommon_add_files(
    PUBLIC
        KQGeometry.h
    PRIVATE
        KQGeometry.cpp)
