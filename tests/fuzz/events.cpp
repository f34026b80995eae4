// Plays arbitrary keys, axes, buttons and other events at arbitrary times through whole ticks.
#include "ByteReader.h"
#include "FuzzGame.h"
#include "FuzzSetup.h"

#include <SDL.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

// Next to the land that the game starts at, in the corner of the world, at a corner of four
// clusters, beyond the negative edge, and at the far ends of the plane.
constexpr std::array<Vec2i, 6> kStarts{
    Vec2i{81756, 38940},           Vec2i{36, 36},
    Vec2i{196620, 196596},         Vec2i{-5000, 12},
    Vec2i{2147483647, 2147483647}, Vec2i{-2147483647, 2147483647}};

constexpr std::array<SDL_Keycode, 16> kKeys{
    SDLK_w,         SDLK_s,         SDLK_a,      SDLK_d,      SDLK_RETURN, SDLK_BACKQUOTE,
    SDLK_BACKSPACE, SDLK_e,         SDLK_q,      SDLK_LEFT,   SDLK_RIGHT,  SDLK_UP,
    SDLK_DOWN,      SDLK_BACKSLASH, SDLK_ESCAPE, SDLK_UNKNOWN};

class EventPlayer {
public:
    EventPlayer(const std::uint8_t* data, std::size_t size)
        : reader(data, size),
          game(kStarts[reader.TakeBelow(kStarts.size())], 1 + reader.TakeBelow(3)) {}

    void Play() {
        while (!reader.IsEmpty()) {
            Step();
        }
        game.Rest();
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    }

private:
    void Step() {
        switch (reader.TakeBelow(10)) {
        case 0:
        case 1:
            PushKey(kKeys[reader.TakeBelow(kKeys.size())]);
            break;
        case 2:
            PushKey(reader.Take<std::int32_t>());
            break;
        case 3:
            PushAxis();
            break;
        case 4:
            PushButton();
            break;
        case 5:
            PushOther();
            break;
        case 6:
            game.Pass(reader.Take<std::uint8_t>());
            break;
        case 7:
            game.Pass(reader.Take<std::uint32_t>());
            break;
        case 8:
            game.Tick(1 + reader.TakeBelow(32));
            break;
        default:
            game.Rest();
            break;
        }
    }

    void PushKey(SDL_Keycode key) {
        SDL_Event event{};
        event.type = (reader.Take<std::uint8_t>() & 1U) != 0 ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = key;
        SDL_PushEvent(&event);
    }

    void PushAxis() {
        SDL_Event event{};
        event.type = SDL_JOYAXISMOTION;
        event.jaxis.axis = reader.Take<std::uint8_t>() % 8;
        event.jaxis.value = reader.Take<std::int16_t>();
        SDL_PushEvent(&event);
    }

    void PushButton() {
        SDL_Event event{};
        const auto button = reader.Take<std::uint8_t>();
        event.type = (button & 0x80U) != 0 ? SDL_JOYBUTTONDOWN : SDL_JOYBUTTONUP;
        event.jbutton.button = button & 0x1FU;
        SDL_PushEvent(&event);
    }

    void PushOther() {
        SDL_Event event{};
        event.type = reader.Take<std::uint16_t>();
        event.window.event = reader.Take<std::uint8_t>();
        if (event.type != SDL_SYSWMEVENT) { // would have to carry a message of the window system
            SDL_PushEvent(&event);
        }
    }

    ByteReader reader;
    FuzzGame game;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SetUpFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    EventPlayer(data, size).Play();
    return 0;
}
