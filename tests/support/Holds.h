// What makes threads wait for a test: a flag with a deadline, jobs that occupy workers, and a stop
// in the middle of a dungeon's generation.
#pragma once

#include "common/CMN_TaskManager.h"

#include <condition_variable>
#include <cstdint>
#include <iostream>
#include <memory>
#include <mutex>
#include <streambuf>
#include <string>
#include <thread>
#include <utility>

/// One thread raises it, others wait.
class Signal {
public:
    void Raise() {
        const std::lock_guard guard(lock);
        raised = true;
        condition.notify_all();
    }

    /// False when it has not been raised within a minute, ample even under a slow sanitizer.
    bool Wait() {
        std::unique_lock guard(lock);
        return condition.wait_for(guard, std::chrono::minutes(1), [this] { return raised; });
    }

private:
    std::mutex lock;
    std::condition_variable condition;
    bool raised = false;
};

/// Gives workers jobs that only wait for the release, so that every load queued after them comes
/// late. Must have released them before the pool is stopped.
class WorkerHold {
public:
    ~WorkerHold() { Release(); }

    void Occupy(std::uint32_t workers) {
        for (std::uint32_t i = 0; i < workers; ++i) {
            CMN_TaskManager::GetInstance()->AddTask([held = gate] { held->Wait(); });
        }
    }

    void Release() {
        gate->Raise();
        gate = std::make_shared<Signal>();
    }

private:
    std::shared_ptr<Signal> gate = std::make_shared<Signal>();
};

/// Captures a stream while it lives. While closed, other threads block at their next line; the
/// generator writes one in the middle of each dungeon.
class ErrorLines : private std::streambuf {
public:
    explicit ErrorLines(std::ostream& taken = std::cerr)
        : stream(taken), former(taken.rdbuf(this)) {}
    ~ErrorLines() override { stream.rdbuf(former); }
    ErrorLines(const ErrorLines&) = delete;
    ErrorLines& operator=(const ErrorLines&) = delete;

    /// What has been written since the last call.
    std::string Take() {
        const std::lock_guard guard(lock);
        return std::exchange(text, {});
    }

    void SetOpen(bool value) {
        const std::lock_guard guard(lock);
        open = value;
        opened.notify_all();
    }

private:
    std::streamsize xsputn(const char* written, std::streamsize count) override {
        std::unique_lock guard(lock);
        if (std::this_thread::get_id() != owner) {
            opened.wait(guard, [this] { return open; });
        }
        text.append(written, static_cast<std::size_t>(count));
        return count;
    }

    int overflow(int c) override {
        const char written = traits_type::to_char_type(c);
        xsputn(&written, 1);
        return traits_type::not_eof(c);
    }

    const std::thread::id owner = std::this_thread::get_id();
    std::ostream& stream;
    std::streambuf* former;
    std::mutex lock;
    std::condition_variable opened;
    std::string text;
    bool open = true;
};
