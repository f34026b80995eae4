// Puts the player at arbitrary places, all 32-bit values, with ticks, frames and rests in between.
#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "gen/GridKey.h"

#include "ByteReader.h"
#include "FuzzGame.h"
#include "FuzzSetup.h"

#include <cstddef>
#include <cstdint>

namespace {

WorldManager& World() {
    return *WorldManager::GetInstance();
}

class Jumper {
public:
    Jumper(const std::uint8_t* data, std::size_t size)
        : reader(data, size), game(TakePlace(), 1 + reader.TakeBelow(4)) {}

    void Play() {
        while (!reader.IsEmpty()) {
            Jump();
        }
        game.Rest();
    }

private:
    void Jump() {
        const auto how = reader.Take<std::uint8_t>();
        World().player->PlaceAt((how & 1U) != 0 ? TakePlace() : TakePlaceNearby());
        SetView(reader.Take<std::uint8_t>());
        game.Tick((how >> 1U) & 3U);
        if ((how & 8U) != 0) {
            game.Pass(16);
        }
        if ((how & 16U) != 0) {
            game.Rest();
        }
    }

    Vec2i TakePlace() {
        const auto x = reader.Take<std::int32_t>();
        return {x, reader.Take<std::int32_t>()};
    }

    // A few cells from where the player is.
    Vec2i TakePlaceNearby() {
        const auto dx = reader.Take<std::int8_t>();
        const auto dy = reader.Take<std::int8_t>();
        return World().player->position + Vec2i{dx, dy} * (kCellSize / 24);
    }

    static void SetView(std::uint8_t flags) {
        World().renderCellBorder = (flags & 1U) != 0;
        World().renderDungeonRooms = (flags & 2U) != 0;
        World().renderMinSpanningTree = (flags & 4U) != 0;
        World().renderHallways = (flags & 8U) != 0;
        World().showPlayerInfo = (flags & 16U) != 0;
        World().showLoadedAssets = (flags & 32U) != 0;
        if ((flags & 64U) != 0) {
            World().camera->position = World().player->position;
        }
        World().camera->zoom = (flags & 128U) != 0 ? 11.0f : 0.02f;
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
    Jumper(data, size).Play();
    return 0;
}
