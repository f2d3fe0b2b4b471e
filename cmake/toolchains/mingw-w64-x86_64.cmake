# Builds 64-bit Windows binaries on Linux with mingw-w64. The programs run under wine where that is installed.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(quill_wine_programs wine64 wine)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
