// Plays scenes: lines of words that press keys and let ticks pass, in the whole program in process.
//
// A scene's file begins with its settings (window, start, zoom, mode; see GameSettings); every
// other line is words of the script, and a line that begins with # is a comment.
//
//   d14        holds a key for 14 ticks and lets it go; names are SDL's (Return4, Backspace4, `4)
//   .20        lets 20 ticks pass
//   +d -d      presses a key, lets it go, at the next tick
//   !12,-30    puts the player at a place, as "Go to map location" does
//   @31        one pass of the main loop, 31 ms after the last
//   x0:-32768  moves an axis of the joystick; b4 and B4 press and release a button
//   [ ]        holds the workers back until the bracket closes
//   { }        stops dungeons in the middle of their generation until the brace closes
//
// A tick is followed by the end of the loads that it asked for, and by a frame.
#pragma once

#include "support/Game.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct Scene {
    std::string name; ///< the file's, without folder and ending
    GameSettings settings;
    std::vector<std::string> words;
};

Scene ReadScene(const std::string& path);

class ScenePlayer {
public:
    explicit ScenePlayer(const GameSettings& settings, const std::string& configuration = "");
    virtual ~ScenePlayer() = default;
    ScenePlayer(const ScenePlayer&) = delete;
    ScenePlayer& operator=(const ScenePlayer&) = delete;

    void Play(const std::string& word);

    /// True between brackets or braces, when loads may be pending.
    bool LoadsAreHeld() const { return bracket != 0; }
    bool GenerationIsHeld() const { return bracket == '{'; }

    Game game;
    std::function<void()> afterTick = [] {};

protected:
    /// A tick, or a pass of the main loop so many ms after the last when that is not 0.
    virtual void Tick(std::uint32_t pass);

    /// Holds workers or generation back, or lets them go.
    virtual void Hold(char by);

    const std::uint32_t workers;
    WorkerHold hold;

private:
    void Ticks(int count);

    char bracket = 0; ///< the one that is open
};
