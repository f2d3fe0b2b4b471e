# How tests are made. googletest is built from its source, so that it fits every target and sanitizer.
include_guard()
include(GoogleTest)

set(QUILL_GTEST_SOURCE /usr/src/googletest CACHE PATH "Source folder of googletest")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
block()
    set(BUILD_SHARED_LIBS OFF)
    set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)  # its options follow the variables set here
    add_subdirectory(${QUILL_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endblock()
foreach(target gtest gtest_main gmock gmock_main)
    if(QUILL_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${QUILL_SANITIZE})
    endif()
endforeach()

# A cross build without an emulator has nothing to list its tests with while it builds.
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
endif()

# quill_test(FOLDER [SLOW] SOURCES ... LIBRARIES ...): the tests of one folder, one executable, labelled FOLDER. Tests that
# take more than a few seconds go into a second executable, made with SLOW and labelled FOLDER-slow: "ctest -L FOLDER"
# takes both, "ctest -LE slow" leaves the slow ones out. The target tests_FOLDER builds both.
function(quill_test folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SLOW" "" "SOURCES;LIBRARIES")
    set(target ${folder}_test)
    set(label ${folder})
    set(timeout 300)
    if(arg_SLOW)
        set(target ${folder}_slow_test)
        set(label ${folder}-slow)
        set(timeout 1200)
    endif()
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gmock_main quill_flags Threads::Threads)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${label} TIMEOUT ${timeout})
    if(NOT TARGET tests_${folder})
        add_custom_target(tests_${folder})
    endif()
    add_dependencies(tests_${folder} ${target})
endfunction()
