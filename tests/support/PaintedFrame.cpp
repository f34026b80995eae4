#include "support/PaintedFrame.h"

#include "gfx/GFX_GraphicsManager.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace {

bool Alike(SDL_Color a, SDL_Color b) {
    // Blending text may round differently by one step.
    return std::abs(a.r - b.r) <= 1 && std::abs(a.g - b.g) <= 1 && std::abs(a.b - b.b) <= 1;
}

std::ostream& operator<<(std::ostream& out, SDL_Color color) {
    return out << '(' << int{color.r} << ", " << int{color.g} << ", " << int{color.b} << ')';
}

} // namespace

PaintedFrame::PaintedFrame(const GameHarness& game)
    : surface(SDL_CreateRGBSurfaceWithFormat(0, GFX_GraphicsManager::GetInstance()->width,
                                             GFX_GraphicsManager::GetInstance()->height, 32,
                                             SDL_PIXELFORMAT_ARGB8888)),
      font(TTF_OpenFont((GFX_GraphicsManager::GetDataPath() + "sample.ttf").c_str(), 20)) {
    EXPECT_NE(font, nullptr);
    for (int y = 0; y < surface->h; ++y) {
        for (int x = 0; x < surface->w; ++x) {
            Fill({x, y, 1, 1}, game.Pixel(x, y));
        }
    }
}

PaintedFrame::~PaintedFrame() {
    TTF_CloseFont(font);
    SDL_FreeSurface(surface);
}

void PaintedFrame::Fill(const SDL_Rect& rect, SDL_Color color) {
    SDL_FillRect(surface, &rect, SDL_MapRGBA(surface->format, color.r, color.g, color.b, color.a));
}

void PaintedFrame::Outline(const SDL_Rect& rect, SDL_Color color) {
    Fill({rect.x, rect.y, rect.w, 1}, color);
    Fill({rect.x, rect.y + rect.h - 1, rect.w, 1}, color);
    Fill({rect.x, rect.y, 1, rect.h}, color);
    Fill({rect.x + rect.w - 1, rect.y, 1, rect.h}, color);
}

void PaintedFrame::Text(const std::string& text, int x, int y, SDL_Color color) {
    SDL_Surface* line = TTF_RenderText_Blended(font, text.c_str(), color);
    ASSERT_NE(line, nullptr);
    SDL_Rect place{x, y, line->w, line->h};
    SDL_BlitSurface(line, nullptr, surface, &place);
    SDL_FreeSurface(line);
}

SDL_Color PaintedFrame::Pixel(int x, int y) const {
    const auto* row = static_cast<const std::uint8_t*>(surface->pixels) +
                      static_cast<std::ptrdiff_t>(y) * surface->pitch;
    SDL_Color color{};
    SDL_GetRGB(reinterpret_cast<const std::uint32_t*>(row)[x], surface->format, &color.r, &color.g,
               &color.b);
    return color;
}

std::string PaintedFrame::Difference(const GameHarness& game) const {
    int count = 0;
    std::ostringstream first;
    for (int y = 0; y < surface->h; ++y) {
        for (int x = 0; x < surface->w; ++x) {
            const SDL_Color expected = Pixel(x, y);
            const SDL_Color drawn = game.Pixel(x, y);
            if (!Alike(expected, drawn) && count++ == 0) {
                first << " pixels differ, the first at (" << x << ", " << y << "): " << expected
                      << " is expected, " << drawn << " is drawn";
            }
        }
    }
    return count == 0 ? "" : std::to_string(count) + first.str();
}
