tarncommon_add_files(
    PUBLIC
        KQError.h KQURLRequest.h KQMenuExtensions.h
    PRIVATE
        KQError.cpp KQURLRequest.cpp KQMenuExtensions.cpp)
