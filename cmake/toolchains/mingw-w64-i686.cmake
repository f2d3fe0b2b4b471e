# Builds 32-bit Windows binaries on Linux with mingw-w64. The programs run under a 32-bit wine where that is installed.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(quill_wine_programs wine32 wine)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
