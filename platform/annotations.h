// annotations.h - attributes for Clang's thread-safety analysis
//
// Clang checks the locking rules that they express (-Wthread-safety). For other compilers they
// expand to nothing.
#pragma once

#if defined(__clang__)
#define MV_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define MV_THREAD_ATTRIBUTE(x)
#endif

#define CAPABILITY(name) MV_THREAD_ATTRIBUTE(capability(name))
#define SCOPED_CAPABILITY MV_THREAD_ATTRIBUTE(scoped_lockable)
#define GUARDED_BY(mutex) MV_THREAD_ATTRIBUTE(guarded_by(mutex))
#define PT_GUARDED_BY(mutex) MV_THREAD_ATTRIBUTE(pt_guarded_by(mutex))
#define REQUIRES(...) MV_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) MV_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define ACQUIRE(...) MV_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define TRY_ACQUIRE(...) MV_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define RELEASE(...) MV_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define RETURN_CAPABILITY(x) MV_THREAD_ATTRIBUTE(lock_returned(x))
#define NO_THREAD_SAFETY_ANALYSIS MV_THREAD_ATTRIBUTE(no_thread_safety_analysis)
