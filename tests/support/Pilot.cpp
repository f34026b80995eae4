#include "support/Pilot.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/PlayerEntity.h"
#include "world/WorldManager.h"

#include <array>
#include <cstdlib>

namespace {

constexpr std::uint32_t kMenuRows = 9;
constexpr std::uint32_t kGoToMapLocation = 6; // row of the menu
constexpr std::uint32_t kPanTicksPerCell = 5; // zoomed out
constexpr std::uint32_t kWalkTicks = 13;      // per tile

// The first two are vertical.
constexpr std::array<SDL_Keycode, 4> kMoveKeys{SDLK_w, SDLK_s, SDLK_a, SDLK_d};
constexpr std::array<Vec2i, 4> kMoves{Vec2i{0, 1}, Vec2i{0, -1}, Vec2i{-1, 0}, Vec2i{1, 0}};

Vec2i PlayerPosition() {
    return WorldManager::GetInstance()->player->position;
}

Vec2i PlayerCell() {
    return PlayerPosition() / kCellSize;
}

bool IsOnFoot() {
    return WorldManager::GetInstance()->player->mode == PlayerEntity::kOnFoot;
}

bool IsAtSea() {
    return !IsOnFoot();
}

// Tiles to the nearest land straight ahead, 0 when there is none within reach.
std::uint32_t TilesToLand(Vec2i move) {
    // Stays within the cells around the player's.
    const std::int32_t reach = IsOnFoot() ? 30 : 180;
    for (std::int32_t tiles = 1; tiles <= reach; ++tiles) {
        const Vec2i place = PlayerPosition() + move * (tiles * kTileSize);
        if (WorldManager::GetInstance()->GetTileAt(place) != kTileEmpty) {
            return static_cast<std::uint32_t>(tiles);
        }
    }
    return 0;
}

} // namespace

void Pilot::PlayLeg() {
    constexpr std::array<void (Pilot::*)(), 8> legs{
        &Pilot::Sail,  &Pilot::GoAshore,  &Pilot::GoAshore, &Pilot::JumpToLand,
        &Pilot::Storm, &Pilot::LookAtMap, &Pilot::UseMenu,  &Pilot::PlayWithJoystick};
    (this->*legs[Draw(legs.size())])();
}

void Pilot::Sail() {
    for (int turn = 0; turn < 3; ++turn) {
        const std::size_t way = Draw(kMoveKeys.size());
        Hold(kMoveKeys[way], 20 + Draw(400), IsOnFoot);
        Hold(Draw(2) == 0 ? SDLK_e : SDLK_q, Draw(6));
        StopAndRest();
        ReturnToBoat(kMoves[way].x != 0);
    }
}

// Straight onto the nearest land, some steps inland and aside, and back to the ship.
void Pilot::GoAshore() {
    for (std::size_t way = 0; way < kMoves.size(); ++way) {
        const std::uint32_t tiles = TilesToLand(kMoves[way]);
        if (tiles == 0) {
            continue;
        }
        Hold(kMoveKeys[way], tiles * kWalkTicks, IsOnFoot);
        Hold(kMoveKeys[way], kWalkTicks * (1 + Draw(8)));
        StopAndRest();
        const std::size_t aside = (way + 2 + Draw(2)) % kMoves.size();
        Hold(kMoveKeys[aside], kWalkTicks * Draw(6));
        StopAndRest();
        ReturnToBoat(kMoves[aside].x != 0);
        return;
    }
    Sail();
}

// First along one axis, then along the other. Not always possible: water may be in the way.
void Pilot::ReturnToBoat(bool alongX) {
    for (int attempt = 0; attempt < 3 && IsOnFoot(); ++attempt) {
        const Vec2i way = WorldManager::GetInstance()->anchoredBoat->position - PlayerPosition();
        const std::int32_t distance = std::abs(alongX ? way.x : way.y) / kTileSize;
        if (distance > 0 && distance < 60) {
            const SDL_Keycode horizontal = way.x > 0 ? SDLK_d : SDLK_a;
            const SDL_Keycode vertical = way.y > 0 ? SDLK_w : SDLK_s;
            Hold(alongX ? horizontal : vertical, static_cast<std::uint32_t>(distance) * kWalkTicks,
                 IsAtSea);
            StopAndRest();
        }
        alongX = !alongX;
    }
}

void Pilot::JumpToLand() {
    Jump({NearbyLand()});
}

