// The settings of "vesk.ini", read once at start-up and constant afterwards.
//
// Main creates, loads and destroys it; any thread may read the fields after Load.
#pragma once

#include "app/CMN_Singleton.h"
#include "common/Portability.h"

#include <cstdint>
#include <string>

class CMN_ConfigurationManager : public CMN_Singleton<CMN_ConfigurationManager> {
public:
    std::int32_t resourceMode = 2; ///< 1 development layout ("dev"), 0 otherwise
    std::int32_t width = 0;        ///< window pixels
    std::int32_t height = 0;       ///< window pixels
    std::int32_t startPosX = 0;    ///< world units
    std::int32_t startPosY = 0;    ///< world units, y up
    float startZoom = 0.0f;        ///< window pixels per world unit

    /// Reads a file, by default the one beside the program. Always true: a missing file, key or
    /// valid value gives the default.
    bool Load(const std::string& path = GetBasePath() + "vesk.ini");
};
