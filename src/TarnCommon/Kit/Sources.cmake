tarncommon_add_files(
    PUBLIC
        KQError.h KQURLRequest.h
    PRIVATE
        KQError.cpp KQURLRequest.cpp)
