// Plays a scene outside of the tests.
//
//   vesk_scene FILE                plays it once; what the game prints goes to the console
//   vesk_scene FILE --ini          the same with the settings of the vesk.ini beside the program
//   vesk_scene FILE --record       prints its golden file
//   vesk_scene FILE --log WORD     prints the frames of a word of its script, counted from 1
//   vesk_scene FILE --repeat N     plays it so many times in one game, where every round must end
//   with
//                                  the same references and entities, and prints the memory it takes
//   vesk_scene FILE --seconds N    plays it again and again in a window in real time and prints
//   frame
//                                  times and tick periods; SDL chooses driver and renderer
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
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

namespace {

double ResidentMebibytes() {
    std::ifstream file("/proc/self/statm");
    double total = 0.0;
    double resident = 0.0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

// Plays in real time: a tick is as many passes as the clock takes to make one due.
class LivePlayer : public ScenePlayer {
public:
    using ScenePlayer::ScenePlayer;

    std::vector<double> frames;  // ms
    std::vector<double> periods; // ms between ticks

protected:
    void Tick(std::uint32_t /*pass*/) override {
        using Milliseconds = std::chrono::duration<double, std::milli>;
        const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
        const std::uint32_t last = time.lastTickTime;
        while (time.lastTickTime == last) {
            const auto began = std::chrono::steady_clock::now();
            RunPass(SDL_GetTicks());
            frames.push_back(Milliseconds(std::chrono::steady_clock::now() - began).count());
            if (time.lastTickTime != last) {
                periods.push_back(Milliseconds(began - lastTick).count());
                lastTick = began;
            }
        }
        TakeDrawLog();
    }

    void Hold(char /*bracket*/) override {}

private:
    std::chrono::steady_clock::time_point lastTick = std::chrono::steady_clock::now();
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

// How many references are held and entities there are.
std::string Holdings() {
    std::string text;
    for (const auto& [name, value] : DigestRest()) {
        text += name == "counts" ? std::to_string(value) + ' ' : "";
    }
    return text + std::to_string(WorldManager::GetInstance()->entities.size());
}

int Play(const Scene& scene, const std::string& configuration, int rounds) {
    ScenePlayer player(scene.settings, configuration);
    if (!player.game.started) {
        return 1;
    }
    player.afterTick = [] { TakeDrawLog(); };
    std::string atFirst;
    for (int round = 1; round <= rounds; ++round) {
        for (const std::string& word : scene.words) {
            player.Play(word);
        }
        player.game.errors.Take();
        player.game.World().player->PlaceAt(scene.settings.start);
        player.Play(".2");
        atFirst = round == 1 ? Holdings() : atFirst;
        if (Holdings() != atFirst) {
            std::printf("round %d ends with other references or entities than the first\n", round);
            return 1;
        }
        if (rounds > 1 && round % std::max(1, rounds / 50) == 0) {
            std::printf("%8d rounds %8.2f MiB\n", round, ResidentMebibytes());
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
        std::fputs("usage: vesk_scene FILE [--ini | --record | --log WORD | --repeat N | "
                   "--seconds N]\n",
                   stderr);
        return 2;
    }
    if (option == "--record" || option == "--log") {
        const SceneRecord record = RecordScene(scene);
        const auto word = static_cast<std::size_t>(number);
        std::fputs((word == 0 ? record.golden : record.frames.at(word - 1)).c_str(), stdout);
        return 0;
    }
    if (option == "--seconds") {
        return PlayLive(scene, number);
    }
    return Play(scene, option == "--ini" ? GetBasePath() + "vesk.ini" : "",
                option == "--repeat" ? number : 1);
}
