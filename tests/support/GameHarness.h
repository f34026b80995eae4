// Runs the whole program in process and headless: real SDL with the dummy video driver and the
// software renderer, events pushed into SDL's queue, the clock set by the test.
#pragma once

#include <cstdint>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <SDL_keycode.h>
#include <SDL_pixels.h>
#include <SDL_rect.h>

#include "gfx/Vec2.h"
#include "world/WorldManager.h"

struct GameOptions {
    int width = 640;
    int height = 480;
    Vec2i start{6156, 6156};
    std::string zoom = "1";
    std::string mode = "dev";          ///< any other: no image and no font is found
    std::uint32_t hardwareThreads = 2; ///< one worker fewer
};

/// The configuration file's text for these options.
std::string ConfigurationText(const GameOptions& options);

/// Makes SDL use its headless drivers until it is shut down; called by the harness, and by tests
/// that start the program themselves.
void UseHeadlessDrivers();

/// A running game from construction to destruction; one at a time.
class GameHarness {
public:
    explicit GameHarness(const GameOptions& options = {});
    ~GameHarness();
    GameHarness(const GameHarness&) = delete;
    GameHarness& operator=(const GameHarness&) = delete;

    /// Runs passes of the main loop 16 ms apart: a tick and a frame each.
    void Tick(int count = 1);

    /// Runs ticks of input and world without drawing.
    void TickOnly(int count = 1);

    /// One pass of the main loop so many ms after the last one.
    void Pass(std::uint32_t milliseconds);

    /// Pushes a key event; it is handled in the next tick.
    void KeyDown(SDL_Keycode key);
    void KeyUp(SDL_Keycode key);

    /// Presses a key, holds it for three ticks, releases it and runs the tick that sees the
    /// release.
    void Tap(SDL_Keycode key);

    /// Waits until every load has ended and runs a tick, after which the world is at rest. Fails
    /// the test when loads do not end.
    void Settle();

    /// Draws a frame of the world and takes a copy of it.
    void Capture();

    /// Takes a copy of what `draw` draws on a black window.
    void Capture(const std::function<void()>& draw);

    /// A pixel of the captured frame, SDL coordinates.
    SDL_Color Pixel(int x, int y) const;

    /// Of the captured frame: the smallest rectangle around all pixels of a colour, or around all
    /// that are not black; empty at (0, 0) when there are none.
    SDL_Rect BoundsOf(SDL_Color color) const;
    SDL_Rect DrawnBounds() const;

    /// How many pixels of the captured frame have the colour.
    int CountOf(SDL_Color color) const;

    WorldManager& World() const { return *WorldManager::GetInstance(); }
    std::uint32_t Now() const { return now; }

private:
    SDL_Rect Bounds(const std::function<bool(SDL_Color)>& counts) const;

    std::uint32_t now = 1000; // ms
    int width;
    int height;
    std::vector<std::uint32_t> frame; // ARGB
};

/// Collects what the program prints on standard output from construction to Text().
class OutputCapture {
public:
    OutputCapture() : former(std::cout.rdbuf(text.rdbuf())) {}
    ~OutputCapture() { std::cout.rdbuf(former); }
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    std::string Text() const { return text.str(); }
    std::vector<std::string> Lines() const;

private:
    std::ostringstream text;
    std::streambuf* former;
};

inline constexpr SDL_Color kTestRed{255, 0, 0, 255};
inline constexpr SDL_Color kTestGreen{0, 255, 0, 255};
inline constexpr SDL_Color kTestPink{255, 0, 255, 255};

inline bool operator==(const SDL_Rect& a, const SDL_Rect& b) {
    return SDL_RectEquals(&a, &b) == SDL_TRUE;
}

inline std::ostream& operator<<(std::ostream& out, const SDL_Rect& rect) {
    return out << rect.w << " x " << rect.h << " at " << rect.x << ", " << rect.y;
}

constexpr bool SameColor(SDL_Color a, SDL_Color b) {
    return a.r == b.r && a.g == b.g && a.b == b.b;
}
