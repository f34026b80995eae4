// Scenes come to the same however many workers there are and whenever their loads end.
#include "scenes/ScenePlayer.h"
#include "support/DrawLog.h"
#include "support/StateDigest.h"

#include <gtest/gtest.h>

#include "gen/Random.h"

namespace {

// Holds workers and generation back at moments of chance; at the end of every word all loads end.
class DelayedPlayer : public ScenePlayer {
public:
    DelayedPlayer(const GameSettings& settings, unsigned delays)
        : ScenePlayer(settings), isDelayed(delays != 0), random(delays) {}

    void Rest() {
        game.Tick(); // asks for the cells around the place of a jump just made
        hold.Release();
        game.errors.Open();
        ASSERT_TRUE(game.Settle());
        TakeDrawLog();
    }

protected:
    void Tick(std::uint32_t pass) override {
        const unsigned chance = isDelayed ? random() % 48 : 48;
        if (chance == 0) {
            hold.Occupy(1 + random() % workers);
        } else if (chance == 1) {
            hold.Release();
        } else if (chance <= 3) {
            game.errors.Close();
        } else if (chance == 4) {
            game.errors.Open();
        }
        beforeTick();
        pass == 0 ? game.Tick() : game.Pass(pass);
        afterTick();
    }

    void Hold(char /*bracket*/) override {}

private:
    bool isDelayed;
    Twister random;
};

// Every tick of every word, and the rests after them, by parts.
std::vector<StateDigest> Trace(const Scene& scene, std::uint32_t workers, unsigned delays) {
    GameSettings settings = scene.settings;
    settings.workers = workers;
    DelayedPlayer player(settings, delays);
    std::vector<StateDigest> trace;
    player.afterTick = [&trace] { trace.push_back(DigestTick()); };
    player.Play(".1");
    player.Rest();
    for (const std::string& word : scene.words) {
        player.Play(word);
        player.Rest();
        trace.push_back(DigestRest());
    }
    return trace;
}

} // namespace

TEST(WorkersTest, ScenesComeToTheSameWithAnyWorkersAndDelays) {
    for (const char* name : {"late", "clusters", "jump", "beside"}) {
        const Scene scene = ReadScene(std::string(VESK_SCENES) + '/' + name + ".scene");
        const std::vector<StateDigest> expected = Trace(scene, 1, 0);
        for (const std::uint32_t workers : {1U, 2U, 8U}) {
            const std::vector<StateDigest> found = Trace(scene, workers, 5 * workers);
            ASSERT_EQ(found.size(), expected.size());
            for (std::size_t i = 0; i < found.size(); ++i) {
                ASSERT_EQ(DifferingParts(expected[i], found[i]), "")
                    << "scene " << name << ", " << workers << " workers, step " << i;
            }
        }
    }
}
