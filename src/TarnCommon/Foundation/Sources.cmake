tarncommon_add_files(
    PUBLIC
        KQCharacterSet.h KQStringExtensions.h KQFilesAndEncodings.h
        RGBColor.h KQColorExtensions.h
        KQObjectExtensions.h KQBindings.h
    PRIVATE
        KQCharacterSet.cpp KQStringExtensions.cpp KQFilesAndEncodings.cpp
        KQColorComponents_p.h KQColorExtensions.cpp
        KQObjectExtensions.cpp KQBindings_p.h KQBindings.cpp)
