// Starts the whole program with arbitrary bytes as its configuration file.
#include "app/Application.h"
#include "common/CMN_ConfigurationManager.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/TemporaryFile.h"

#include "FuzzSetup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr std::int64_t kMostPixels = 1 << 18; // larger windows only cost time

void CheckValues() {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    EXPECT_TRUE(config.resourceMode == 0 || config.resourceMode == 1);
    EXPECT_FALSE(GFX_GraphicsManager::GetDataPath().empty());
    EXPECT_FALSE(std::isinf(config.startZoom));
}

// One file in eight starts the program: that takes a hundred times as long as reading it.
bool IsToStart(std::size_t size) {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    return size % 8 == 0 && std::int64_t{config.width} * config.height <= kMostPixels;
}

void Live(const std::string& file) {
    UseHeadlessDrivers(); // SDL forgets its hints when it shuts down
    if (StartUp({.hardwareThreads = 2, .configurationFile = file})) {
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
    const TemporaryFile file(std::string(reinterpret_cast<const char*>(data), size));
    EXPECT_TRUE(CMN_ConfigurationManager::GetInstance()->Load(file.Path()));
    CheckValues();
    const bool starts = IsToStart(size);
    CMN_ConfigurationManager::DestroyInstance();
    if (starts) {
        Live(file.Path());
    }
    return 0;
}
