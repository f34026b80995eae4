// What a scene looks like word by word, as text that can be kept in a golden file and compared.
//
// One line a word: what has changed since the word before, as "name value; name value;". The state
// stands in words (WorldState.h); a kind of drawing call has its number in the last frame, its
// first call and a short digest of all. "ticks" and "frames" are digests over every tick of the
// word.
#pragma once

#include "scenes/ScenePlayer.h"

#include <string>
#include <vector>

struct SceneRecord {
    std::string golden;              ///< the golden file's text
    std::vector<std::string> frames; ///< each word's whole drawing log
};

/// Plays a scene.
SceneRecord RecordScene(const Scene& scene);
