// Every scene against its golden file.
#include "scenes/SceneRecord.h"
#include "support/Files.h"

#include <gtest/gtest.h>

namespace {

class ScenesTest : public testing::TestWithParam<std::string> {};

std::vector<std::string> SceneFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_TESTS "/scenes")) {
        if (entry.path().extension() == ".scene") {
            names.push_back(entry.path().stem().string());
        }
    }
    return names;
}

} // namespace

TEST_P(ScenesTest, LooksAsRecorded) {
    const std::string path = VESK_TESTS "/scenes/" + GetParam();
    const Scene scene = ReadScene(path + ".scene");
    ASSERT_FALSE(scene.words.empty());
    EXPECT_EQ(CompareGolden(path + ".golden", RecordScene(scene).golden), "");
}

INSTANTIATE_TEST_SUITE_P(, ScenesTest, testing::ValuesIn(SceneFiles()),
                         [](const auto& name) { return name.param; });
