// Shuts SDL and its companion libraries down at the very end; start-up initialises them itself.
#pragma once

#include "app/CMN_Singleton.h"

class SDLManager : public CMN_Singleton<SDLManager> {
public:
    ~SDLManager() override;
};
