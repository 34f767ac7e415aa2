tarncommon_add_files(
    PUBLIC
        KQInspectorMode.h KQInspectorFocusOwner.h KQInspectorWindow.h KQEmptyInspectorMode.h
    PRIVATE
        KQInspectorLayout_p.h KQInspectorLayout.cpp
        KQInspectorMode.cpp KQInspectorFocusOwner.cpp KQInspectorWindow.cpp KQEmptyInspectorMode.cpp)
