// Work for every core, and word of how far it has come.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// Counts what is done of a whole, each thing in two halves. Once that has taken more than a
/// second, a line on standard error tells of it every second. Any thread may call.
class Progress {
public:
    Progress(std::size_t wholeCount, std::string countedThings)
        : whole(wholeCount), things(std::move(countedThings)) {}

    void AddHalf();

private:
    using Clock = std::chrono::steady_clock;

    std::mutex mutex;
    std::size_t whole;
    std::size_t halves = 0;
    std::string things;
    Clock::time_point told = Clock::now();
};

/// Calls work(i) for every i below count on this many threads, the caller's included, and returns
/// when all is done. Which thread takes which i, and when, is left to chance.
template <typename Work>
void ForEachIndex(std::size_t count, unsigned threads, const Work& work) {
    std::atomic<std::size_t> next = 0;
    const auto run = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            work(i);
        }
    };
    std::vector<std::jthread> others;
    for (unsigned i = 1; i < threads && i < count; ++i) {
        others.emplace_back(run);
    }
    run();
}
