tarncommon_add_files(
    PUBLIC
        KQRectRules.h KQScreenSpace.h KQWindowDelegate.h KQSettings.h
    PRIVATE
        KQScreenSpace.cpp KQWindowDelegate.cpp KQSettings.cpp)
