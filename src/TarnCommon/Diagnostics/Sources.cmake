tarncommon_add_files(
    PUBLIC
        KQDebugBreak.h KQLog.h KQAssert.h
    PRIVATE
        KQPathComponent_p.h KQMessageOutput_p.h KQMessageOutput.cpp KQDebugBreak.cpp KQLog.cpp KQAssert.cpp)
