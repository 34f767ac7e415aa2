tarncommon_add_files(
    PUBLIC
        KQCharacterSet.h KQStringExtensions.h KQFilesAndEncodings.h
    PRIVATE
        KQCharacterSet.cpp KQStringExtensions.cpp KQFilesAndEncodings.cpp)
