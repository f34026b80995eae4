// Every scene against its golden file.
#include "scenes/SceneRecord.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

class ScenesTest : public testing::TestWithParam<std::string> {};

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::vector<std::string> SceneFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_SCENES)) {
        if (entry.path().extension() == ".scene") {
            names.push_back(entry.path().stem().string());
        }
    }
    return names;
}

} // namespace

TEST_P(ScenesTest, LooksAsRecorded) {
    const std::string path = std::string(VESK_SCENES) + '/' + GetParam();
    const Scene scene = ReadScene(path + ".scene");
    ASSERT_FALSE(scene.words.empty());
    const std::string differences =
        Differences(ReadFile(path + ".golden"), scene, RecordScene(scene), VESK_SCENE_LOGS);
    EXPECT_TRUE(differences.empty()) << differences;
}

INSTANTIATE_TEST_SUITE_P(, ScenesTest, testing::ValuesIn(SceneFiles()),
                         [](const auto& name) { return name.param; });