// Several jumps before anything has been loaded. They go one way and far enough that none ends in a
// cell that another has asked for: such a cell would read as water or land, depending on how far
// its load has come.
void Pilot::Storm() {
    Vec2i cell = PlayerCell();
    const bool horizontal = Draw(2) == 0;
    const std::int32_t sign = (horizontal ? cell.x : cell.y) > 32 ? -1 : 1;
    std::vector<Vec2i> cells(2 + Draw(3));
    for (Vec2i& next : cells) {
        const std::int32_t distance = static_cast<std::int32_t>(4 + Draw(4)) * sign;
        cell = cell + (horizontal ? Vec2i{distance, 0} : Vec2i{0, distance});
        next = cell;
    }
    Jump(cells);
}

// By the menu's button, with the map to aim.
void Pilot::Jump(const std::vector<Vec2i>& cells) {
    OpenMenuAt(kGoToMapLocation);
    StopAndRest();
    if (IsOnFoot()) { // the menu's keys may have moved the ship ashore
        CloseMenu();
        ReturnToBoat(false);
        OpenMenuAt(kGoToMapLocation);
    }
    Tap(SDLK_BACKSPACE);
    Vec2i from = PlayerCell();
    for (const Vec2i& cell : cells) {
        PanByCells(cell - from);
        Tap(SDLK_RETURN);
        from = cell;
    }
    Tap(SDLK_BACKSPACE);
    CloseMenu();
    StopAndRest();
}

void Pilot::LookAtMap() {
    Tap(SDLK_BACKSPACE);
    Hold(Draw(2) == 0 ? SDLK_RIGHT : SDLK_UP, Draw(40));
    Hold(SDLK_e, 25); // into the detailed view
    Hold(Draw(2) == 0 ? SDLK_LEFT : SDLK_DOWN, Draw(40));
    Hold(SDLK_q, 20);
    Tap(SDLK_BACKSPACE);
    StopAndRest();
}

void Pilot::UseMenu() {
    const std::uint32_t row = Draw(kMenuRows);
    OpenMenuAt(row == kGoToMapLocation ? 0 : row);
    Tap(SDLK_RETURN);
    Wait(Draw(20));
    CloseMenu();
    StopAndRest();
}

void Pilot::PlayWithJoystick() {
    Axis(0, Draw(2) == 0 ? -32768 : 32767);
    Wait(Draw(150));
    Axis(1, static_cast<std::int16_t>(random()));
    Axis(0, 0);
    Wait(Draw(150));
    Axis(1, 0);
    Axis(4, 12000);
    Wait(Draw(5));
    Axis(4, -32768);
    StopAndRest();
    ReturnToBoat(false);
}

void Pilot::Key(std::uint32_t type, SDL_Keycode key) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    controls.Push(event);
}

void Pilot::Wait(std::uint32_t ticks) {
    for (std::uint32_t i = 0; i < ticks; ++i) {
        controls.Tick();
    }
}

void Pilot::Hold(SDL_Keycode key, std::uint32_t ticks, bool (*reached)()) {
    Key(SDL_KEYDOWN, key);
    for (std::uint32_t i = 0; i < ticks && !reached(); ++i) {
        Wait(1);
    }
    Key(SDL_KEYUP, key);
    Wait(1);
}

void Pilot::Axis(std::uint8_t axis, std::int16_t value) {
    SDL_Event event{};
    event.type = SDL_JOYAXISMOTION;
    event.jaxis.axis = axis;
    event.jaxis.value = value;
    controls.Push(event);
}

void Pilot::StopAndRest() {
    Wait(kWalkTicks + 1); // the longest that a move under way can last
    controls.Rest();
}

void Pilot::OpenMenuAt(std::uint32_t row) {
    Tap(SDLK_BACKQUOTE);
    for (; menuRow < row; ++menuRow) {
        Tap(SDLK_s);
    }
    for (; menuRow > row; --menuRow) {
        Tap(SDLK_w);
    }
}

void Pilot::PanByCells(Vec2i cells) {
    const auto ticks = [](std::int32_t distance) {
        return static_cast<std::uint32_t>(std::abs(distance)) * kPanTicksPerCell;
    };
    Hold(cells.x > 0 ? SDLK_RIGHT : SDLK_LEFT, ticks(cells.x));
    Hold(cells.y > 0 ? SDLK_UP : SDLK_DOWN, ticks(cells.y));
}

Vec2i Pilot::NearbyLand() {
    std::vector<Vec2i> land;
    for (const ClusterRecord* cluster : WorldManager::GetInstance()->cellGrid.clusters) {
        if (cluster->key.x < 0 || cluster->key.y < 0) {
            continue; // nothing is loaded there, and the ids do not tell the cells
        }
        for (const auto& [id, flag] : cluster->cells) {
            if (flag == 1) {
                land.push_back(DecodeCellId(id));
            }
        }
    }
    return land.empty() ? PlayerCell() : land[Draw(static_cast<std::uint32_t>(land.size()))];
}
