// The configuration file: every key, and what counts as missing or invalid.
#include "common/CMN_ConfigurationManager.h"

#include "common/Portability.h"
#include "support/Game.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace {

// The settings of a file.
std::string Settings(const std::string& path) {
    CMN_ConfigurationManager c;
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
    EXPECT_EQ(CMN_ConfigurationManager().resourceMode, 2) << "not read yet";
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
        std::string integer;
        std::string real;
        std::string mode = "0";
    };
    const Case cases[] = {{"1024", "1024", "1024"},
                          {"0x400", "1024", "1024"},
                          {"010", "10", "10"}, // not octal
                          {"12.5", "0", "12.5"},
                          {"DEV", "0", "0", "1"},
                          {"  dEv  ", "0", "0", "1"},
                          {"devel", "0", "0"},
                          {"", "0", "0"},
                          {std::string(60, '0') + "640", "640", "640"}, // 63 characters
                          {std::string(61, '0') + "640", "0", "0"},
                          {"2147483648", "2147483647", "2.14748e+09"},
                          {"-99999999999999999999", "-2147483648", "-1e+20"},
                          {"-1e400", "0", "-inf"},
                          {"inf", "0", "inf"}};
    for (const auto& [text, integer, real, mode] : cases) {
        const std::string is = " = " + text + "\n";
        const TemporaryFile file("[graphics]\nwidth" + is + "height" + is + "[resource]\nmode" +
                                 is + "[world]\nstart_pos_x" + is + "start_pos_y" + is +
                                 "start_zoom" + is);
        std::string expected = mode;
        for (const std::string& number : {integer, integer, integer, integer, real}) {
            expected += ' ' + number;
        }
        EXPECT_EQ(Settings(file.path), expected) << text;
    }
}
