#include "scenes/SceneRecord.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "support/DrawLog.h"
#include "support/Files.h"
#include "support/StateDigest.h"

#include <cstdio>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr std::uint64_t kEmpty = 14695981039346656037U;

std::uint64_t Mix(std::uint64_t digest, std::string_view text) {
    for (const char c : text) {
        digest = (digest ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return digest;
}

template <typename... Values>
std::string Format(const char* format, Values... values) {
    char text[200];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string Short(std::uint64_t digest) {
    return Format("%04x", static_cast<unsigned>(digest >> 40U & 0xffffU));
}

// Watches the ticks of one word after the other.
class Recorder {
public:
    void AfterTick(const ScenePlayer& player) {
        Take(DigestTick());
        if (!player.LoadsAreHeld()) {
            Take(DigestRest());
        }
        ticks = Mix(ticks, std::to_string(LocksHeld()));
        lastFrame = TakeDrawLog();
        if (!player.GenerationIsHeld()) { // else what has arrived depends on the moment
            frames += lastFrame + '\n';
        }
    }

    /// The word's line, and its frames.
    std::pair<std::string, std::string> EndWord(const std::string& word, OutputLines& output) {
        DescribeWorld();
        if (!frames.empty()) {
            DescribeLastFrame();
        }
        entries["ticks"] = Short(std::exchange(ticks, kEmpty));
        entries["frames"] = Short(Mix(kEmpty, frames));
        std::string line = word + ':';
        for (const auto& [name, value] : entries) {
            if (std::exchange(written[name], value) != value) {
                line += ' ' + name + ' ' + value + ';';
            }
        }
        std::string said;
        for (const std::string& text : output.Take()) {
            said += " \"" + text + '"';
        }
        if (!said.empty()) {
            line += " says" + said.substr(0, 80) + ' ' + Short(Mix(kEmpty, said)) + ';';
        }
        return {line + '\n', std::exchange(frames, {})};
    }

private:
    void Take(const StateDigest& digest) {
        for (const auto& [name, value] : digest) {
            entries[std::string(name)] = Short(value);
            ticks = (ticks ^ value) * 1099511628211U;
        }
    }

    void DescribeWorld() {
        const WorldManager& world = *WorldManager::GetInstance();
        const PlayerEntity& player = *world.player;
        entries["at"] = Format("%d,%d", player.position.x, player.position.y);
        entries["is"] =
            Format("%s on %d", player.mode == 0 ? "sailing" : "on foot", player.tileType);
        entries["zoom"] = Format("%.4g", double{world.camera->zoom});
        entries["map-view"] =
            Format("%s at %.6g,%.6g zoom %.4g", world.mapMode == 1 ? "open" : "closed",
                   double{world.map->pan.x}, double{world.map->pan.y}, double{world.map->zoom});
    }

    // By kind of drawing call: the file of a copied image, else the call's name.
    void DescribeLastFrame() {
        std::map<std::string, std::vector<std::string>> kinds;
        std::istringstream lines(lastFrame);
        for (std::string line; std::getline(lines, line);) {
            std::string locks;
            std::string call;
            std::string image;
            std::istringstream(line) >> locks >> call >> image;
            kinds[call == "copy" ? image : call].push_back(line);
        }
        for (auto& [name, value] : entries) {
            value = drawn.contains(name) ? "none" : value;
        }
        for (const auto& [name, calls] : kinds) {
            std::uint64_t digest = kEmpty;
            for (const std::string& call : calls) {
                digest = Mix(digest, call);
            }
            entries[name] = Format("%zu (%s) ", calls.size(), calls[0].c_str()) + Short(digest);
            drawn.insert(name);
        }
    }

    using Entries = std::map<std::string, std::string>;
    Entries entries;
    Entries written;             // by the lines so far
    std::set<std::string> drawn; // the entries that are kinds of drawing calls
    std::uint64_t ticks = kEmpty;
    std::string frames;
    std::string lastFrame;
};

// The entries of a golden line that the other line does not have.
std::string OnlyIn(const std::string& line, const std::string& other) {
    std::string only;
    for (std::size_t at = line.find(':'); at + 1 < line.size();) {
        const std::size_t end = line.find(';', at + 1);
        const std::string entry = line.substr(at + 1, end - at - 1);
        only += other.find(entry + ';') == std::string::npos ? "\n   " + entry : "";
        at = end;
    }
    return only;
}

} // namespace

SceneRecord RecordScene(const Scene& scene) {
    const std::string path = "tests/scenes/" + scene.name;
    SceneRecord record{"# Made by: vesk_scene " + path + ".scene --record > " + path +
                           ".golden\n# What has changed with each word of the scene.\n",
                       {}};
    OutputLines output;
    ScenePlayer player(scene.settings);
    Recorder recorder;
    player.afterTick = [&] { recorder.AfterTick(player); };
    TakeDrawLog();
    for (const std::string& word : scene.words) {
        player.Play(word);
        auto [line, frames] = recorder.EndWord(word, output);
        record.golden += line;
        record.frames.push_back(std::move(frames));
    }
    return record;
}

std::string Differences(const std::string& golden, const Scene& scene, const SceneRecord& record) {
    std::istringstream expectedLines(golden);
    std::istringstream foundLines(record.golden);
    std::string expected;
    std::string found;
    std::getline(expectedLines, expected);
    std::getline(expectedLines, expected);
    std::getline(foundLines, found);
    std::getline(foundLines, found);
    for (std::size_t i = 0; i < scene.words.size(); ++i) {
        expected.clear();
        std::getline(expectedLines, expected);
        std::getline(foundLines, found);
        if (expected != found) {
            const std::string log = scene.name + '-' + std::to_string(i + 1) + ".log";
            WriteFound(log, record.frames[i]);
            return "scene " + scene.name + ", word " + std::to_string(i + 1) +
                   " of its script, \"" + scene.words[i] + "\"\n  expected" +
                   OnlyIn(expected, found) + "\n  found" + OnlyIn(found, expected) +
                   "\n  (what is in neither has not changed; all frames: " + VESK_FOUND + '/' +
                   log + ")\n";
        }
    }
    return "";
}
