tarncommon_add_files(
    PUBLIC
        KQDebugBreak.h KQLog.h KQAssert.h
    PRIVATE
        KQPathComponent_p.h KQDebugBreak.cpp KQLog.cpp KQAssert.cpp)
