// What every fuzz target does once, before its first input.
#pragma once

/// Makes a failed expectation end the process, so that the fuzzer sees it, and keeps the game's own
/// lines off the console.
void SetUpFuzzing();
