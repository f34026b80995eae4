#include "common/Mutex.h"

Mutex::Mutex() : handle(SDL_CreateMutex()) {}

Mutex::~Mutex() {
    SDL_DestroyMutex(handle);
}

void Mutex::Lock() {
    SDL_LockMutex(handle);
}

void Mutex::Unlock() {
    SDL_UnlockMutex(handle);
}

MutexLock::MutexLock(Mutex& mutex) : held(mutex) {
    held.Lock();
}

MutexLock::~MutexLock() {
    held.Unlock();
}

Condition::Condition() : handle(SDL_CreateCond()) {}

Condition::~Condition() {
    SDL_DestroyCond(handle);
}

void Condition::Wait(Mutex& mutex) {
    SDL_CondWait(handle, mutex.handle);
}

bool Condition::WaitFor(Mutex& mutex, std::uint32_t milliseconds) {
    return SDL_CondWaitTimeout(handle, mutex.handle, milliseconds) == 0;
}

void Condition::Signal() {
    SDL_CondSignal(handle);
}

void Condition::Broadcast() {
    SDL_CondBroadcast(handle);
}
