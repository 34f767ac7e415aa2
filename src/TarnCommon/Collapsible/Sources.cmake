tarncommon_add_files(
    PUBLIC
        KQCollapsibleView.h KQCollapsibleListView.h KQViewAnimationEntry.h
        ZLWrapVerticalScrollViewAroundView.h
    PRIVATE
        KQCollapsibleStacking_p.h KQCollapsibleStacking.cpp
        KQViewAnimation_p.h KQViewAnimation.cpp
        KQGuardedDelegate_p.h KQWidgetState_p.h
        KQCollapsibleView.cpp KQCollapsibleListView.cpp
        ZLWrapVerticalScrollViewAroundView.cpp)
