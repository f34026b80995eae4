#include "common/CMN_ConfigurationManager.h"

#include "common/Arithmetic.h"
#include "common/Portability.h"

// The library wants one of its character conversions named; the file is read as plain bytes.
#define SI_NO_CONVERSION
#include <SDL_stdinc.h>
#include <SimpleIni.h>

#include <cstdio>

bool CMN_ConfigurationManager::Load(const std::string& path) {
    CSimpleIniA ini;
    std::FILE* file = nullptr;
    if (OpenFile(&file, path, "rb") == 0) {
        ini.LoadFile(file);
        std::fclose(file);
    }
    resourceMode = SDL_strcasecmp(ini.GetValue("resource", "mode", "dev"), "dev") == 0 ? 1 : 0;
    width = Saturate(ini.GetLongValue("graphics", "width", 0));
    height = Saturate(ini.GetLongValue("graphics", "height", 0));
    startPosX = Saturate(ini.GetLongValue("world", "start_pos_x", 0));
    startPosY = Saturate(ini.GetLongValue("world", "start_pos_y", 0));
    startZoom = static_cast<float>(ini.GetDoubleValue("world", "start_zoom", 0.0));
    return true;
}
