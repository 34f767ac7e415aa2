# The ABI of SOVERSION 1 is recorded in abi/TarnCommon.abi (libabigail's
# abidw, public types only). The test abi_compatible compares the built
# library with it and fails on any change to what was recorded; added
# functions are allowed. Renew the record deliberately, after review:
#   cmake --build build --target abi-record
find_program(TARN_ABIDW abidw)
find_program(TARN_ABIDIFF abidiff)
if(NOT TARN_ABIDW OR NOT TARN_ABIDIFF)
    message(STATUS "abidw/abidiff not found (Debian: abigail-tools): no ABI check")
    return()
endif()
# The comparison reads the library's debug information.
if(NOT CMAKE_BUILD_TYPE MATCHES "^(RelWithDebInfo|Debug)$")
    message(STATUS "No debug information in a ${CMAKE_BUILD_TYPE} build: no ABI check")
    return()
endif()

set(TARN_ABI_RECORD "${PROJECT_SOURCE_DIR}/abi/TarnCommon.abi")
# The header list travels as one argument, joined with "|".
list(JOIN TARNCOMMON_PUBLIC_HEADERS "|" _abi_headers)
set(_abi_script "${PROJECT_SOURCE_DIR}/cmake/TarnAbiRun.cmake")
set(_abi_arguments
    -DABIDW=${TARN_ABIDW} -DABIDIFF=${TARN_ABIDIFF}
    -DLIBRARY=$<TARGET_FILE:TarnCommon> -DRECORD=${TARN_ABI_RECORD}
    "-DHEADERS=${_abi_headers}")
add_custom_target(abi-record
    COMMAND ${CMAKE_COMMAND} -DMODE=record ${_abi_arguments} -P ${_abi_script}
    DEPENDS TarnCommon
    COMMENT "Recording the ABI of libTarnCommon in ${TARN_ABI_RECORD}"
    VERBATIM)
set(TARN_ABI_TEST_ARGUMENTS ${_abi_arguments})
