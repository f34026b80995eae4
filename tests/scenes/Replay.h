// Loads may take their time: however many workers there are, and whenever loads end, the world must
// come to the same.
#pragma once

#include "scenes/ScenePlayer.h"

#include <cstdint>
#include <string>

/// Plays a scene twice, first with loads that end within the tick that asks for them, then with so
/// many workers that are held back at moments of chance, before their loads and midway. After every
/// so many words all loads end, and the world's state is compared; with a rest after every word, so
/// is every tick. Tells what differs, or which slot shows what it was not asked for last; empty
/// when all is well.
std::string CompareReplay(const Scene& scene, std::uint32_t workers, unsigned seed,
                          std::size_t wordsPerRest = 1);
