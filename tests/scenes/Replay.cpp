#include "scenes/Replay.h"

#include "entities/TerrainCellEntity.h"
#include "gen/Random.h"
#include "support/DrawLog.h"
#include "support/Guarded.h"
#include "support/WorldState.h"

#include <algorithm>

namespace {

// What a play has come to, step by step: what of the world, when, and what it is.
using Trace = std::vector<std::pair<std::string, std::string>>;

class Replay : public ScenePlayer {
public:
    /// Without a seed, loads end within the tick that asks for them.
    Replay(const GameSettings& settings, unsigned seed)
        : ScenePlayer(settings), isDelayed(seed != 0), random(seed) {}

    Trace PlayAll(const Scene& scene, std::size_t wordsPerRest) {
        std::size_t number = 0;
        afterTick = [&] {
            TakeDrawLog();
            if (wordsPerRest == 1) {
                Note(" differs in a tick of word " + std::to_string(number), DescribeTick());
            }
        };
        Rest();
        for (const std::string& word : scene.words) {
            ++number;
            Play(word);
            if (number % wordsPerRest == 0 || number == scene.words.size()) {
                Rest();
                Note(" differs after word " + std::to_string(number), DescribeRest());
            }
        }
        return trace;
    }

    std::string stale;

protected:
    void Tick(std::uint32_t pass) override {
        if (!isDelayed) {
            return ScenePlayer::Tick(pass);
        }
        const unsigned chance = random() % 48;
        if (chance == 0) {
            hold.Occupy(1 + random() % workers);
        } else if (chance == 1) {
            hold.Release();
        } else if (chance <= 4) {
            game.errors.SetOpen(chance == 4);
        }
        pass == 0 ? game.Tick() : game.Pass(pass);
        WatchForStaleCells();
        if (chance % 4 == 3) {
            game.World().Render(); // while loads run
        }
        afterTick();
    }

    void Hold(char /*bracket*/) override {}

private:
    void Rest() {
        hold.Release();
        game.errors.SetOpen(true);
        WaitForLoads();
        ScenePlayer::Tick(0); // asks for the cells around the place of a jump just made
        ScenePlayer::Tick(0); // takes in what has arrived
    }

    void WatchForStaleCells() {
        for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
            const bool shown = game.World().cellGrid.GetEntity(i)->active;
            const CellSlot slot = SlotAt(i);
            if (shown && slot.coords != slot.target) {
                stale = "slot " + std::to_string(i) + " shows an overtaken cell";
            }
        }
    }

    void Note(const std::string& when, const WorldState& state) {
        for (const auto& [part, value] : state) {
            trace.emplace_back(std::string(part) + when, value);
        }
    }

    bool isDelayed;
    Trace trace;
    Twister random;
};

} // namespace

std::string CompareReplay(const Scene& scene, std::uint32_t workers, unsigned seed,
                          std::size_t wordsPerRest) {
    const Trace expected = Replay(scene.settings, 0).PlayAll(scene, wordsPerRest);
    GameSettings settings = scene.settings;
    settings.workers = workers;
    Replay delayed(settings, seed);
    const Trace found = delayed.PlayAll(scene, wordsPerRest);
    const auto [wanted, got] = std::ranges::mismatch(expected, found);
    if (wanted != expected.end()) {
        return wanted->first + ": " + got->second + "; expected " + wanted->second;
    }
    return delayed.stale;
}
