# How fuzz targets are made: with QUILL_BUILD_FUZZERS libFuzzer drives LLVMFuzzerTestOneInput, over libraries built with
# its coverage; otherwise a small program does, and ctest gives it the inputs that are kept.
include_guard()

if(QUILL_BUILD_FUZZERS AND NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "The fuzzers need clang: use the preset asan.")
endif()

if(NOT QUILL_BUILD_FUZZERS)
    add_library(fuzz_replay OBJECT ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    target_link_libraries(fuzz_replay PRIVATE quill_flags)
endif()

# quill_fuzzer(NAME SOURCES ... LIBRARIES ... [SEEDS ...]): the program NAME_fuzz. Its inputs are those of corpus/NAME,
# and SEEDS, which the source tree holds for other ends. The fuzzers find both in the file NAME_fuzz.seeds. The target
# fuzzers builds all of them.
function(quill_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;SEEDS")
    set(target ${name}_fuzz)
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} quill_flags Threads::Threads)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
    if(NOT TARGET fuzzers)
        add_custom_target(fuzzers)
    endif()
    add_dependencies(fuzzers ${target})
    set(seeds ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name} ${arg_SEEDS})
    if(QUILL_BUILD_FUZZERS)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer)
        list(JOIN seeds "\n" lines)
        file(CONFIGURE OUTPUT ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${target}.seeds CONTENT "${lines}\n" @ONLY)
    else()
        target_link_libraries(${target} PRIVATE fuzz_replay)
        add_test(NAME Fuzz.${name} COMMAND ${target} ${seeds})
        set_tests_properties(Fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 300)
    endif()
endfunction()
