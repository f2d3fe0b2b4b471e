// What clang's thread-safety analysis is told: which mutex guards a member, what a function needs, takes and gives up.
// Elsewhere the macros are empty. A type is named a capability when it can be held, like a mutex.
#pragma once

#if defined(__clang__) && defined(__has_attribute)
#if __has_attribute(capability)
#define QUILL_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#endif
#endif
#if !defined(QUILL_THREAD_ANNOTATION)
// What the other macros are made of.
#define QUILL_THREAD_ANNOTATION(attribute)
#endif

// Of types: one that can be held, and one whose objects hold another for their lifetime.
#define QUILL_CAPABILITY(kind) QUILL_THREAD_ANNOTATION(capability(kind))
#define QUILL_SCOPED_CAPABILITY QUILL_THREAD_ANNOTATION(scoped_lockable)

// Of members: what must be held to touch the member, or what the member points at.
#define QUILL_GUARDED_BY(mutex) QUILL_THREAD_ANNOTATION(guarded_by(mutex))
#define QUILL_PT_GUARDED_BY(mutex) QUILL_THREAD_ANNOTATION(pt_guarded_by(mutex))

// Of mutex members: the order in which they are taken.
#define QUILL_ACQUIRED_BEFORE(...) QUILL_THREAD_ANNOTATION(acquired_before(__VA_ARGS__))
#define QUILL_ACQUIRED_AFTER(...) QUILL_THREAD_ANNOTATION(acquired_after(__VA_ARGS__))

// Of functions: what the caller holds before and after the call.
#define QUILL_REQUIRES(...) QUILL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define QUILL_REQUIRES_SHARED(...) QUILL_THREAD_ANNOTATION(requires_shared_capability(__VA_ARGS__))
#define QUILL_EXCLUDES(...) QUILL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define QUILL_ACQUIRE(...) QUILL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define QUILL_ACQUIRE_SHARED(...) QUILL_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define QUILL_RELEASE(...) QUILL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define QUILL_RELEASE_SHARED(...) QUILL_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define QUILL_RELEASE_GENERIC(...) QUILL_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define QUILL_TRY_ACQUIRE(...) QUILL_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define QUILL_TRY_ACQUIRE_SHARED(...) QUILL_THREAD_ANNOTATION(try_acquire_shared_capability(__VA_ARGS__))
#define QUILL_ASSERT_HELD(...) QUILL_THREAD_ANNOTATION(assert_capability(__VA_ARGS__))
#define QUILL_RETURNS_CAPABILITY(mutex) QUILL_THREAD_ANNOTATION(lock_returned(mutex))

// Of a function whose locking the analysis cannot follow; say at the place why it is right.
#define QUILL_NO_THREAD_SAFETY_ANALYSIS QUILL_THREAD_ANNOTATION(no_thread_safety_analysis)
