// The program's spine: start-up, the main loop and shutdown, in functions that tests call too.
//
// All of it runs on the main thread. Every manager lives from its step in StartUp until its step in
// ShutDown.
#pragma once

#include "common/Portability.h"

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

struct StartOptions {
    std::uint32_t hardwareThreads = std::thread::hardware_concurrency();
    std::string configurationFile = GetBasePath() + "vesk.ini";
};

/// Creates the managers and opens the window. False when the window cannot be opened: a line has
/// been printed, and nothing is torn down.
bool StartUp(const StartOptions& options = {});

/// True once the user has asked to quit; from the input manager's creation on.
bool QuitRequested();

/// One pass of the main loop at the time `now` (ms): a tick of 16 ms when one is due, then a frame.
void RunPass(std::uint32_t now);

/// Runs passes until the user quits, asking `clock` for the time of each.
void RunLoop(const std::function<std::uint32_t()>& clock);

/// Stops the workers, then destroys the managers in their order and shuts SDL down.
void ShutDown();
