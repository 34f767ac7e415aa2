# run(<command...>): runs a command for a cmake -P script, stops the script
# with its output when it fails, and leaves its standard output in run_output.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

# run_expecting(<regex> <command...>): run(), and its output must match.
function(run_expecting regex)
    run(${ARGN})
    if(NOT run_output MATCHES "${regex}")
        message(FATAL_ERROR "${ARGN} did not print ${regex}: ${run_output}")
    endif()
endfunction()
