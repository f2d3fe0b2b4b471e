// Symbol export of QuillUtils70.
#pragma once

#if defined(QUILL_STATIC)
#define QUILLUTILS_EXPORT
#elif defined(_WIN32)
#if defined(QUILL_BUILDING_QuillUtils70)
#define QUILLUTILS_EXPORT __declspec(dllexport)
#else
#define QUILLUTILS_EXPORT __declspec(dllimport)
#endif
#else
#define QUILLUTILS_EXPORT __attribute__((visibility("default")))
#endif
