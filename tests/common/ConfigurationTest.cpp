#include "common/CMN_ConfigurationManager.h"

#include "support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

void ExpectDefaults(const CMN_ConfigurationManager& config) {
    EXPECT_EQ(config.resourceMode, 1);
    EXPECT_EQ(config.width, 0);
    EXPECT_EQ(config.height, 0);
    EXPECT_EQ(config.startPosX, 0);
    EXPECT_EQ(config.startPosY, 0);
    EXPECT_EQ(config.startZoom, 0.0f);
}

// Values left by an earlier file must not show through.
void SpoilAll(CMN_ConfigurationManager& config) {
    config.resourceMode = 77;
    config.width = config.height = config.startPosX = config.startPosY = 77;
    config.startZoom = 77.0f;
}

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
        const TemporaryFile file(variant);
        CMN_ConfigurationManager config;
        EXPECT_EQ(config.resourceMode, 2);
        EXPECT_TRUE(config.Load(file.Path()));
        EXPECT_EQ(config.resourceMode, 0);
        EXPECT_EQ(config.width, 1280);
        EXPECT_EQ(config.height, 720);
        EXPECT_EQ(config.startPosX, -12);
        EXPECT_EQ(config.startPosY, 36);
        EXPECT_EQ(config.startZoom, 1.5f);
    }
}

TEST(ConfigurationTest, TakesDefaultsForWhatIsNotThere) {
    const TemporaryFile empty("");
    const TemporaryFile otherSections(
        "[resources]\nmode = release\n[world]\nzoom = 2\nwidth = 5\n");
    const TemporaryFile noIni(std::string("\0\1\2[[[=\n=\n]\0[graphics\nwidth", 26));
    const std::string directory = std::filesystem::temp_directory_path().string();
    for (const std::string& path : {empty.Path(), otherSections.Path(), noIni.Path(), directory,
                                    directory + "/there/is/no/such.ini", std::string()}) {
        SCOPED_TRACE(path);
        CMN_ConfigurationManager config;
        SpoilAll(config);
        EXPECT_TRUE(config.Load(path));
        ExpectDefaults(config);
    }
}

TEST(ConfigurationTest, ReadsTheResourceMode) {
    const std::vector<std::pair<std::string, int>> cases{
        {"mode = dev", 1},     {"mode = DEV", 1},
        {"mode = dEv", 1},     {"mode=  dev  ", 1},
        {"mode =", 0},         {"mode = devel", 0},
        {"mode = de", 0},      {"mode = release", 0},
        {"mode = 1", 0},       {"", 1},
        {"mode = dev ; x", 0}, {"; mode = release", 1}};
    for (const auto& [line, expected] : cases) {
        const TemporaryFile file("[resource]\n" + line + "\n");
        CMN_ConfigurationManager config;
        config.Load(file.Path());
        EXPECT_EQ(config.resourceMode, expected) << line;
    }
}

TEST(ConfigurationTest, ReadsIntegers) {
    const std::vector<std::pair<std::string, std::int32_t>> cases{
        {"1024", 1024},
        {"-30", -30},
        {"0x400", 1024},
        {"0X7fffffff", kHighest},
        {"0xffffffffffffffffff", kHighest},
        {"0x", 0},
        {"010", 10}, // not octal
        {"1024px", 0},
        {"12.5", 0},
        {"1 024", 0},
        {"wide", 0},
        {"", 0},
        {std::string(60, '0') + "640", 640}, // 63 characters
        {std::string(61, '0') + "640", 0},   // 64 characters
        {"2147483647", kHighest},
        {"2147483648", kHighest},
        {"4294967296", kHighest},
        {"99999999999999999999", kHighest},
        {"-2147483648", kLowest},
        {"-2147483649", kLowest},
        {"-99999999999999999999", kLowest}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        std::ostringstream ini;
        ini << "[graphics]\nwidth = " << text << "\nheight = " << text
            << "\n[world]\nstart_pos_x = " << text << "\nstart_pos_y = " << text << "\n";
        const TemporaryFile file(ini.str());
        CMN_ConfigurationManager config;
        config.Load(file.Path());
        EXPECT_EQ(config.width, expected);
        EXPECT_EQ(config.height, expected);
        EXPECT_EQ(config.startPosX, expected);
        EXPECT_EQ(config.startPosY, expected);
    }
}

TEST(ConfigurationTest, ReadsTheZoom) {
    constexpr float largest = std::numeric_limits<float>::max();
    const std::vector<std::pair<std::string, float>> cases{{"1.5", 1.5f},
                                                           {"0.01", 0.01f},
                                                           {"10", 10.0f},
                                                           {"1e-30", 1e-30f},
                                                           {"1e30", 1e30f},
                                                           {"1e300", largest},
                                                           {"-1e400", -largest},
                                                           {"inf", largest},
                                                           {"-2.25", -2.25f},
                                                           {"abc", 0.0f},
                                                           {"1.5x", 0.0f},
                                                           {"1,5", 0.0f},
                                                           {"", 0.0f},
                                                           {"1e-400", 0.0f},
                                                           {std::string(62, '0') + "2", 2.0f},
                                                           {std::string(63, '0') + "2", 0.0f}};
    for (const auto& [text, expected] : cases) {
        const TemporaryFile file("[world]\nstart_zoom = " + text + "\n");
        CMN_ConfigurationManager config;
        config.Load(file.Path());
        EXPECT_EQ(config.startZoom, expected) << text;
    }
    const TemporaryFile file("[world]\nstart_zoom = nan\n");
    CMN_ConfigurationManager config;
    config.Load(file.Path());
    EXPECT_TRUE(std::isnan(config.startZoom));
}
