tarncommon_add_files(
    PUBLIC
        ConstrainFrameRectToScreen_ZL.h NSWindow_ZL.h CocoaExtensions_ZL.h
    PRIVATE
        ConstrainFrameRect_p.h
        ConstrainFrameRectToScreen_ZL.cpp NSWindow_ZL.cpp CocoaExtensions_ZL.cpp)
