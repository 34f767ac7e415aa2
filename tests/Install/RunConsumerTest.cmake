# cmake -P: with EMBEDDER_SOURCE_DIR, a parent project embedding the sources; otherwise an install into a
# new prefix and its consumers: the CMake package as C++17 and C++20, and a compiler line fed by pkg-config.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

function(run_expecting regex)
    run(${ARGN})
    if(NOT run_output MATCHES "${regex}")
        message(FATAL_ERROR "${ARGN} did not print ${regex}: ${run_output}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
if(EMBEDDER_SOURCE_DIR)
    run(${CMAKE_COMMAND} -S "${EMBEDDER_SOURCE_DIR}" -B "${WORK_DIR}" -G "${GENERATOR}" "-DTARNCOMMON_SOURCE_DIR=${SOURCE_DIR}")
    run(${CMAKE_COMMAND} --build "${WORK_DIR}" --target embedder -j 2)
    run_expecting("consumer ok 1\\.0\\.0" "${WORK_DIR}/embedder")
    return()
endif()

set(prefix "${WORK_DIR}/prefix")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
file(GLOB_RECURSE library "${prefix}/*/libTarnCommon.so")
file(GLOB_RECURSE pc_file "${prefix}/*/TarnCommon.pc")
list(GET library 0 library)
list(GET pc_file 0 pc_file)
get_filename_component(libdir "${library}" DIRECTORY)
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
set(ENV{LD_LIBRARY_PATH} "${libdir}")
set(ENV{PKG_CONFIG_PATH} "${pc_dir}") # its prefix comes from where the file lies

foreach(standard 17 20)
    run(${CMAKE_COMMAND} -S "${CONSUMER_SOURCE_DIR}" -B "${WORK_DIR}/build-${standard}" -G "${GENERATOR}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DCONSUMER_STANDARD=${standard}")
    run(${CMAKE_COMMAND} --build "${WORK_DIR}/build-${standard}")
    run_expecting("consumer ok" "${WORK_DIR}/build-${standard}/consumer")
endforeach()

find_program(PKG_CONFIG pkg-config REQUIRED)
run_expecting("^1\\.0\\.0" ${PKG_CONFIG} --modversion TarnCommon)
run(${PKG_CONFIG} --cflags --libs TarnCommon)
separate_arguments(flags UNIX_COMMAND "${run_output}")
run(c++ -std=c++17 -fPIC "${CONSUMER_SOURCE_DIR}/main.cpp" ${flags} -o "${WORK_DIR}/plain-consumer")
run_expecting("consumer ok" "${WORK_DIR}/plain-consumer")
