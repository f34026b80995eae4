#include "common/CMN_ConfigurationManager.h"

#include "common/Portability.h"
#include "support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

// The settings that a file of this text gives.
class Settings : public CMN_ConfigurationManager {
public:
    explicit Settings(const std::string& text) {
        const TemporaryFile file(text);
        EXPECT_TRUE(Load(file.Path()));
    }
};

} // namespace

TEST(ConfigurationTest, ReadsEveryKey) {
    const std::string text = "[resource]\nmode = release\n[graphics]\nwidth = 1280\nheight=720\n"
                             "[world]\nstart_pos_x = -12\nstart_pos_y=  36\nstart_zoom = 1.5\n";
    std::string dosText = text;
    for (std::size_t at = 0; (at = dosText.find('\n', at)) != std::string::npos; at += 2) {
        dosText.insert(at, "\r");
    }
    const std::string upperText = "[RESOURCE]\nMode = release\n[Graphics]\nWIDTH = 1280\n"
                                  "Height=720\n[WORLD]\nStart_Pos_X = -12\nStart_Pos_Y=36\n"
                                  "START_ZOOM = 1.5";
    for (const std::string& variant : {text, dosText, upperText, "\xEF\xBB\xBF" + text}) {
        SCOPED_TRACE(variant);
        const Settings settings(variant);
        EXPECT_EQ(settings.resourceMode, 0);
        EXPECT_EQ(settings.width, 1280);
        EXPECT_EQ(settings.height, 720);
        EXPECT_EQ(settings.startPosX, -12);
        EXPECT_EQ(settings.startPosY, 36);
        EXPECT_EQ(settings.startZoom, 1.5f);
    }
}

TEST(ConfigurationTest, TakesDefaultsForWhatIsNotThere) {
    const TemporaryFile otherSections(
        "[resources]\nmode = release\n[world]\nzoom = 2\nwidth = 5\n");
    const TemporaryFile noIni(std::string("\0\1\2[[[=\n=\n]\0[graphics\nwidth", 26));
    const std::string directory = std::filesystem::temp_directory_path().string();
    for (const std::string& path : {otherSections.Path(), noIni.Path(), directory,
                                    directory + "/there/is/no/such.ini", std::string()}) {
        SCOPED_TRACE(path);
        // Former values must not show through.
        Settings settings("[graphics]\nwidth = 7\nheight = 7\n[resource]\nmode = release\n[world]\n"
                          "start_pos_x = 7\nstart_pos_y = 7\nstart_zoom = 7\n");
        EXPECT_TRUE(settings.Load(path));
        EXPECT_EQ(settings.resourceMode, 1);
        EXPECT_EQ(settings.width, 0);
        EXPECT_EQ(settings.height, 0);
        EXPECT_EQ(settings.startPosX, 0);
        EXPECT_EQ(settings.startPosY, 0);
        EXPECT_EQ(settings.startZoom, 0.0f);
    }
}

TEST(ConfigurationTest, OpensOnlyRegularFiles) {
    std::FILE* file = nullptr;
    for (const char* path : {"/dev/null", "/tmp", "/no/such/file"}) { // a pipe would block
        EXPECT_NE(OpenFile(&file, path, "rb"), 0) << path;
        EXPECT_EQ(file, nullptr);
    }
}

TEST(ConfigurationTest, ReadsTheResourceMode) {
    const std::vector<std::pair<std::string, int>> cases{
        {"mode = dEv", 1}, {"mode=  dev  ", 1}, {"mode =", 0},         {"mode = devel", 0},
        {"mode = de", 0},  {"mode = 1", 0},     {"mode = dev ; x", 0}, {"; mode = release", 1}};
    for (const auto& [line, expected] : cases) {
        EXPECT_EQ(Settings("[resource]\n" + line + "\n").resourceMode, expected) << line;
    }
}

TEST(ConfigurationTest, ReadsIntegers) {
    const std::vector<std::pair<std::string, std::int32_t>> cases{
        {"1024", 1024},
        {"-30", -30},
        {"0x400", 1024},
        {"0xffffffffffffffffff", kHighest},
        {"0x", 0},
        {"010", 10}, // not octal
        {"1024px", 0},
        {"12.5", 0},
        {"", 0},
        {std::string(60, '0') + "640", 640}, // 63 characters
        {std::string(61, '0') + "640", 0},   // 64 characters
        {"2147483648", kHighest},
        {"99999999999999999999", kHighest},
        {"-2147483649", kLowest}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const Settings settings("[graphics]\nwidth = " + text + "\nheight = " + text +
                                "\n[world]\nstart_pos_x = " + text + "\nstart_pos_y = " + text);
        EXPECT_EQ(settings.width, expected);
        EXPECT_EQ(settings.height, expected);
        EXPECT_EQ(settings.startPosX, expected);
        EXPECT_EQ(settings.startPosY, expected);
    }
}

TEST(ConfigurationTest, ReadsTheZoom) {
    constexpr float largest = std::numeric_limits<float>::max();
    const std::vector<std::pair<std::string, float>> cases{{"0.01", 0.01f},
                                                           {"1e-30", 1e-30f},
                                                           {"1e300", largest},
                                                           {"-1e400", -largest},
                                                           {"inf", largest},
                                                           {"-2.25", -2.25f},
                                                           {"abc", 0.0f},
                                                           {"1.5x", 0.0f},
                                                           {"1,5", 0.0f},
                                                           {"", 0.0f},
                                                           {std::string(62, '0') + "2", 2.0f},
                                                           {std::string(63, '0') + "2", 0.0f}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(Settings("[world]\nstart_zoom = " + text + "\n").startZoom, expected) << text;
    }
    EXPECT_TRUE(std::isnan(Settings("[world]\nstart_zoom = nan\n").startZoom));
}
