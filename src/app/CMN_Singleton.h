// The single-instance pattern of every manager.
//
// A manager derives from CMN_Singleton of itself. Start-up creates every instance on the main
// thread before another thread can use it, and shutdown destroys them in a fixed order, so no lock
// is taken here; in between any thread may call GetInstance.
#pragma once

template <typename T>
class CMN_Singleton {
public:
    CMN_Singleton() = default;
    CMN_Singleton(const CMN_Singleton&) = delete;
    CMN_Singleton& operator=(const CMN_Singleton&) = delete;
    virtual ~CMN_Singleton() = default;

    /// The instance, created on first use. The pattern owns it until DestroyInstance.
    static T* GetInstance() {
        if (instance == nullptr) {
            instance = new T;
        }
        return instance;
    }

    /// True between the first GetInstance and DestroyInstance. Any thread.
    static bool HasInstance() { return instance != nullptr; }

    /// Deletes the instance; does nothing when there is none.
    static void DestroyInstance() {
        delete instance;
        instance = nullptr;
    }

private:
    inline static T* instance = nullptr;
};
