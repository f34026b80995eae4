// A one-shot flag that one thread raises and others wait for, with a deadline.
#pragma once

#include <cstdint>

#include "common/Mutex.h"

class Signal {
public:
    static constexpr std::uint32_t kDeadline = 60000; ///< ms, ample even under a slow sanitizer

    void Raise() VESK_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        raised = true;
        condition.Broadcast();
    }

    /// False when the flag has not been raised within so many ms.
    bool Wait(std::uint32_t milliseconds = kDeadline) VESK_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        while (!raised) {
            if (!condition.WaitFor(mutex, milliseconds)) {
                return raised;
            }
        }
        return true;
    }

private:
    Mutex mutex;
    Condition condition;
    bool raised VESK_GUARDED_BY(mutex) = false;
};
