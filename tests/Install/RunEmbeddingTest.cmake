# Runs as cmake -P: configure and build a parent project that takes the
# source tree in with add_subdirectory, then run its program.
include("${CMAKE_CURRENT_LIST_DIR}/RunCommand.cmake")

file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} -S "${EMBEDDER_SOURCE_DIR}" -B "${WORK_DIR}" -G "${GENERATOR}"
    "-DTARNCOMMON_SOURCE_DIR=${SOURCE_DIR}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}" --target embedder -j 2)
run("${WORK_DIR}/embedder")
if(NOT run_output MATCHES "embedder ok 1\\.0\\.0")
    message(FATAL_ERROR "embedder did not finish: ${run_output}")
endif()
message(STATUS "embedding test passed")
