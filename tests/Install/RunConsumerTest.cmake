# cmake -P: MODE "embedded", a parent project embedding the sources; MODE "install", an install into a new
# prefix and its consumers: the CMake package as C++17 and C++20, and a compiler line fed by pkg-config.
# run(REGEX COMMAND...) fails unless the command succeeds and its output matches REGEX.
function(run regex)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0 OR NOT out MATCHES "${regex}")
        message(FATAL_ERROR "Failed (${result}, expected ${regex}): ${ARGN}\n${out}\n${err}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
if(MODE STREQUAL "embedded")
    run("" ${CMAKE_COMMAND} -S "${CMAKE_CURRENT_LIST_DIR}/consumer" -B "${WORK_DIR}" -G "${GENERATOR}" -DCONSUMER_STANDARD=17
        "-DTARNCOMMON_SOURCE_DIR=${CMAKE_CURRENT_LIST_DIR}/../..")
    run("" ${CMAKE_COMMAND} --build "${WORK_DIR}" --target consumer -j 2)
    run("consumer ok 1\\.0\\.0" "${WORK_DIR}/consumer")
    return()
endif()

set(prefix "${WORK_DIR}/prefix")
run("" ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
file(GLOB pc_dir "${prefix}/lib*/pkgconfig" "${prefix}/lib/*/pkgconfig") # the library's directory, multiarch or not
set(ENV{LD_LIBRARY_PATH} "${pc_dir}/..")
set(ENV{PKG_CONFIG_PATH} "${pc_dir}") # its prefix comes from where the file lies

foreach(standard 17 20)
    run("" ${CMAKE_COMMAND} -S "${CMAKE_CURRENT_LIST_DIR}/consumer" -B "${WORK_DIR}/build-${standard}" -G "${GENERATOR}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DCONSUMER_STANDARD=${standard}")
    run("" ${CMAKE_COMMAND} --build "${WORK_DIR}/build-${standard}")
    run("consumer ok 1\\.0\\.0" "${WORK_DIR}/build-${standard}/consumer")
endforeach()

run("" pkg-config "TarnCommon = 1.0.0" --cflags --libs)
separate_arguments(flags UNIX_COMMAND "${run_output}")
run("" c++ -std=c++17 -fPIC "${CMAKE_CURRENT_LIST_DIR}/consumer/main.cpp" ${flags} -o "${WORK_DIR}/plain-consumer")
run("consumer ok 1\\.0\\.0" "${WORK_DIR}/plain-consumer")
