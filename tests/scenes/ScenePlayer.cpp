#include "scenes/ScenePlayer.h"

#include "entities/PlayerEntity.h"

#include <SDL.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

Scene ReadScene(const std::string& path) {
    Scene scene;
    scene.name = std::filesystem::path(path).stem().string();
    GameSettings& settings = scene.settings;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word == "window") {
            words >> settings.width >> settings.height;
        } else if (word == "start") {
            words >> settings.start.x >> settings.start.y;
        } else if (word == "zoom") {
            words >> settings.zoom;
        } else if (word == "mode") {
            words >> settings.mode;
        } else if (!word.empty() && word[0] != '#') {
            do {
                scene.words.push_back(word);
            } while (words >> word);
        }
    }
    return scene;
}

ScenePlayer::ScenePlayer(const GameSettings& settings, const std::string& configuration)
    : game(settings, configuration), workers(settings.workers) {}

void ScenePlayer::Play(const std::string& word) {
    const std::size_t digits = word.find_first_of("0123456789");
    const int number = std::atoi(word.c_str() + std::min(digits, word.size()));
    const char first = word[0];
    if (std::string("[]{}").find(word) != std::string::npos) {
        Hold(first);
    } else if (first == '+' || first == '-') {
        PushKey(first == '+' ? SDL_KEYDOWN : SDL_KEYUP, SDL_GetKeyFromName(word.c_str() + 1));
    } else if (first == '@') {
        Tick(static_cast<std::uint32_t>(number));
    } else if (first == '!') {
        game.World().player->PlaceAt(
            {std::atoi(word.c_str() + 1), std::atoi(word.c_str() + word.find(',') + 1)});
    } else if (first == '.') {
        Ticks(number);
    } else if (first == 'x' && word.find(':') != std::string::npos) {
        PushEvent(SDL_JOYAXISMOTION, [&](SDL_Event& event) {
            event.jaxis.axis = static_cast<Uint8>(number);
            event.jaxis.value = static_cast<Sint16>(std::atoi(word.c_str() + word.find(':') + 1));
        });
    } else if (digits == 1 && (first == 'b' || first == 'B')) {
        PushEvent(first == 'b' ? SDL_JOYBUTTONDOWN : SDL_JOYBUTTONUP,
                  [&](SDL_Event& event) { event.jbutton.button = static_cast<Uint8>(number); });
    } else {
        const SDL_Keycode key = SDL_GetKeyFromName(word.substr(0, digits).c_str());
        PushKey(SDL_KEYDOWN, key);
        Ticks(number);
        PushKey(SDL_KEYUP, key);
        Ticks(1);
    }
}

void ScenePlayer::Ticks(int count) {
    for (int i = 0; i < count; ++i) {
        Tick(0);
    }
}

void ScenePlayer::Tick(std::uint32_t pass) {
    if (!LoadsAreHeld()) {
        // Else a cell might or might not arrive within the tick that asks for it.
        hold.Occupy(workers);
    }
    pass == 0 ? game.Tick() : game.Pass(pass);
    if (!LoadsAreHeld()) {
        hold.Release();
        WaitForLoads();
    }
    if (pass == 0) {
        game.World().Render();
    }
    afterTick();
}

void ScenePlayer::Hold(char by) {
    if (by == '[') {
        hold.Occupy(workers);
    } else if (by == ']') {
        hold.Release();
    } else {
        game.errors.SetOpen(by == '}');
    }
    bracket = by == '[' || by == '{' ? by : '\0';
    if (!LoadsAreHeld()) {
        WaitForLoads();
    }
}
