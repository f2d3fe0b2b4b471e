// Symbol export of OrinPISqlite: designs kept in SQLite files.
#pragma once

#if defined(QUILL_STATIC)
#define ORINPISQLITE_EXPORT
#elif defined(_WIN32)
#if defined(QUILL_BUILDING_OrinPISqlite)
#define ORINPISQLITE_EXPORT __declspec(dllexport)
#else
#define ORINPISQLITE_EXPORT __declspec(dllimport)
#endif
#else
#define ORINPISQLITE_EXPORT __attribute__((visibility("default")))
#endif
