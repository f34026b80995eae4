// The whole program, headless, for benchmarks: dummy video driver, software renderer, 1280 x 720.
#pragma once

#include "gfx/Vec2.h"
#include "world/WorldManager.h"

#include <cstdint>

class BenchGame {
public:
    /// Starts at a world position and brings the world to rest.
    explicit BenchGame(Vec2i start, std::uint32_t hardwareThreads = 2);
    ~BenchGame();
    BenchGame(const BenchGame&) = delete;
    BenchGame& operator=(const BenchGame&) = delete;

    WorldManager& World() const { return *WorldManager::GetInstance(); }

    /// One tick of input and world.
    void Tick();

    /// Waits for the loads, then runs a tick.
    void Settle();

private:
    std::uint32_t now = 1000; // ms
};
