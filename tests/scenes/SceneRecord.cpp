#include "scenes/SceneRecord.h"

#include "support/DrawLog.h"
#include "support/WorldState.h"

#include <map>
#include <utility>

namespace {

// Watches the ticks of one word after the other.
class Recorder {
public:
    void AfterTick(const ScenePlayer& player) {
        Take(DescribeTick());
        if (!player.LoadsAreHeld()) {
            Take(DescribeRest());
        }
        ticks.Add(LocksHeld());
        lastFrame = TakeDrawLog();
        if (!player.GenerationIsHeld()) { // else what has arrived depends on the moment
            frames += lastFrame + '\n';
        }
    }

    /// The word's line, and its frames.
    std::pair<std::string, std::string> EndWord(const std::string& word, OutputLines& output) {
        if (!frames.empty()) {
            DescribeLastFrame();
        }
        entries["ticks"] = Short(std::exchange(ticks, {}).Value());
        entries["frames"] = Short(frames);
        std::string said;
        for (const std::string& text : output.Take()) {
            said += '"' + text + "\" ";
        }
        entries["said"] = said.empty() ? "nothing" : said.substr(0, 80) + Short(said);
        std::string line = word + ':';
        for (const auto& [name, value] : entries) {
            if (std::exchange(written[name], value) != value) {
                line += ' ' + name + (value.starts_with(' ') ? "" : " ") + value + ';';
            }
        }
        return {line + '\n', std::exchange(frames, {})};
    }

private:
    void Take(const WorldState& state) {
        for (const auto& [name, value] : state) {
            entries[std::string(name)] = value;
            ticks.Add(value);
        }
    }

    // By kind of drawing call: the file of a copied image, else the call's name.
    void DescribeLastFrame() {
        for (auto& [name, calls] : kinds) {
            calls.clear();
        }
        std::istringstream lines(lastFrame);
        for (std::string line; std::getline(lines, line);) {
            std::string locks;
            std::string call;
            std::string image;
            std::istringstream(line) >> locks >> call >> image;
            kinds[call == "copy" ? image : call].push_back(line);
        }
        for (const auto& [name, calls] : kinds) {
            entries[name] =
                calls.empty() ? "none" : Text(calls.size(), " (", calls[0], ") ", Short(calls));
        }
    }

    std::map<std::string, std::string> entries;
    std::map<std::string, std::string> written;            // by the lines so far
    std::map<std::string, std::vector<std::string>> kinds; // the last frame's calls
    Digest ticks;
    std::string frames;
    std::string lastFrame;
};

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
