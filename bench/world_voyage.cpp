// What a long voyage costs: the worst tick, the time from a request to the first drawn frame, and
// resident memory. Prints a table; not a Google Benchmark, since each figure is a whole run's.
#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/BenchGame.h"
#include "world/WorldManager.h"

#include <SDL_timer.h>

#include <algorithm>
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
    malloc_trim(0); // what the program has freed does not count as in use
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
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

// The ticks of a voyage at sailing pace, two to a tile. Wall time includes what other programs take
// from the machine; the main thread's own time does not.
void MeasureTicks(std::int32_t cells) {
    BenchGame game({12, 12 + 40 * kCellSize});
    std::vector<double> wall;
    std::vector<double> own;
    for (std::int32_t tile = 0; tile < cells * kCellTiles; ++tile) {
        SailOneTile(game);
        for (int half = 0; half < 2; ++half) {
            const Clock::time_point begin = Clock::now();
            const double ownBegin = ThreadMicroseconds();
            game.World().Update();
            own.push_back(ThreadMicroseconds() - ownBegin);
            wall.push_back(Microseconds(Clock::now() - begin));
        }
    }
    std::printf("Update, %d cells, %d clusters, %zu ticks\n", cells, cells / kClusterCells,
                wall.size());
    PrintTicks("wall time", wall);
    PrintTicks("main thread's time", own);
}

// From the tick that asks for a far land cell to the end of the first frame that draws it, in ticks
// of 16 ms, the main loop ticking and drawing all the while.
void MeasureFirstFrame(int jumps) {
    constexpr Vec2i land[] = {{6, 3}, {24, 19}};
    BenchGame game({CellOrigin({40, 40}).x, CellOrigin({40, 40}).y});
    double worstTicks = 0;
    double worstGeneration = 0;
    auto record = std::make_unique<DungeonRecord>();
    for (int jump = 0; jump < jumps; ++jump) {
        const Vec2i cell = land[jump % 2];
        const Clock::time_point beforeGeneration = Clock::now();
        GEN_DungeonGenerator::GetInstance()->Generate(CellKey(cell), 4, *record);
        const double generation = Microseconds(Clock::now() - beforeGeneration);
        game.World().player->PlaceAt(CellOrigin(cell) + Vec2i{6144, 6144});
        const Clock::time_point begin = Clock::now();
        int ticks = 0;
        bool drawn = false;
        while (!drawn) {
            game.Tick();
            ++ticks;
            const bool ready = game.World().cellGrid.FindLoaded(cell) != nullptr;
            game.World().Render();
            drawn = ready;
            // The rest of the tick, which the display would take.
            while (Clock::now() < begin + std::chrono::milliseconds(16) * ticks) {
                SDL_Delay(1);
            }
        }
        worstTicks = std::max(worstTicks, static_cast<double>(ticks));
        worstGeneration = std::max(worstGeneration, generation);
    }
    std::printf(
        "Request to first drawn frame, %d jumps: at most %.0f ticks of 16 ms, the asking one "
        "included (generation alone: at most %.0f us)\n",
        jumps, worstTicks, worstGeneration);
}

void MeasureMemory(std::int32_t cells) {
    BenchGame game({12, 12 + 40 * kCellSize});
    const double start = ResidentMiB();
    for (std::int32_t cell = 0; cell < cells; ++cell) {
        PlayerEntity& player = *game.World().player;
        player.PlaceAt(player.position + Vec2i{kCellSize, 0});
        game.Tick();
        game.Settle();
    }
    game.World().player->PlaceAt({12, 12 + 40 * kCellSize});
    game.Tick();
    game.Settle();
    const double end = ResidentMiB();
    std::printf("Resident memory: %.2f MiB after start, %.2f MiB after %d cells and back (%+.2f)\n",
                start, end, cells, end - start);
}

} // namespace

int main() {
    MeasureMemory(2000); // first, while the heap is fresh
    MeasureTicks(320);
    MeasureFirstFrame(60);
    return 0;
}
