// What a long voyage costs: the worst tick, the time from a request to the first drawn frame, and
// memory. Prints a table; not a Google Benchmark, since each figure is a whole run's.
#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/BenchGame.h"
#include "world/WorldManager.h"

#include <SDL_timer.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <malloc.h>
#include <time.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double Microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

double ResidentMiB() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

// Bytes allocated and not given back, in all arenas.
std::int64_t HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

// Moves the ship one tile east, whatever is in the way: land would end the voyage.
void SailOneTile(BenchGame& game) {
    PlayerEntity& player = *game.World().player;
    player.PlaceAt(player.position + Vec2i{kTileSize, 0});
}

double ThreadMicroseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

void PrintTicks(const char* clock, std::vector<double>& ticks) {
    std::sort(ticks.begin(), ticks.end());
    const auto at = [&](double share) {
        return ticks[static_cast<std::size_t>(share * static_cast<double>(ticks.size() - 1))];
    };
    std::printf("  %s: median %.1f us, 99.9%% %.1f us, worst %.1f us (of a 16000 us tick: "
                "99.9%% %.4f, worst %.4f)\n",
                clock, at(0.5), at(0.999), ticks.back(), at(0.999) / 16000.0,
                ticks.back() / 16000.0);
}

// The time that each tick of the world takes.
class TickTimes {
public:
    void Measure(BenchGame& game) {
        const Clock::time_point begin = Clock::now();
        const double ownBegin = ThreadMicroseconds();
        game.World().Update();
        own.push_back(ThreadMicroseconds() - ownBegin);
        wall.push_back(Microseconds(Clock::now() - begin));
    }

    void Print() {
        PrintTicks("wall time", wall);
        PrintTicks("main thread's time", own);
    }

private:
    std::vector<double> wall;
    std::vector<double> own;
};

// The ticks of a voyage, two to a tile as in play, but back to back. Wall time includes what other
// programs take from the machine; the main thread's own time does not.
void MeasureTicks(std::int32_t cells) {
    BenchGame game({12, 12 + 40 * kCellSize});
    TickTimes times;
    for (std::int32_t tile = 0; tile < cells * kCellTiles; ++tile) {
        SailOneTile(game);
        times.Measure(game);
        times.Measure(game);
    }
    std::printf("Update, %d cells, %d clusters\n", cells, cells / kClusterCells);
    times.Print();
}

// The ticks in which hundreds of enemies come and go: jumps between the middles of groups of land
// cells in two clusters, each at rest before the next.
void MeasureCrowds(int jumps) {
    constexpr Vec2i land[] = {{5, 4}, {10, 1}, {22, 19}, {24, 19}};
    BenchGame game(CellOrigin(land[0]));
    TickTimes times;
    std::size_t most = 0;
    for (int jump = 0; jump < jumps; ++jump) {
        game.World().player->PlaceAt(CellOrigin(land[jump % 4]) + Vec2i{6144, 6144});
        times.Measure(game);
        game.World().cellGrid.WaitForLoads(60000);
        const std::size_t before = game.World().layers[kSpawnedLayer].size();
        times.Measure(game);
        most = std::max({most, before, game.World().layers[kSpawnedLayer].size()});
    }
    std::printf("Update, %d jumps between crowded cells, up to %zu enemies and markers exchanged\n",
                jumps, most);
    times.Print();
}

// From the tick that asks for a land cell to the end of the first frame that draws it, less the
// generation itself, the main loop ticking and drawing all the while.
void MeasureFirstFrame(int jumps) {
    constexpr Vec2i land[] = {{6, 3}, {24, 19}};
    constexpr double tick = 16000.0; // us
    BenchGame game(CellOrigin({40, 40}));
    double worst = 0;
    auto record = std::make_unique<DungeonRecord>();
    for (int jump = 0; jump < jumps; ++jump) {
        const Vec2i cell = land[jump % 2];
        const Clock::time_point beforeGeneration = Clock::now();
        GEN_DungeonGenerator::GetInstance()->Generate(CellKey(cell), 4, *record);
        const double generation = Microseconds(Clock::now() - beforeGeneration);
        game.World().player->PlaceAt(CellOrigin(cell) + Vec2i{6144, 6144});
        const Clock::time_point begin = Clock::now();
        bool drawn = false;
        for (int ticks = 1; !drawn; ++ticks) {
            game.Tick();
            const bool ready = game.World().cellGrid.FindLoaded(cell) != nullptr;
            game.World().Render();
            drawn = ready;
            if (drawn) {
                worst = std::max(worst, Microseconds(Clock::now() - begin) - generation);
            }
            // The rest of the tick, which the display would take.
            while (Clock::now() < begin + std::chrono::milliseconds(16) * ticks) {
                SDL_Delay(1);
            }
        }
    }
    std::printf("Request to first drawn frame, %d jumps: at most %.2f ticks of 16 ms beyond the "
                "generation\n",
                jumps, worst / tick);
}

// The enemies and markers of the cells that have been loaded since the last call, at rest.
class Arrivals {
public:
    std::size_t Count(const CellGrid& grid) {
        std::size_t count = 0;
        const MutexLock lock(grid.slotLock);
        for (std::size_t i = 0; i < seen.size(); ++i) {
            if (seen[i] != grid.slots[i].coords) {
                seen[i] = grid.slots[i].coords;
                count += grid.slots[i].spawned.size();
            }
        }
        return count;
    }

private:
    std::array<Vec2i, CellGrid::kSlotCount> seen{};
};

// From the shipped start, with land around, through so many cells to the east and back, a few times
// over. Each enemy and marker leaves a sprite; the list of sprites is all that may grow from lap to
// lap.
void MeasureMemory(std::int32_t cells, int laps) {
    constexpr Vec2i home{81756, 38940};
    BenchGame game(home);
    Arrivals arrivals;
    arrivals.Count(game.World().cellGrid);
    const auto visit = [&](Vec2i place) {
        game.World().player->PlaceAt(place);
        game.Tick();
        game.Settle();
        game.World().Render();
        return arrivals.Count(game.World().cellGrid);
    };
    std::printf("Memory, %d cells to the east and back, lap by lap\n", cells);
    for (int lap = 1; lap <= laps; ++lap) {
        const std::int64_t heap = HeapBytes();
        const double resident = ResidentMiB();
        std::size_t sprites = 0;
        for (std::int32_t cell = 1; cell <= cells; ++cell) {
            sprites += visit(home + Vec2i{cell * kCellSize, 0});
        }
        sprites += visit(home);
        const std::int64_t grown = HeapBytes() - heap;
        std::printf("  %zu sprites, heap %+.0f KiB (%.1f bytes per sprite), resident %+.2f MiB\n",
                    sprites, static_cast<double>(grown) / 1024.0,
                    static_cast<double>(grown) / static_cast<double>(sprites),
                    ResidentMiB() - resident);
    }
}

} // namespace

int main() {
    MeasureMemory(2000, 4); // first, while the heap is fresh
    MeasureTicks(320);
    MeasureCrowds(2000);
    MeasureFirstFrame(60);
    return 0;
}
