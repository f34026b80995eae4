// Stops loads in the middle of a dungeon's generation, where the generator says a line on standard
// error: other threads than the one that made the hold wait there while it is closed. Everything
// said meanwhile is dropped.
#pragma once

#include <condition_variable>
#include <mutex>
#include <streambuf>
#include <thread>

/// Made and destroyed while nothing is generated on other threads.
class GenerationHold : private std::streambuf {
public:
    GenerationHold();
    ~GenerationHold() override;
    GenerationHold(const GenerationHold&) = delete;
    GenerationHold& operator=(const GenerationHold&) = delete;

    void Close() { Set(false); }
    void Open() { Set(true); }

private:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;

    void Set(bool state);
    void Pass();

    const std::thread::id owner = std::this_thread::get_id();
    std::streambuf* former;
    std::mutex lock;
    std::condition_variable opened;
    bool open = true;
};
