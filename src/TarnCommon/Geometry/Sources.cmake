tarncommon_add_files(
    PUBLIC
        KQGeometry.h KQImageDrawing.h
    PRIVATE
        KQGeometry.cpp KQImageDrawing.cpp)
tarncommon_add_files(
    PUBLIC
        KQColourWheel.h
    PRIVATE
        KQColourWheel.cpp)
