// A frame painted by a test's own means, to compare with what the game has drawn.
//
// It starts as a copy of a captured frame and is painted over with SDL surfaces, without the
// program's drawing calls. SDL coordinates (y down).
#pragma once

#include <string>

#include <SDL_pixels.h>
#include <SDL_rect.h>
#include <SDL_surface.h>
#include <SDL_ttf.h>

#include "support/GameHarness.h"

class PaintedFrame {
public:
    /// Copies the game's captured frame. The game's SDL must stay up for the frame's lifetime.
    explicit PaintedFrame(const GameHarness& game);
    ~PaintedFrame();
    PaintedFrame(const PaintedFrame&) = delete;
    PaintedFrame& operator=(const PaintedFrame&) = delete;

    void Fill(const SDL_Rect& rect, SDL_Color color);
    void Outline(const SDL_Rect& rect, SDL_Color color);

    /// Text in the game's font at size 20, its upper left corner at (x, y).
    void Text(const std::string& text, int x, int y, SDL_Color color);

    /// Empty when the game's captured frame looks the same; else how many pixels differ and where
    /// the first one is.
    std::string Difference(const GameHarness& game) const;

private:
    SDL_Color Pixel(int x, int y) const;

    SDL_Surface* surface;
    TTF_Font* font;
};
