# Runs as cmake -P: configure and build a parent project that takes the
# source tree in with add_subdirectory, then run its program.
include("${CMAKE_CURRENT_LIST_DIR}/RunCommand.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} -S "${EMBEDDER_SOURCE_DIR}" -B "${WORK_DIR}" -G "${GENERATOR}" "-DTARNCOMMON_SOURCE_DIR=${SOURCE_DIR}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}" --target embedder -j 2)
run_expecting("consumer ok 1\\.0\\.0" "${WORK_DIR}/embedder")
