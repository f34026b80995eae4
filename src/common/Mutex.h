// SDL's mutex and condition variable as owning types whose use clang can check.
//
// SDL mutexes are recursive, which would hide a lock taken twice; the annotations make the compiler
// refuse it. Lock through MutexLock. Any thread may call.
#pragma once

#include <cstdint>

#include <SDL_mutex.h>

#include "common/ThreadSafety.h"

class VESK_CAPABILITY("mutex") Mutex {
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock() VESK_ACQUIRE();
    void Unlock() VESK_RELEASE();

private:
    friend class Condition;
    SDL_mutex* handle;
};

/// Holds a mutex for the length of a scope.
class VESK_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) VESK_ACQUIRE(mutex);
    ~MutexLock() VESK_RELEASE();
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& held;
};

/// A condition variable; every wait names the mutex that guards the condition.
class Condition {
public:
    Condition();
    ~Condition();
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    /// Waits for a signal; may also wake without one, so test the condition again.
    void Wait(Mutex& mutex) VESK_REQUIRES(mutex);

    /// Waits at most so many milliseconds; false when they have passed without a signal.
    bool WaitFor(Mutex& mutex, std::uint32_t milliseconds) VESK_REQUIRES(mutex);

    void Signal();
    void Broadcast();

private:
    SDL_cond* handle;
};
