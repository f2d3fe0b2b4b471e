# Runs PROGRAM, by EMULATOR when that is given, and compares what it prints with the file EXPECTED.
execute_process(COMMAND ${EMULATOR} ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE code)
file(READ ${EXPECTED} expected)
string(REPLACE "\r\n" "\n" printed "${printed}")
if(NOT code EQUAL 0 OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "It ended with ${code} and printed\n${printed}instead of\n${expected}")
endif()
