# Runs as cmake -P: the C-linkage names stay unmangled in the dynamic symbol
# table, the private path helper stays hidden, and any exported free function
# whose parameters are all plain C types has C linkage.
execute_process(COMMAND nm -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
foreach(name KQAssertionFailed _ZLLogWarning _ZLLogError _ZLLogMsg _ZLLog _ZLMakeLogStr KQLastPathComponentOfPath
             KQDebugBreak KQSetDebugBreakHook g_breakOnWarningsAndErrors TarnCommonVersionNumber
             TarnCommonVersionString KQErrorDomain Secs Unique_ID_ns q_RECT_rect_between_points
             q_POINT_distance_between_points q_RECT__Get_Centre q_RECT_set_edge_to_location
             q_RECT_set_corner_to_point q_RECT_normalize KQPointConstrainToLine)
    if(NOT symbols MATCHES "[ \n]${name}\n")
        message(FATAL_ERROR "${name} is not exported unmangled")
    endif()
endforeach()
if(symbols MATCHES "KQPathComponent")
    message(FATAL_ERROR "a private symbol is exported")
endif()

# Demangled, a C++ name shows its parameter list, a C name does not.
execute_process(COMMAND nm -D --defined-only --demangle "${LIBRARY}" OUTPUT_VARIABLE demangled COMMAND_ERROR_IS_FATAL ANY)
# Square brackets and semicolons would stop CMake from splitting the list.
string(REGEX REPLACE "[][;]" "," demangled "${demangled}")
string(REPLACE "\n" ";" lines "${demangled}")
set(scalar "void|bool|char|signed char|unsigned char|short|unsigned short|int|unsigned int|long|unsigned long|long long")
set(scalar "${scalar}|unsigned long long|float|double|long double|__va_list_tag|RGBColor|KQPoint|KQSize|KQRect")
set(mangled "")
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9a-f]+ [TW] ([A-Za-z_][A-Za-z0-9_]*)\\((.*)\\)$")
        set(name "${CMAKE_MATCH_1}(${CMAKE_MATCH_2})")
        # A plain function pointer counts as one plain parameter.
        string(REGEX REPLACE "void \\(\\*\\)\\(\\)" "void*" parameters "${CMAKE_MATCH_2}")
        string(REPLACE ", " ";" parameters "${parameters}")
        list(FILTER parameters EXCLUDE REGEX "^(const )?(${scalar})( const)?(\\*( const)?)*$")
        if(NOT parameters)
            list(APPEND mangled "${name}")
        endif()
    endif()
endforeach()
if(mangled)
    message(FATAL_ERROR "mangled though their parameters are plain C types: ${mangled}")
endif()
message(STATUS "exported symbols ok")
