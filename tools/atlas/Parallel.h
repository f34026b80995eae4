// Work for every core, and word of how far it has come.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Counts the steps of a work. Once that has taken more than a second, a line on standard error
/// tells every second how many in a hundred are done. Any thread may call. An interrupted program
/// throws Interrupted at its next step.
class Progress {
public:
    Progress(std::string theWork, std::size_t stepCount)
        : work(std::move(theWork)), steps(stepCount) {}

    void Add();

private:
    using Clock = std::chrono::steady_clock;

    std::mutex mutex;
    std::string work;
    std::size_t steps;
    std::size_t done = 0;
    Clock::time_point told = Clock::now();
};

/// Calls work(i) for every i below count on this many threads, the caller's included, and returns
/// when all is done; fewer threads do where the system has no more. Which thread takes which i, and
/// when, is left to chance. Throws what a call has thrown first, after the last call has ended.
template <typename Work>
void ForEachIndex(std::size_t count, unsigned threads, const Work& work) {
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (std::size_t i = next++; i < count; i = next++) {
                work(i);
            }
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            failure = failure ? failure : std::current_exception();
        }
    };
    {
        std::vector<std::jthread> others;
        try {
            for (unsigned i = 1; i < threads && i < count; ++i) {
                others.emplace_back(run);
            }
        } catch (const std::exception&) { // those that there are do the work
        }
        run();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}
