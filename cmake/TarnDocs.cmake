# The API reference: `cmake --build build --target docs` (or ./tarn docs)
# writes HTML to build/docs/html, with the gallery's pages as pictures. A
# second configuration, for the tests, reads the headers alone and fails on
# any public member left undocumented.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    message(STATUS "Doxygen not found (Debian: doxygen): no API reference")
    return()
endif()

set(_docs_headers ${TARNCOMMON_PUBLIC_HEADERS} ${TARNCOMMON_GENERATED_HEADERS})
list(JOIN _docs_headers " " _docs_headers)

set(TARNCOMMON_DOCS_OUTPUT "${PROJECT_BINARY_DIR}/docs")
set(TARNCOMMON_DOCS_INPUT "${PROJECT_SOURCE_DIR}/docs/mainpage.md ${_docs_headers}")
set(TARNCOMMON_DOCS_MAINPAGE "${PROJECT_SOURCE_DIR}/docs/mainpage.md")
set(TARNCOMMON_DOCS_IMAGES "${PROJECT_BINARY_DIR}/docs/screenshots")
set(TARNCOMMON_DOCS_WARN_AS_ERROR NO)
set(TARNCOMMON_DOCS_HTML YES)
set(TARNCOMMON_DOCS_XML NO)
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${PROJECT_BINARY_DIR}/docs/Doxyfile" @ONLY)

set(TARNCOMMON_DOCS_OUTPUT "${PROJECT_BINARY_DIR}/docs-check")
set(TARNCOMMON_DOCS_INPUT "${_docs_headers}")
set(TARNCOMMON_DOCS_MAINPAGE "")
set(TARNCOMMON_DOCS_IMAGES "")
set(TARNCOMMON_DOCS_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(TARNCOMMON_DOCS_HTML NO)
set(TARNCOMMON_DOCS_XML YES) # some output is needed; XML is the cheapest
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${PROJECT_BINARY_DIR}/docs/Doxyfile-check" @ONLY)
set(TARNCOMMON_DOCS_CHECK_CONFIG "${PROJECT_BINARY_DIR}/docs/Doxyfile-check")

set(_screenshot_command "")
if(TARGET tarn-gallery)
    set(_screenshot_command
        ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
        $<TARGET_FILE:tarn-gallery> --screenshots "${PROJECT_BINARY_DIR}/docs/screenshots")
endif()
add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E make_directory "${PROJECT_BINARY_DIR}/docs/screenshots"
    COMMAND ${_screenshot_command}
    COMMAND Doxygen::doxygen "${PROJECT_BINARY_DIR}/docs/Doxyfile"
    WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/docs"
    COMMENT "Writing the API reference to ${PROJECT_BINARY_DIR}/docs/html"
    VERBATIM)
if(TARGET tarn-gallery)
    add_dependencies(docs tarn-gallery)
endif()
