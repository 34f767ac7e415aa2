execute_process(COMMAND nm -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE symbols RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
foreach(name KQAssertionFailed _ZLLogWarning _ZLLogError _ZLLogMsg _ZLLog _ZLMakeLogStr KQLastPathComponentOfPath
             KQDebugBreak KQSetDebugBreakHook g_breakOnWarningsAndErrors TarnCommonVersionNumber
             TarnCommonVersionString KQErrorDomain Secs Unique_ID_ns q_RECT_rect_between_points
             q_POINT_distance_between_points q_RECT__Get_Centre q_RECT_set_edge_to_location
             q_RECT_set_corner_to_point q_RECT_normalize KQPointConstrainToLine)
    if(NOT symbols MATCHES "[ \n]${name}\n")
        message(FATAL_ERROR "${name} is not exported unmangled")
    endif()
endforeach()
# Hidden by default: the private path helper must not leak.
if(symbols MATCHES "KQPathComponent")
    message(FATAL_ERROR "a private symbol is exported")
endif()

# Any exported free function whose parameters are all plain C types has C
# linkage: demangled, a C++ name shows its parameter list, a C name does not.
execute_process(COMMAND nm -D --defined-only --demangle "${LIBRARY}" OUTPUT_VARIABLE demangled
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm --demangle failed on ${LIBRARY}")
endif()
# Square brackets would stop CMake from splitting the list at semicolons.
string(REPLACE "[" "<" demangled "${demangled}")
string(REPLACE "]" ">" demangled "${demangled}")
string(REPLACE ";" "," demangled "${demangled}")
string(REPLACE "\n" ";" lines "${demangled}")
set(scalar "void|bool|char|signed char|unsigned char|short|unsigned short|int|unsigned int|long|unsigned long")
set(scalar "${scalar}|long long|unsigned long long|float|double|long double|__va_list_tag|RGBColor|KQPoint|KQSize|KQRect")
set(ctype "^(const )?(${scalar})( const)?(\\*( const)?)*$")
set(mangledCFunctions "")
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9a-f]+ [TW] ([A-Za-z_][A-Za-z0-9_]*)\\((.*)\\)$")
        set(name "${CMAKE_MATCH_1}")
        set(parameters "${CMAKE_MATCH_2}")
        # A plain function pointer counts as one plain parameter.
        string(REGEX REPLACE "void \\(\\*\\)\\(\\)" "void*" simplified "${parameters}")
        string(REPLACE ", " ";" parameterList "${simplified}")
        set(plain TRUE)
        foreach(parameter IN LISTS parameterList)
            if(NOT parameter MATCHES "${ctype}")
                set(plain FALSE)
            endif()
        endforeach()
        if(plain)
            list(APPEND mangledCFunctions "${name}(${parameters})")
        endif()
    endif()
endforeach()
if(mangledCFunctions)
    message(FATAL_ERROR "mangled though their parameters are plain C types: ${mangledCFunctions}")
endif()
message(STATUS "exported symbols ok")
