// Arbitrary words of a scene, anywhere, with loads that end at arbitrary times: the same play with
// prompt loads must come to the same.
#include "scenes/Replay.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr const char* keys[] = {"d",         "a", "w",    "s",     "e",  "q",    "Return",
                                    "Backspace", "`", "Left", "Right", "Up", "Down", "x"};
    FuzzedDataProvider data(bytes, size);
    const auto place = [&data] {
        const auto x = data.ConsumeIntegral<std::int32_t>();
        return Vec2i{x, data.ConsumeIntegral<std::int32_t>()};
    };
    const auto number = [&data](int least, int most) {
        return std::to_string(data.ConsumeIntegralInRange(least, most));
    };
    const auto near = [&data] { return data.ConsumeIntegralInRange(-100000, 100000); };
    Scene scene{"fuzz", {.width = 160, .height = 120, .start = place()}, {}};
    scene.settings.zoom = data.ConsumeBool() ? "10" : "0.02";
    // Keys need a rest after every word: with a cell that is late, ships sail where land will be.
    const bool isStorm = data.ConsumeBool();
    const auto workers = data.ConsumeIntegralInRange<std::uint32_t>(1, 4);
    while (data.remaining_bytes() > 0 && scene.words.size() < 200) {
        const Vec2i jump = data.ConsumeBool() ? place() : Vec2i{near(), near()};
        const std::string key = data.PickValueInArray(keys);
        const std::string words[] = {"!" + std::to_string(jump.x) + "," + std::to_string(jump.y),
                                     "." + number(0, 20),
                                     key + number(1, 20),
                                     "+" + key,
                                     "-" + key,
                                     "@" + number(0, 100),
                                     "b" + number(0, 16),
                                     "B" + number(0, 16),
                                     "x" + number(0, 7) + ":" + number(-32768, 32767)};
        scene.words.push_back(words[data.ConsumeIntegralInRange(0, isStorm ? 1 : 8)]);
        scene.words.emplace_back(".1"); // a jump that a release brings is followed by a rest
    }
    const OutputLines output;
    const std::string fault = CompareReplay(scene, workers, 1 + workers, isStorm ? 10 : 1);
    if (!fault.empty()) {
        std::fputs(fault.c_str(), stderr);
        std::abort();
    }
    return 0;
}
