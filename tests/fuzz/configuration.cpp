// Starts the whole program with arbitrary bytes as its configuration file.
#include "app/Application.h"
#include "common/CMN_ConfigurationManager.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"

#include "FuzzSetup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

constexpr std::int64_t kMostPixels = 1 << 18; // larger windows only cost time

std::string FilePath() {
    static const std::string path = (std::filesystem::temp_directory_path() /
                                     ("vesk-fuzz-" + std::to_string(getpid()) + ".ini"))
                                        .string();
    return path;
}

void Write(const std::uint8_t* data, std::size_t size) {
    std::ofstream file(FilePath(), std::ios::binary);
    file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void CheckValues() {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    EXPECT_TRUE(config.resourceMode == 0 || config.resourceMode == 1);
    EXPECT_FALSE(GFX_GraphicsManager::GetDataPath().empty());
    EXPECT_FALSE(std::isinf(config.startZoom));
}

bool IsCheapToOpen() {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    return std::int64_t{config.width} * config.height <= kMostPixels;
}

// One file in eight starts the program: that takes a hundred times as long as reading it.
bool IsToStart(std::size_t size) {
    return size % 8 == 0;
}

void Live() {
    UseHeadlessDrivers(); // SDL forgets its hints when it shuts down
    StartOptions options;
    options.hardwareThreads = 2;
    options.configurationFile = FilePath();
    if (StartUp(options)) {
        for (std::uint32_t now = 16; now <= 48; now += 16) {
            RunPass(now);
        }
    }
    ShutDown();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SetUpFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Write(data, size);
    EXPECT_TRUE(CMN_ConfigurationManager::GetInstance()->Load(FilePath()));
    CheckValues();
    const bool starts = IsToStart(size) && IsCheapToOpen();
    CMN_ConfigurationManager::DestroyInstance();
    if (starts) {
        Live();
    }
    std::filesystem::remove(FilePath());
    return 0;
}
