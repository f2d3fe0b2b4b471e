# How fuzzers are made: libFuzzer drives LLVMFuzzerTestOneInput, over libraries built with its coverage.
include_guard()

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR NOT QUILL_SANITIZE MATCHES "fuzzer-no-link")
    message(FATAL_ERROR "The fuzzers need clang and -fsanitize=fuzzer-no-link in QUILL_SANITIZE: use the preset fuzz.")
endif()

# quill_fuzzer(NAME SOURCES ... LIBRARIES ...): the program NAME_fuzz.
function(quill_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    set(target ${name}_fuzz)
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} quill_flags Threads::Threads)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
endfunction()
