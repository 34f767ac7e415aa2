tarncommon_add_files(
    PUBLIC
        KQRectRules.h KQScreenSpace.h KQWindowDelegate.h KQSettings.h
        KQAfterEvent.h KQApplication.h KQTranslations.h
    PRIVATE
        KQAfterEvent_p.h
        KQScreenSpace.cpp KQWindowDelegate.cpp KQSettings.cpp
        KQAfterEvent.cpp KQApplication.cpp KQTranslations.cpp)
