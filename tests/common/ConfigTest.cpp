// The configuration file: every key, and what counts as missing or invalid.
#include "common/CMN_ConfigurationManager.h"

#include "common/Portability.h"
#include "support/Game.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
constexpr float kInfinite = std::numeric_limits<float>::infinity();

// The settings of a file, over former ones that must not show through.
std::string Settings(const std::string& path) {
    CMN_ConfigurationManager c;
    c.Load(TemporaryFile("[graphics]\nwidth = 7\nheight = 7\n[resource]\nmode = release\n[world]\n"
                         "start_pos_x = 7\nstart_pos_y = 7\nstart_zoom = 7\n")
               .path);
    EXPECT_TRUE(c.Load(path));
    std::ostringstream text;
    text << c.resourceMode << ' ' << c.width << ' ' << c.height << ' ' << c.startPosX << ' '
         << c.startPosY << ' ' << c.startZoom;
    return text.str();
}

} // namespace

TEST(ConfigTest, ReadsEveryKeyInAnyCaseAndTakesDefaultsForTheRest) {
    const std::string text = "[Resource]\nMode = release\n[GRAPHICS]\nwidth = 1280\nHEIGHT=720\n"
                             "[world]\nstart_pos_x = -12\nstart_pos_y=  36\nstart_zoom = 1.5";
    std::string dosText = text;
    for (std::size_t at = 0; (at = dosText.find('\n', at)) != std::string::npos; at += 2) {
        dosText.insert(at, "\r");
    }
    for (const std::string& variant : {text, dosText, "\xEF\xBB\xBF" + text}) {
        EXPECT_EQ(Settings(TemporaryFile(variant).path), "0 1280 720 -12 36 1.5") << variant;
    }
    const std::string nothing = "1 0 0 0 0 0";
    EXPECT_EQ(Settings(TemporaryFile("[resources]\nmode = x\n[world]\nwidth = 5\n").path), nothing);
    EXPECT_EQ(Settings(TemporaryFile(std::string("\0\1[[[=\n=\n]\0[g\nw", 17)).path), nothing);
    const std::string folder = std::filesystem::temp_directory_path().string();
    for (const std::string& path : {folder, folder + "/there/is/no.ini", std::string()}) {
        EXPECT_EQ(Settings(path), nothing) << path;
    }
    std::FILE* file = nullptr;
    for (const char* path : {"/dev/null", "/tmp", "/no/such/file"}) { // a pipe would block
        EXPECT_NE(OpenFile(&file, path, "rb"), 0) << path;
    }
}

TEST(ConfigTest, ReadsValuesByTheLibrarysRules) {
    struct Mode {
        const char* line;
        std::int32_t expected;
    };
    for (const Mode& c : {Mode{"mode = dev", 1},
                          {"mode = DEV", 1},
                          {"mode=  dEv  ", 1},
                          {"mode =", 0},
                          {"mode = devel", 0},
                          {"mode = de", 0},
                          {"mode = 1", 0}}) {
        CMN_ConfigurationManager config;
        config.Load(TemporaryFile("[resource]\n" + std::string(c.line)).path);
        EXPECT_EQ(config.resourceMode, c.expected) << c.line;
    }
    struct Number {
        std::string text;
        std::int32_t integer;
        float real;
    };
    const Number numbers[] = {{"1024", 1024, 1024.0f},
                              {"-30", -30, -30.0f},
                              {"0x400", 1024, 1024.0f},
                              {"010", 10, 10.0f}, // not octal
                              {"1024px", 0, 0.0f},
                              {"12.5", 0, 12.5f},
                              {"abc", 0, 0.0f},
                              {"", 0, 0.0f},
                              {std::string(60, '0') + "640", 640, 640.0f}, // 63 characters
                              {std::string(61, '0') + "640", 0, 0.0f},
                              {"2147483648", kHigh, 2147483648.0f},
                              {"-99999999999999999999", kLow, -1e20f},
                              {"-1e400", 0, -kInfinite},
                              {"inf", 0, kInfinite}};
    for (const Number& c : numbers) {
        CMN_ConfigurationManager config;
        config.Load(TemporaryFile("[graphics]\nwidth = " + c.text + "\nheight = " + c.text +
                                  "\n[world]\nstart_pos_x = " + c.text +
                                  "\nstart_pos_y = " + c.text + "\nstart_zoom = " + c.text)
                        .path);
        for (const std::int32_t value :
             {config.width, config.height, config.startPosX, config.startPosY}) {
            EXPECT_EQ(value, c.integer) << c.text;
        }
        EXPECT_EQ(config.startZoom, c.real) << c.text;
    }
}
