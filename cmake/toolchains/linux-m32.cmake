# Builds 32-bit binaries on 64-bit Linux, with the compiler's own 32-bit libraries. SQLite comes from the packages of the
# 32-bit architecture, of which the library itself is enough; where it is not installed, neither is the store built.
set(CMAKE_CXX_FLAGS_INIT -m32)

file(GLOB quill_sqlite /usr/lib/i386-linux-gnu/libsqlite3.so /usr/lib/i386-linux-gnu/libsqlite3.so.0)
if(quill_sqlite)
    list(GET quill_sqlite 0 quill_sqlite)
    set(SQLite3_LIBRARY ${quill_sqlite} CACHE FILEPATH "The 32-bit SQLite")
else()
    set(QUILL_BUILD_SQLITE_STORE OFF CACHE BOOL "Without a 32-bit SQLite")
endif()
