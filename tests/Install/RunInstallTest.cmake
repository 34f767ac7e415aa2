# Runs as cmake -P: install into a prefix other than the configured one, then
# build and run consumers against it: the CMake package as C++17 and as
# C++20, and a plain compiler line fed by nothing but pkg-config.
include("${CMAKE_CURRENT_LIST_DIR}/RunCommand.cmake")

file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
file(GLOB_RECURSE libraries "${prefix}/*/libTarnCommon.so")
list(GET libraries 0 library)
get_filename_component(libdir "${library}" DIRECTORY)
set(ENV{LD_LIBRARY_PATH} "${libdir}")

foreach(standard 17 20)
    set(build "${WORK_DIR}/build-${standard}")
    run(${CMAKE_COMMAND} -S "${CONSUMER_SOURCE_DIR}" -B "${build}" -G "${GENERATOR}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DCONSUMER_STANDARD=${standard}")
    run(${CMAKE_COMMAND} --build "${build}")
    run("${build}/consumer")
    if(NOT run_output MATCHES "consumer ok")
        message(FATAL_ERROR "C++${standard} consumer did not finish: ${run_output}")
    endif()
endforeach()

# pkg-config alone: its prefix comes from where the file lies.
find_program(PKG_CONFIG pkg-config REQUIRED)
file(GLOB_RECURSE pc_files "${prefix}/*/TarnCommon.pc")
list(GET pc_files 0 pc_file)
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run(${PKG_CONFIG} --modversion TarnCommon)
if(NOT run_output MATCHES "^1\\.0\\.0")
    message(FATAL_ERROR "pkg-config version: ${run_output}")
endif()
run(${PKG_CONFIG} --cflags --libs TarnCommon)
string(STRIP "${run_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(c++ -std=c++17 -fPIC "${CONSUMER_SOURCE_DIR}/main.cpp" ${flags} -o "${WORK_DIR}/plain-consumer")
run("${WORK_DIR}/plain-consumer")
if(NOT run_output MATCHES "consumer ok")
    message(FATAL_ERROR "pkg-config consumer did not finish: ${run_output}")
endif()
message(STATUS "install test passed")
