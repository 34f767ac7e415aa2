# cmake -P: every public header documents itself (Doxygen would leave an undocumented file's free functions
# out, without a warning), then Doxygen fails on any undocumented public member.
foreach(header IN LISTS HEADERS)
    file(READ "${header}" text)
    if(NOT text MATCHES "\\\\file ")
        message(SEND_ERROR "${header} has no \\file comment")
    endif()
endforeach()
execute_process(COMMAND "${DOXYGEN}" "${CONFIG}" WORKING_DIRECTORY "${WORK_DIR}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Doxygen found undocumented or wrongly documented public members")
endif()
