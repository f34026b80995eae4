// What a scene looks like word by word, as text that can be kept in a golden file and compared.
//
// One line a word: the entries that have changed since the word before, "name value; name value".
// Place, mode and zooms say what they are; the parts of the state have short digests; each kind of
// drawing call has its number in the last frame, its first call and a short digest of all. "ticks"
// and "frames" are digests over every tick of the word.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "scenes/ScenePlayer.h"

struct SceneWord {
    std::string word;
    std::map<std::string, std::string> entries; ///< all, changed or not
    std::string frames;                         ///< the whole drawing log
};

/// Plays a scene.
std::vector<SceneWord> RecordScene(const Scene& scene);

/// The golden file's text: a head that tells how to make it again, and a line a word.
std::string GoldenText(const Scene& scene, const std::vector<SceneWord>& record);

/// What differs between a golden file's text and a record, for a person to read; empty when nothing
/// does. The frames of the first word that differs are written to a file in `logFolder`.
std::string Differences(const std::string& golden, const Scene& scene,
                        const std::vector<SceneWord>& record, const std::string& logFolder);
