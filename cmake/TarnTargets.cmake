# Settings for the project's own targets. They go on targets, never on the
# directory, so that a parent project that embeds the library keeps its own.

# tarn_target_defaults(<target>): C++20, AUTOMOC, the project's warnings.
function(tarn_target_defaults target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES AUTOMOC ON CXX_EXTENSIONS OFF)
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall -Wextra -Wpedantic>)
    tarn_refresh_autogen(${target})
endfunction()
