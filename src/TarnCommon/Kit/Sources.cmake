tarncommon_add_files(
    PUBLIC
        KQError.h
    PRIVATE
        KQError.cpp)
