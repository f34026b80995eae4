// Plays a scene outside of the tests.
//
//   vesk_scene FILE                plays it once; what the game prints goes to the console
//   vesk_scene FILE --record       prints its golden file
//   vesk_scene FILE --log WORD     prints the frames of a word of its script, counted from 1
//   vesk_scene FILE --repeat N     plays it so many times in one game and prints what memory the
//                                  process takes after each hundredth part
//   vesk_scene FILE --check        checks the world's invariants after every word, with any of
//   these vesk_scene FILE --ini          takes the settings from the vesk.ini beside the program
//   vesk_scene FILE --seconds N    plays it again and again in a real window in real time and
//   prints
//                                  frame times and tick periods; SDL chooses driver and renderer
//
// Exit code 1 when the game does not start or a check fails.
#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "common/BasePath.h"
#include "entities/PlayerEntity.h"
#include "scenes/SceneRecord.h"
#include "support/DrawLog.h"
#include "support/WorldModel.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <unistd.h>

namespace {

struct Arguments {
    int repeat = 1;
    int seconds = 0;
    int log = 0;
    bool record = false;
    bool check = false;
    bool ini = false;
};

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
        using Clock = std::chrono::steady_clock;
        using Milliseconds = std::chrono::duration<double, std::milli>;
        const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
        const std::uint32_t last = time.lastTickTime;
        while (time.lastTickTime == last) {
            const Clock::time_point began = Clock::now();
            RunPass(SDL_GetTicks());
            frames.push_back(Milliseconds(Clock::now() - began).count());
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
    const auto at = [&values](double share) {
        return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
    };
    std::printf("%s: %zu, ms at p50 %.2f, p99 %.2f, p99.9 %.2f, longest %.2f\n", name,
                values.size(), at(0.5), at(0.99), at(0.999), values.back());
}

int PlayLive(const Scene& scene, int seconds) {
    LivePlayer player(scene.settings);
    if (!player.game.started) {
        return 1;
    }
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(SDL_GetRenderer(SDL_GetWindowFromID(1)), &info);
    std::printf("%s, %s renderer\n", SDL_GetCurrentVideoDriver(), info.name);
    const Uint64 end = SDL_GetTicks64() + static_cast<Uint64>(seconds) * 1000;
    while (SDL_GetTicks64() < end) {
        for (const std::string& word : scene.words) {
            player.Play(word);
        }
    }
    PrintPercentiles("frames", player.frames);
    PrintPercentiles("tick periods", player.periods);
    return 0;
}

// False when a check fails.
bool PlayOnce(const Scene& scene, ScenePlayer& player, WorldModel& model, bool check) {
    bool moved = false;
    player.beforeTick = [&] { moved = model.Follow(); };
    for (const std::string& word : scene.words) {
        player.Play(word);
        if (!check || player.LoadsAreHeld()) {
            continue;
        }
        do { // what arrived with the last tick joins the world in the next
            player.Play(".1");
        } while (moved);
        const std::string faults = model.Faults();
        if (!faults.empty()) {
            std::printf("scene %s, after %s:\n%s", scene.name.c_str(), word.c_str(),
                        faults.c_str());
            return false;
        }
    }
    return true;
}

int Play(const Scene& scene, const Arguments& arguments) {
    ScenePlayer player(scene.settings, arguments.ini ? GetBasePath() + "vesk.ini" : "");
    if (!player.game.started) {
        return 1;
    }
    WorldModel model;
    int ticks = 0;
    player.afterTick = [&ticks] {
        ++ticks;
        TakeDrawLog();
    };
    for (int round = 0; round < arguments.repeat; ++round) {
        if (round > 0) {
            player.game.World().player->PlaceAt(scene.settings.start);
        }
        if (!PlayOnce(scene, player, model, arguments.check)) {
            return 1;
        }
        player.game.errors.Take();
        if (arguments.repeat > 1 && round % std::max(1, arguments.repeat / 100) == 0) {
            std::printf("%8d rounds %8d ticks %8.2f MiB\n", round + 1, ticks, ResidentMebibytes());
            std::fflush(stdout);
        }
    }
    return 0;
}

int Record(const Scene& scene, int log) {
    const std::vector<SceneWord> record = RecordScene(scene);
    if (log == 0) {
        std::fputs(GoldenText(scene, record).c_str(), stdout);
    } else {
        std::fputs(record.at(static_cast<std::size_t>(log - 1)).frames.c_str(), stdout);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    for (int i = 2; i < argc; ++i) {
        const auto is = [&](const char* name) { return std::strcmp(argv[i], name) == 0; };
        const int number = i + 1 < argc ? std::atoi(argv[i + 1]) : 0;
        arguments.repeat = is("--repeat") ? number : arguments.repeat;
        arguments.seconds = is("--seconds") ? number : arguments.seconds;
        arguments.log = is("--log") ? number : arguments.log;
        arguments.record = arguments.record || is("--record") || is("--log");
        arguments.check = arguments.check || is("--check");
        arguments.ini = arguments.ini || is("--ini");
    }
    Scene scene = ReadScene(argc > 1 ? argv[1] : "");
    if (scene.words.empty()) {
        std::fputs("usage: vesk_scene FILE [--record] [--log WORD] [--repeat N] [--check] [--ini] "
                   "[--seconds N]\n",
                   stderr);
        return 2;
    }
    if (arguments.record) {
        return Record(scene, arguments.log);
    }
    scene.settings.useWindow = arguments.seconds > 0;
    return arguments.seconds > 0 ? PlayLive(scene, arguments.seconds) : Play(scene, arguments);
}
