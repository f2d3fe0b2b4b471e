# How the project's targets are made: warnings, sanitizers, and the bookkeeping that every library needs.
include_guard()

if(WIN32)
    set(QUILL_PORT win32)
else()
    set(QUILL_PORT posix)
endif()

# The flags that every target of the project is compiled with; consumers do not inherit them.
add_library(quill_flags INTERFACE)
target_compile_options(quill_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Wcast-align -Wnull-dereference -Wimplicit-fallthrough -Wextra-semi
    $<$<BOOL:${QUILL_WERROR}>:-Werror>
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
    $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>)
if(QUILL_SANITIZE)
    # Sizes of objects are left to the address sanitizer, which sees more of them in less time.
    target_compile_options(quill_flags INTERFACE -fsanitize=${QUILL_SANITIZE} -fno-sanitize=object-size
        -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(quill_flags INTERFACE -fsanitize=${QUILL_SANITIZE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # This compiler sees null dereferences and overlapping copies in the standard library's own inline code. Zeros for
    # null pointers the other one sees where there are none.
    target_compile_options(quill_flags INTERFACE -Wno-null-dereference -Wno-restrict -Wzero-as-null-pointer-constant)
    if(CMAKE_UNITY_BUILD)
        target_compile_options(quill_flags INTERFACE -Wno-subobject-linkage)  # see quill_merge
    endif()
endif()

# quill_merge(TARGET): the program and the tests, whose files are small and include the same large headers, are compiled by
# eights in every build. g++ takes all but the first file for headers, whose types should not hang on unnamed namespaces.
function(quill_merge target)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON)
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()

# quill_library(NAME): one of the installed libraries, with a versioned file name. Its sources come from the folders, by
# quill_sources.
function(quill_library name)
    add_library(${name})
    add_library(QuillUtils70::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:quill_flags>)
    target_compile_definitions(${name} PRIVATE QUILL_BUILDING_${name})
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name} PUBLIC QUILL_STATIC)
    elseif(NOT WIN32)
        set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
        target_link_options(${name} PRIVATE -Wl,--version-script=${exports})
        set_target_properties(${name} PROPERTIES LINK_DEPENDS ${exports})
    endif()
endfunction()

# quill_sources(TARGET SOURCES ... HEADERS ...): adds a folder's files to a library. HEADERS are the public ones, which
# are installed.
function(quill_sources target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS")
    target_sources(${target} PRIVATE ${arg_SOURCES})
    # The ports tell the system's headers what they want of them before they include the first, so nothing may be merged
    # with them.
    list(FILTER arg_SOURCES INCLUDE REGEX "_(posix|win32)\\.cpp$")
    list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    set_source_files_properties(${arg_SOURCES} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    if(arg_HEADERS)
        target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${arg_HEADERS})
    endif()
endfunction()
