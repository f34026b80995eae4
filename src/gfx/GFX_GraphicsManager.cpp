#include "gfx/GFX_GraphicsManager.h"

#include "common/CMN_ConfigurationManager.h"
#include "common/Portability.h"
#include "gfx/SeaColor.h"

#include <SDL_error.h>
#include <SDL_image.h>

#include <cassert>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

std::string DataPath(std::string base, std::int32_t mode, char separator) {
    if (mode == 0) {
        return base + "data" + separator;
    }
    if (mode != 1) {
        return "";
    }
    // The first cut takes the separator at the end, each of the others one directory's name.
    for (int cut = 0; cut < 4; ++cut) {
        const std::size_t last = base.rfind(separator);
        if (last != std::string::npos) {
            base.erase(last);
        }
    }
    return base + separator + "data" + separator;
}

namespace {

// The path of a file of the data directory. Opening a pipe would block. With a separator at its end
// it fails at once, and SDL's error names it.
std::string DataFile(const std::string& name) {
    std::string path = GFX_GraphicsManager::GetDataPath() + name;
    std::error_code ignored;
    return std::filesystem::is_fifo(path, ignored) ? path + kPathSeparator : path;
}

} // namespace

GFX_GraphicsManager::GFX_GraphicsManager() : mainThread(std::this_thread::get_id()) {}

GFX_GraphicsManager::~GFX_GraphicsManager() {
    {
        const MutexLock lock(registryLock);
        for (auto& [name, info] : textures) {
            SDL_DestroyTexture(info->texture);
        }
        textures.clear();
        sprites.clear();
    }
    font.reset();
    if (renderer != nullptr) {
        SDL_DestroyRenderer(renderer);
    }
    if (window != nullptr) {
        SDL_DestroyWindow(window);
    }
}

bool GFX_GraphicsManager::Init() {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    width = config.width;
    height = config.height;
    screenCenter = Vec2i{width, height} * 0.5f;
    if (!CreateWindowAndRenderer()) {
        return false;
    }
    font = std::make_unique<Font>(TTF_OpenFont(DataFile("sample.ttf").c_str(), 20));
    if (font->handle == nullptr) {
        PrintError("TTF_OpenFont");
    }
    for (const char* name : {"enemies.png", "image.png", "ships.png", "link_raw.png", "compass.png",
                             "hud_compass.png", "island_icon.png"}) {
        GetTexture(name);
    }
    return true;
}

bool GFX_GraphicsManager::CreateWindowAndRenderer() {
    assert(OnMainThread());
    window = SDL_CreateWindow("Vesk", 100, 100, width, height, SDL_WINDOW_SHOWN);
    if (window == nullptr) {
        PrintError("SDL_CreateWindow");
        return false;
    }
    renderer = SDL_CreateRenderer(window, -1,
                                  SDL_RENDERER_ACCELERATED | SDL_RENDERER_PRESENTVSYNC |
                                      SDL_RENDERER_TARGETTEXTURE);
    if (renderer == nullptr) {
        PrintError("SDL_CreateRenderer");
        return false;
    }
    MeasureRenderer();
    // What no tile covers, between them or beyond the drawn extent, is sea as well.
    SDL_SetRenderDrawColor(renderer, kSeaColor.r, kSeaColor.g, kSeaColor.b, kSeaColor.a);
    return true;
}

void GFX_GraphicsManager::MeasureRenderer() {
    SDL_GetRendererOutputSize(renderer, &visible.x, &visible.y);
}

TextureInfo* GFX_GraphicsManager::FindTexture(const std::string& fileName) {
    const MutexLock lock(registryLock);
    const auto found = textures.find(fileName);
    return found == textures.end() ? nullptr : found->second.get();
}

TextureInfo* GFX_GraphicsManager::GetTexture(const std::string& fileName) {
    TextureInfo* known = FindTexture(fileName);
    // A texture made on another thread may seem to work, but no renderer promises it.
    if (known != nullptr || !OnMainThread()) {
        return known;
    }
    SDL_Texture* texture = LoadTexture(fileName.c_str());
    if (texture == nullptr) {
        return nullptr;
    }
    auto info = std::make_unique<TextureInfo>();
    info->texture = texture;
    SDL_QueryTexture(texture, nullptr, nullptr, &info->width, &info->height);
    const MutexLock lock(registryLock);
    return textures.insert_or_assign(fileName, std::move(info)).first->second.get();
}

SDL_Texture* GFX_GraphicsManager::LoadTexture(const char* fileName) {
    assert(OnMainThread());
    SDL_Texture* texture = IMG_LoadTexture(renderer, DataFile(fileName).c_str());
    if (texture == nullptr) {
        PrintError("CreateTextureFromSurface");
    }
    return texture;
}

Sprite* GFX_GraphicsManager::CreateSprite(const std::string& fileName, std::int32_t x,
                                          std::int32_t y, std::int32_t w, std::int32_t h) {
    TextureInfo* info = GetTexture(fileName);
    if (info == nullptr) {
        return nullptr;
    }
    const MutexLock lock(registryLock);
    return sprites.emplace_back(std::make_unique<Sprite>(Sprite{info, {x, y, w, h}})).get();
}

std::string GFX_GraphicsManager::GetDataPath() {
    const std::int32_t mode = CMN_ConfigurationManager::GetInstance()->resourceMode;
    return DataPath(GetBasePath(), mode, kPathSeparator);
}

// The one form in which failures of SDL and its companion libraries are reported; called right
// after the failure on the same thread, as SDL keeps one text per thread.
void GFX_GraphicsManager::PrintError(const char* operation) {
    std::cout << operation << " error: " << SDL_GetError() << std::endl;
}
