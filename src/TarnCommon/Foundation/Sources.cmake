tarncommon_add_files(
    PUBLIC
        KQCharacterSet.h KQStringExtensions.h KQFilesAndEncodings.h
        RGBColor.h KQColorExtensions.h
    PRIVATE
        KQCharacterSet.cpp KQStringExtensions.cpp KQFilesAndEncodings.cpp
        KQColorComponents_p.h KQColorExtensions.cpp)
