# cmake -DPROGRAM=FILE -DPRINTED=FILE -P ComparePrinted.cmake: runs a program, which has to end well and to
# print what the file says.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE result)
file(READ ${PRINTED} expected)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${result}")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} prints\n${output}\nand not\n${expected}")
endif()
