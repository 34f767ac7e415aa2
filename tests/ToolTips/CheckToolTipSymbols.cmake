# The hit-testing functions are exported by their plain names at global scope (_Z<length><name>, as such
# names mangle); that nothing else is exported unpublished, exported_symbols_are_public checks.
execute_process(COMMAND nm -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
foreach(name ToolTipAtScreenPoint GetViewAtPointInWindow GetViewAtPointInView GetViewAtPointInToolbar)
    string(LENGTH "${name}" length)
    if(NOT symbols MATCHES "_Z${length}${name}")
        message(FATAL_ERROR "${name} is not exported")
    endif()
endforeach()
