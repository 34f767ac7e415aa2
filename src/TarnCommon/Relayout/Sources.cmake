tarncommon_add_files(
    PUBLIC
        Relayout_ZL.h KQRelayoutOnLanguageChange.h
    PRIVATE
        KQRelayoutRules_p.h KQRelayoutRules.cpp
        Relayout_ZL.cpp KQRelayoutOnLanguageChange.cpp)
