// Symbol export of OrinPI: the database interface and the engine behind it.
#pragma once

#if defined(QUILL_STATIC)
#define ORINPI_EXPORT
#elif defined(_WIN32)
#if defined(QUILL_BUILDING_OrinPI)
#define ORINPI_EXPORT __declspec(dllexport)
#else
#define ORINPI_EXPORT __declspec(dllimport)
#endif
#else
#define ORINPI_EXPORT __attribute__((visibility("default")))
#endif
