# Runs as cmake -P with MODE=record (write the record) or MODE=check
# (compare the library with it). Only the public headers' types count:
# private implementations may change freely behind their pointers.
string(REPLACE "|" ";" HEADERS "${HEADERS}")

if(MODE STREQUAL "record")
    set(header_options "")
    foreach(header IN LISTS HEADERS)
        list(APPEND header_options --hf "${header}")
    endforeach()
    # Build paths say nothing about the ABI.
    execute_process(COMMAND "${ABIDW}" --no-show-locs --no-corpus-path --no-comp-dir-path
                            --drop-private-types ${header_options} --out-file "${RECORD}" "${LIBRARY}"
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "abidw failed (${result})")
    endif()
    message(STATUS "ABI recorded in ${RECORD}")
    return()
endif()

if(NOT EXISTS "${RECORD}")
    message(FATAL_ERROR "No ABI record at ${RECORD}: make one with the abi-record target")
endif()
set(header_options "")
foreach(header IN LISTS HEADERS)
    list(APPEND header_options --hf2 "${header}")
endforeach()
execute_process(COMMAND "${ABIDIFF}" --no-added-syms --drop-private-types ${header_options}
                        "${RECORD}" "${LIBRARY}"
                RESULT_VARIABLE result OUTPUT_VARIABLE report ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The ABI differs from the record (abidiff status ${result}):\n${report}\n${errors}\n"
                        "If the change is intended and the SOVERSION allows it, renew the record "
                        "with the abi-record target.")
endif()
message(STATUS "ABI matches the record")
