// Plays a scene outside of the tests.
//
//   vesk_scene FILE                plays it once; what the game prints goes to the console
//   vesk_scene FILE --ini          the same with the settings of the vesk.ini beside the program
//   vesk_scene FILE --record       prints its golden file
//   vesk_scene FILE --log LINE     prints the frames of the word in that line of its golden file
//   vesk_scene FILE --repeat N     plays it so many times in one game, where every round must leave
//                                  the world as the first, and prints the most memory it has taken
//   vesk_scene FILE --seconds N    plays it again and again in a window in real time and prints
//                                  frame times and tick periods; SDL chooses driver and renderer
//
// Exit code 1 when the game does not start or a check fails.
#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "common/Portability.h"
#include "entities/PlayerEntity.h"
#include "scenes/SceneRecord.h"
#include "support/DrawLog.h"
#include "support/StateDigest.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <sys/resource.h>

namespace {

double Milliseconds() {
    return static_cast<double>(SDL_GetPerformanceCounter()) * 1000.0 /
           static_cast<double>(SDL_GetPerformanceFrequency());
}

// Plays in real time: a tick is as many passes as the clock takes to make one due.
class LivePlayer : public ScenePlayer {
public:
    using ScenePlayer::ScenePlayer;

    std::vector<double> frames;  // ms
    std::vector<double> periods; // ms between ticks

protected:
    void Tick(std::uint32_t /*pass*/) override {
        const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
        const std::uint32_t last = time.lastTickTime;
        while (time.lastTickTime == last) {
            const double began = Milliseconds();
            RunPass(SDL_GetTicks());
            frames.push_back(Milliseconds() - began);
            if (time.lastTickTime != last) {
                periods.push_back(began - std::exchange(lastTick, began));
            }
        }
        TakeDrawLog();
    }

    void Hold(char /*bracket*/) override {}

private:
    double lastTick = Milliseconds();
};

void PrintPercentiles(const char* name, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    std::printf("%s: %zu, ms at", name, values.size());
    for (const double share : {0.5, 0.99, 0.999, 1.0}) {
        const double place = share * static_cast<double>(values.size() - 1);
        std::printf(" p%g %.2f", 100.0 * share, values[static_cast<std::size_t>(place)]);
    }
    std::puts("");
}

int PlayLive(Scene& scene, int seconds) {
    scene.settings.useWindow = true;
    LivePlayer player(scene.settings);
    if (!player.game.started) {
        return 1;
    }
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(SDL_GetRenderer(SDL_GetWindowFromID(1)), &info);
    std::printf("%s, %s renderer\n", SDL_GetCurrentVideoDriver(), info.name);
    while (SDL_GetTicks64() < static_cast<Uint64>(seconds) * 1000) {
        for (const std::string& word : scene.words) {
            player.Play(word);
        }
    }
    PrintPercentiles("frames", player.frames);
    PrintPercentiles("tick periods", player.periods);
    return 0;
}

int Play(const Scene& scene, const std::string& configuration, int rounds) {
    ScenePlayer player(scene.settings, configuration);
    if (!player.game.started) {
        return 1;
    }
    player.afterTick = [] { TakeDrawLog(); };
    StateDigest first;
    for (int round = 1; round <= rounds; ++round) {
        for (const std::string& word : scene.words) {
            player.Play(word);
        }
        player.game.errors.Take();
        player.game.World().player->PlaceAt(scene.settings.start);
        player.Play(".2");
        first = round == 1 ? DigestRest() : first;
        if (DigestRest() != first) {
            std::printf("round %d does not end as the first\n", round);
            return 1;
        }
        if (rounds > 1 && round % std::max(1, rounds / 50) == 0) {
            rusage usage{};
            getrusage(RUSAGE_SELF, &usage);
            std::printf("%8d rounds %8ld KiB at most\n", round, usage.ru_maxrss);
            std::fflush(stdout);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string option = argc > 2 ? argv[2] : "";
    const int number = argc > 3 ? std::atoi(argv[3]) : 0;
    Scene scene = ReadScene(argc > 1 ? argv[1] : "");
    if (scene.words.empty()) {
        std::fputs("usage: vesk_scene FILE [OPTION]\n", stderr);
        return 2;
    }
    if (option == "--record" || option == "--log") {
        const SceneRecord record = RecordScene(scene);
        const auto line = static_cast<std::size_t>(number);
        std::fputs((line == 0 ? record.golden : record.frames.at(line - 3)).c_str(), stdout);
        return 0;
    }
    if (option == "--seconds") {
        return PlayLive(scene, number);
    }
    return Play(scene, option == "--ini" ? GetBasePath() + "vesk.ini" : "",
                option == "--repeat" ? number : 1);
}
