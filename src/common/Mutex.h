// SDL's mutex and condition variable as owning types whose use clang can check.
//
// SDL mutexes are recursive, which would hide a lock taken twice; the annotations make the compiler
// refuse it. Any thread may call.
#pragma once

#include "common/ThreadSafety.h"

#include <SDL_mutex.h>

#include <cstdint>

class VESK_CAPABILITY("mutex") Mutex {
public:
    Mutex() : handle(SDL_CreateMutex()) {}
    ~Mutex() { SDL_DestroyMutex(handle); }
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// Waits until no other thread holds the mutex, and takes it. Prefer MutexLock.
    void Lock() VESK_ACQUIRE() { SDL_LockMutex(handle); }

    /// Gives the mutex back, on the thread that holds it.
    void Unlock() VESK_RELEASE() { SDL_UnlockMutex(handle); }

private:
    friend class Condition;
    SDL_mutex* handle;
};

/// Holds a mutex for the length of a scope.
class VESK_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) VESK_ACQUIRE(mutex) : held(mutex) { held.Lock(); }
    ~MutexLock() VESK_RELEASE() { held.Unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& held;
};

/// A condition variable; every wait names the mutex that guards the condition.
class Condition {
public:
    Condition() : handle(SDL_CreateCond()) {}
    ~Condition() { SDL_DestroyCond(handle); }
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    /// Waits for a signal; may also wake without one, so test the condition again.
    void Wait(Mutex& mutex) VESK_REQUIRES(mutex) { SDL_CondWait(handle, mutex.handle); }

    /// Waits at most so many milliseconds; false when they have passed without a signal.
    bool WaitFor(Mutex& mutex, std::uint32_t milliseconds) VESK_REQUIRES(mutex) {
        return SDL_CondWaitTimeout(handle, mutex.handle, milliseconds) == 0;
    }

    /// Wakes one of the threads that wait; call it with the condition's mutex held.
    void Signal() { SDL_CondSignal(handle); }

    /// Wakes all of them, likewise.
    void Broadcast() { SDL_CondBroadcast(handle); }

private:
    SDL_cond* handle;
};
