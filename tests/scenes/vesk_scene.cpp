// Plays a scene outside of the tests.
//
//   vesk_scene FILE                plays it once; what the game prints goes to the console
//   vesk_scene FILE --ini          the same with the settings of the vesk.ini beside the program
//   vesk_scene FILE --record       prints its golden file
//   vesk_scene FILE --log LINE     prints the frames of the word in that line of its golden file
//   vesk_scene FILE --repeat N     plays it so many times in one game, where every round must leave
//                                  the world as the first, and prints the most memory it has taken
//
// Exit code 1 when the game does not start or a check fails.
#include "common/Portability.h"
#include "entities/PlayerEntity.h"
#include "scenes/SceneRecord.h"
#include "support/DrawLog.h"
#include "support/WorldState.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace {

// The most memory that the process has taken, in KiB; 0 where the system has another way to tell.
long MostMemory() {
#if __has_include(<sys/resource.h>)
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#else
    return 0;
#endif
}

int Play(const Scene& scene, const std::string& configuration, int rounds) {
    ScenePlayer player(scene.settings, configuration);
    if (!player.game.started) {
        return 1;
    }
    player.afterTick = [] { TakeDrawLog(); };
    WorldState first;
    for (int round = 1; round <= rounds; ++round) {
        for (const std::string& word : scene.words) {
            player.Play(word);
        }
        player.game.errors.Take();
        player.game.World().player->PlaceAt(scene.settings.start);
        player.Play(".2");
        first = round == 1 ? DescribeRest() : first;
        if (DescribeRest() != first) {
            std::printf("round %d does not end as the first\n", round);
            return 1;
        }
        if (rounds > 1 && round % std::max(1, rounds / 50) == 0) {
            std::printf("%8d rounds %8ld KiB at most\n", round, MostMemory());
            std::fflush(stdout);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string option = argc > 2 ? argv[2] : "";
    const int number = argc > 3 ? std::atoi(argv[3]) : 0;
    const Scene scene = ReadScene(argc > 1 ? argv[1] : "");
    if (scene.words.empty()) {
        std::fputs("usage: vesk_scene FILE [OPTION]\n", stderr);
        return 2;
    }
    if (option == "--record" || option == "--log") {
        const SceneRecord record = RecordScene(scene);
        const auto word = static_cast<std::size_t>(number - 3); // after two lines of comment
        const bool isFrames = option == "--log" && word < record.frames.size();
        std::fputs((isFrames ? record.frames[word] : record.golden).c_str(), stdout);
        return 0;
    }
    return Play(scene, option == "--ini" ? GetBasePath() + "vesk.ini" : "",
                option == "--repeat" ? number : 1);
}
