execute_process(COMMAND nm -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE symbols RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
foreach(name KQAssertionFailed _ZLLogWarning _ZLLogError _ZLLogMsg _ZLLog KQLastPathComponentOfPath
             KQDebugBreak g_breakOnWarningsAndErrors TarnCommonVersionNumber TarnCommonVersionString
             KQErrorDomain)
    if(NOT symbols MATCHES "[ \n]${name}\n")
        message(FATAL_ERROR "${name} is not exported unmangled")
    endif()
endforeach()
# Hidden by default: the private path helper must not leak.
if(symbols MATCHES "KQPathComponent")
    message(FATAL_ERROR "a private symbol is exported")
endif()
message(STATUS "exported symbols ok")
