#include "scenes/SceneRecord.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "support/DrawLog.h"
#include "support/StateDigest.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace {

using Entries = std::map<std::string, std::string>;

std::uint64_t Mix(std::uint64_t digest, std::string_view text) {
    for (const char c : text) {
        digest = (digest ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return digest;
}

constexpr std::uint64_t kEmpty = 14695981039346656037U;

std::string Short(std::uint64_t digest) {
    char text[8];
    std::snprintf(text, sizeof text, "%04x", static_cast<unsigned>((digest >> 40U) & 0xffffU));
    return text;
}

// The kind of a line of the drawing log: the file of a copied image, else the call.
std::string KindOf(const std::string& line) {
    std::istringstream words(line);
    std::string locks;
    std::string call;
    std::string image;
    words >> locks >> call >> image;
    return call == "copy" ? image : call;
}

// Long speech by its beginning and a digest.
std::string Abridged(const std::string& text) {
    return text.size() <= 80 ? text : text.substr(0, 80) + "... " + Short(Mix(kEmpty, text));
}

// Watches the ticks of one word after the other.
class Recorder {
public:
    void AfterTick(const ScenePlayer& player) {
        for (const DigestPart& part : DigestTick()) {
            Take(part);
        }
        if (!player.LoadsAreHeld()) {
            for (const DigestPart& part : DigestRest()) {
                Take(part);
            }
        }
        ticks = Mix(ticks, std::to_string(LocksHeld()));
        lastFrame = TakeDrawLog();
        if (!player.GenerationIsHeld()) { // else what has arrived depends on the moment
            frames += lastFrame + '\n';
        }
    }

    SceneWord EndWord(const std::string& word, OutputLines& output) {
        entries.erase("says");
        for (const auto& [name, digest] : parts) {
            entries[name] = Short(digest);
        }
        DescribeWorld();
        if (!frames.empty()) {
            DescribeLastFrame();
        }
        std::string said;
        for (const std::string& line : output.Take()) {
            said += '"' + line + "\" ";
        }
        if (!said.empty()) {
            entries["says"] = Abridged(said);
        }
        entries["ticks"] = Short(ticks);
        entries["frames"] = Short(Mix(kEmpty, frames));
        ticks = kEmpty;
        return {word, entries, std::exchange(frames, {})};
    }

private:
    void Take(const DigestPart& part) {
        parts[std::string(part.name)] = part.value;
        ticks = (ticks ^ part.value) * 1099511628211U;
    }

    void DescribeWorld() {
        const WorldManager& world = *WorldManager::GetInstance();
        const auto say = [this](const char* name, const char* format, auto... values) {
            char text[80];
            std::snprintf(text, sizeof text, format, values...);
            entries[name] = text;
        };
        say("at", "%d,%d", world.player->position.x, world.player->position.y);
        say("is", "%s on %d", world.player->mode == PlayerEntity::kSailing ? "sailing" : "on foot",
            world.player->tileType);
        say("zoom", "%.4g", static_cast<double>(world.camera->zoom));
        say("map-view", "%s at %.6g,%.6g zoom %.4g", world.mapMode == 1 ? "open" : "closed",
            static_cast<double>(world.map->pan.x), static_cast<double>(world.map->pan.y),
            static_cast<double>(world.map->zoom));
    }

    void DescribeLastFrame() {
        struct Kind {
            int count = 0;
            std::string first;
            std::uint64_t digest = kEmpty;
        };
        std::map<std::string, Kind> kinds;
        std::istringstream lines(lastFrame);
        for (std::string line; std::getline(lines, line);) {
            Kind& kind = kinds[KindOf(line)];
            kind.first = kind.count++ == 0 ? line : kind.first;
            kind.digest = Mix(kind.digest, line);
        }
        for (const std::string& name : seen) {
            entries[name] = "none";
        }
        for (const auto& [name, kind] : kinds) {
            entries[name] =
                std::to_string(kind.count) + " (" + kind.first + ") " + Short(kind.digest);
            seen.insert(name);
        }
    }

    Entries entries;
    std::map<std::string, std::uint64_t> parts;
    std::uint64_t ticks = kEmpty;
    std::string frames;
    std::string lastFrame;
    std::set<std::string> seen; // kinds of drawing calls so far
};

std::string Line(const SceneWord& word, const Entries& before) {
    std::string line = word.word + ':';
    for (const auto& [name, value] : word.entries) {
        const auto former = before.find(name);
        if (former == before.end() || former->second != value || name == "says") {
            line += ' ' + name + ' ' + value + ';';
        }
    }
    return line;
}

// A golden line's entries over those of the lines before it.
void Apply(const std::string& line, Entries& entries) {
    std::size_t at = line.find(": ");
    while (at != std::string::npos) {
        at += 2;
        const std::size_t space = line.find(' ', at);
        const std::size_t end =
            line.find("; ", at) == std::string::npos ? line.rfind(';') : line.find("; ", at);
        if (space == std::string::npos || end == std::string::npos || end < space) {
            return;
        }
        entries[line.substr(at, space - at)] = line.substr(space + 1, end - space - 1);
        at = line.find("; ", at);
    }
}

std::string Explain(const Scene& scene, std::size_t number, const Entries& expected,
                    const SceneWord& found, const std::string& logFolder) {
    std::filesystem::create_directories(logFolder);
    const std::string log = logFolder + '/' + scene.name + '-' + std::to_string(number) + ".log";
    std::ofstream(log) << found.frames;
    std::ostringstream text;
    text << "scene " << scene.name << ", word " << number << " of its script, \"" << found.word
         << "\":\n";
    Entries all = expected;
    all.insert(found.entries.begin(), found.entries.end());
    for (const auto& entry : all) {
        const auto value = [&entry](const Entries& entries) {
            const auto one = entries.find(entry.first);
            return one == entries.end() ? "nothing" : one->second;
        };
        if (value(expected) != value(found.entries)) {
            text << "  " << entry.first << ": expected " << value(expected) << "\n  "
                 << std::string(entry.first.size(), ' ') << "     found " << value(found.entries)
                 << '\n';
        }
    }
    text << "  (every frame of the word: " << log << ")\n";
    return text.str();
}

} // namespace

std::vector<SceneWord> RecordScene(const Scene& scene) {
    std::vector<SceneWord> record;
    OutputLines output;
    ScenePlayer player(scene.settings);
    Recorder recorder;
    player.afterTick = [&] { recorder.AfterTick(player); };
    TakeDrawLog();
    for (const std::string& word : scene.words) {
        player.Play(word);
        record.push_back(recorder.EndWord(word, output));
    }
    return record;
}

std::string GoldenText(const Scene& scene, const std::vector<SceneWord>& record) {
    std::string text = "# Made by: vesk_scene tests/scenes/" + scene.name +
                       ".scene --record > tests/scenes/" + scene.name +
                       ".golden\n# What has changed with each word of the scene.\n";
    Entries before;
    for (const SceneWord& word : record) {
        text += Line(word, before) + '\n';
        before = word.entries;
    }
    return text;
}

std::string Differences(const std::string& golden, const Scene& scene,
                        const std::vector<SceneWord>& record, const std::string& logFolder) {
    std::istringstream lines(golden);
    Entries expected;
    Entries before;
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ")) {
            continue;
        }
        if (number == record.size()) {
            return "scene " + scene.name + " has fewer words than its golden file";
        }
        const SceneWord& word = record[number++];
        expected.erase("says");
        Apply(line, expected);
        if (line != Line(word, before)) {
            return Explain(scene, number, expected, word, logFolder);
        }
        before = word.entries;
    }
    return number == record.size() ? "" : "scene " + scene.name + " has more words than its golden";
}
