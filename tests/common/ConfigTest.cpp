// The configuration file: every key, and what counts as missing or invalid.
#include "common/CMN_ConfigurationManager.h"

#include "common/Portability.h"
#include "support/Game.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

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
    const std::string text =
        "[Resource]\nMode = release\r\n[GRAPHICS]\r\nwidth = 1280\r\nHEIGHT=720\n"
        "[world]\nstart_pos_x = -12\nstart_pos_y=  36\nstart_zoom = 1.5";
    for (const std::string& variant : {text, "\xEF\xBB\xBF" + text}) {
        EXPECT_EQ(Settings(TemporaryFile(variant).path), "0 1280 720 -12 36 1.5") << variant;
    }
    const std::string nothing = "1 0 0 0 0 0";
    EXPECT_EQ(Settings(TemporaryFile("[resources]\nmode = x\n[world]\nwidth = 5\n").path), nothing);
    EXPECT_EQ(Settings(TemporaryFile(std::string("\0\1[[[=\n=\n]\0[g\nw", 15)).path), nothing);
    const TemporaryFile fifo("");
    std::filesystem::remove(fifo.path);
    ASSERT_EQ(mkfifo(fifo.path.c_str(), 0600), 0);
    std::FILE* file = nullptr;
    for (const std::string& path : {fifo.path, std::string("/tmp"), std::string("/no/such.ini")}) {
        EXPECT_EQ(Settings(path), nothing) << path; // reading the pipe would never end
        EXPECT_NE(OpenFile(&file, path, "rb"), 0) << path;
    }
}

TEST(ConfigTest, ReadsValuesByTheLibrarysRules) {
    struct Case {
        std::string text;
        std::int32_t integer;
        float real;
        std::int32_t mode = 0;
    };
    const Case cases[] = {{"1024", 1024, 1024.0f},
                          {"0x400", 1024, 1024.0f},
                          {"010", 10, 10.0f}, // not octal
                          {"12.5", 0, 12.5f},
                          {"DEV", 0, 0.0f, 1},
                          {"  dEv  ", 0, 0.0f, 1},
                          {"devel", 0, 0.0f},
                          {"", 0, 0.0f},
                          {std::string(60, '0') + "640", 640, 640.0f}, // 63 characters
                          {std::string(61, '0') + "640", 0, 0.0f},
                          {"2147483648", kHigh, 2147483648.0f},
                          {"-99999999999999999999", kLow, -1e20f},
                          {"-1e400", 0, -kInfinite},
                          {"inf", 0, kInfinite}};
    for (const Case& c : cases) {
        CMN_ConfigurationManager config;
        config.Load(TemporaryFile("[graphics]\nwidth = " + c.text + "\nheight = " + c.text +
                                  "\n[world]\nstart_pos_x = " + c.text +
                                  "\nstart_pos_y = " + c.text + "\nstart_zoom = " + c.text +
                                  "\n[resource]\nmode = " + c.text)
                        .path);
        for (const std::int32_t value :
             {config.width, config.height, config.startPosX, config.startPosY}) {
            EXPECT_EQ(value, c.integer) << c.text;
        }
        EXPECT_EQ(config.startZoom, c.real) << c.text;
        EXPECT_EQ(config.resourceMode, c.mode) << c.text;
    }
}
