tarncommon_add_files(
    PUBLIC
        KQError.h KQURLRequest.h KQMenuExtensions.h
        KQTextLayout.h KQPrintInfo.h
    PRIVATE
        KQError.cpp KQURLRequest.cpp KQMenuExtensions.cpp
        KQTextLayout.cpp KQPrintInfo.cpp)
