# What the toolchains of mingw-w64 share; they set CMAKE_SYSTEM_PROCESSOR and the names of the wine that runs its programs.
set(CMAKE_SYSTEM_NAME Windows)

# The compiler with POSIX threads: with the other one the standard library of gcc 12 has no std::mutex.
set(quill_triple ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${quill_triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${quill_triple}-g++-posix)
set(CMAKE_RC_COMPILER ${quill_triple}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${quill_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Boost's headers are the same for every system, but they stand beside the headers of the C library of this one, which
# must stay out of sight. A link in the build tree shows Boost alone. Compiler checks have build trees of their own.
if(NOT CMAKE_PROJECT_NAME STREQUAL "CMAKE_TRY_COMPILE" AND EXISTS /usr/include/boost)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/portable-headers)
    file(CREATE_LINK /usr/include/boost ${CMAKE_BINARY_DIR}/portable-headers/boost SYMBOLIC)
    set(Boost_NO_BOOST_CMAKE ON)
    set(Boost_INCLUDE_DIR ${CMAKE_BINARY_DIR}/portable-headers)
endif()

# The programs are started by a script of the build tree.
find_program(QUILL_WINE NAMES ${quill_wine_programs} PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
find_program(QUILL_WINESERVER NAMES wineserver PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
mark_as_advanced(QUILL_WINE QUILL_WINESERVER)
if(QUILL_WINE AND QUILL_WINESERVER AND NOT CMAKE_PROJECT_NAME STREQUAL "CMAKE_TRY_COMPILE")
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll
        OUTPUT_VARIABLE quill_runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
    cmake_path(GET quill_runtime PARENT_PATH quill_runtime)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_BINARY_DIR}/run-with-wine)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/run-with-wine.in ${CMAKE_CROSSCOMPILING_EMULATOR} @ONLY
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()
