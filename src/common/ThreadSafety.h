// Lock annotations that clang checks at compile time (-Wthread-safety); other compilers see
// nothing.
//
// A field names the lock that guards it, a function the locks that its caller must or must not
// hold. Only a macro can stand for an attribute.
#pragma once

#if defined(__clang__)
#define VESK_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define VESK_THREAD_ATTRIBUTE(x)
#endif

#define VESK_CAPABILITY(name) VESK_THREAD_ATTRIBUTE(capability(name))
#define VESK_SCOPED_CAPABILITY VESK_THREAD_ATTRIBUTE(scoped_lockable)
#define VESK_GUARDED_BY(lock) VESK_THREAD_ATTRIBUTE(guarded_by(lock))
#define VESK_REQUIRES(...) VESK_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define VESK_EXCLUDES(...) VESK_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define VESK_ACQUIRE(...) VESK_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define VESK_RELEASE(...) VESK_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
