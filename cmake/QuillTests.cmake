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
    target_compile_options(${target} PRIVATE -O0)
    if(QUILL_SANITIZE STREQUAL "thread")  # has to see all that threads do; the others are content with the libraries
        target_compile_options(${target} PRIVATE -fsanitize=thread)
    endif()
endforeach()

# quill_test(FOLDER [SLOW] SOURCES ... LIBRARIES ...): the tests of one folder, one executable, labelled FOLDER. Tests that
# take more than a few seconds go into a second executable, made with SLOW and labelled FOLDER-slow: "ctest -L FOLDER"
# takes both, "ctest -LE slow" leaves the slow ones out. The target tests_FOLDER builds both. In a cross build an
# executable is one test, since an emulator takes longer to start than most tests to run.
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
    quill_merge(${target})
    # Where memory comes from, compilers had better not see.
    set_source_files_properties(../support/allocation_counter.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gmock_main quill_flags Threads::Threads)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
    # Tests spend their time in the libraries, and compilers theirs in optimising.
    target_compile_options(${target} PRIVATE -O0)
    if(QUILL_SANITIZE)
        target_compile_definitions(${target} PRIVATE QUILL_SANITIZED)
    endif()
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${target} COMMAND ${target} --gtest_brief=1)
        set_tests_properties(${target} PROPERTIES LABELS ${label} TIMEOUT ${timeout})
    else()
        gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${label} TIMEOUT ${timeout})
    endif()
    if(NOT TARGET tests_${folder})
        add_custom_target(tests_${folder})
    endif()
    add_dependencies(tests_${folder} ${target})
endfunction()

# quill_static_test(NAME SOURCES ...): tests of a program for which all libraries but that of design files are one static
# library, of whose members it gets only those that it refers to. On Windows these have to be compiled once more; those of
# 64 bits show all that there is to see.
function(quill_static_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
    if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
        return()
    endif()
    if(NOT TARGET quill_members)
        add_library(quill_members STATIC)
        set_target_properties(quill_members PROPERTIES LINKER_LANGUAGE CXX)
        target_link_libraries(quill_members PUBLIC quill_text Threads::Threads)
        foreach(library QuillUtils70 OrinPI PlatformUtils70 QuillInterfaceManager70)
            if(WIN32)  # what is compiled for one DLL looks for the others' names in DLLs
                get_target_property(sources ${library} SOURCES)
                target_sources(quill_members PRIVATE ${sources})
                list(FILTER sources INCLUDE REGEX "_win32\\.cpp$")
                set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)  # see quill_sources
            else()
                target_sources(quill_members PRIVATE $<TARGET_OBJECTS:${library}>)
            endif()
        endforeach()
        if(WIN32)
            target_link_libraries(quill_members PRIVATE quill_flags $<BUILD_INTERFACE:Boost::headers>)
            target_include_directories(quill_members PUBLIC ${PROJECT_SOURCE_DIR}/src)
            target_compile_definitions(quill_members PUBLIC QUILL_STATIC)
        endif()
    endif()
    quill_test(${name} SOURCES ${arg_SOURCES} LIBRARIES quill_members)
endfunction()
