// Symbol export of the two platform libraries.
#pragma once

#if defined(QUILL_STATIC)
#define PLATFORMUTILS_EXPORT
#define QUILLINTERFACEMANAGER_EXPORT
#elif defined(_WIN32)
#if defined(QUILL_BUILDING_PlatformUtils70)
#define PLATFORMUTILS_EXPORT __declspec(dllexport)
#else
#define PLATFORMUTILS_EXPORT __declspec(dllimport)
#endif
#if defined(QUILL_BUILDING_QuillInterfaceManager70)
#define QUILLINTERFACEMANAGER_EXPORT __declspec(dllexport)
#else
#define QUILLINTERFACEMANAGER_EXPORT __declspec(dllimport)
#endif
#else
#define PLATFORMUTILS_EXPORT __attribute__((visibility("default")))
#define QUILLINTERFACEMANAGER_EXPORT __attribute__((visibility("default")))
#endif
