# CMake 3.25's Ninja rule for AUTOMOC reruns only when a header it already
# knows changes: a file newly added to a target is not moc'ed until the rule's
# stamp goes. So when a target's file list changes at configure time, drop
# the stamp.
function(tarn_refresh_autogen target)
    get_target_property(_sources ${target} SOURCES)
    string(SHA1 _hash "${_sources}")
    if(NOT "${TARN_AUTOGEN_SOURCES_${target}}" STREQUAL "${_hash}")
        get_target_property(_binary_dir ${target} BINARY_DIR)
        file(REMOVE "${_binary_dir}/${target}_autogen/timestamp")
        set(TARN_AUTOGEN_SOURCES_${target} "${_hash}" CACHE INTERNAL "")
    endif()
endfunction()
