# The Designer forms the relayout engine is shown and tested on, with their
# translations (German, French), compiled into a target's resources at
# build time: tarn_add_relayout_forms(<target> [UPDATE_TRANSLATIONS]).
# UPDATE_TRANSLATIONS adds <target>_lupdate, which refreshes the .ts files.
find_package(Qt6 REQUIRED COMPONENTS LinguistTools)
set(TARN_RELAYOUT_FORMS_DIR "${CMAKE_CURRENT_LIST_DIR}")

function(tarn_add_relayout_forms target)
    cmake_parse_arguments(F "UPDATE_TRANSLATIONS" "" "" ${ARGN})
    set(_dir "${TARN_RELAYOUT_FORMS_DIR}")
    set(_sources "${_dir}/RelayoutForms.h" "${_dir}/RelayoutForms.cpp"
                 "${_dir}/PreferencesDialog.ui" "${_dir}/FindReplacePanel.ui")
    set(_ts "${_dir}/translations/relayoutforms_de.ts" "${_dir}/translations/relayoutforms_fr.ts")
    target_sources(${target} PRIVATE ${_sources})
    set_target_properties(${target} PROPERTIES AUTOUIC ON AUTOMOC ON)
    target_include_directories(${target} PRIVATE "${_dir}")
    qt_add_lrelease(${target} TS_FILES ${_ts} QM_FILES_OUTPUT_VARIABLE _qm)
    qt_add_resources(${target} "${target}_relayoutforms_translations"
        PREFIX "/relayoutforms/translations" BASE "${CMAKE_CURRENT_BINARY_DIR}" FILES ${_qm})
    if(F_UPDATE_TRANSLATIONS)
        qt_add_lupdate(${target} TS_FILES ${_ts} SOURCES ${_sources} OPTIONS -no-obsolete -locations none)
    endif()
endfunction()
