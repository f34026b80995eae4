#include "support/Pilot.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/PlayerEntity.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

namespace {

constexpr std::uint32_t kMenuRows = 9;
constexpr std::uint32_t kGoToMapLocation = 6; // row of the menu
constexpr std::uint32_t kPanTicksPerCell = 5; // zoomed out
constexpr std::uint32_t kWalkTicks = 13;      // per tile

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

bool IsHorizontal(std::size_t way) {
    return kMoves[way].x != 0;
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

bool IsLand(Vec2i cell) {
    const ClusterRecord* cluster =
        ASM_AssetManager::GetInstance()->FindCluster(ClusterKeyOfCell(cell).id);
    if (cluster == nullptr) {
        return false;
    }
    const auto flag = cluster->cells.find(CellKey(cell).id);
    return flag != cluster->cells.end() && flag->second == 1;
}

bool HasLandAround(Vec2i cell) {
    for (std::int32_t x = cell.x - 1; x <= cell.x + 2; ++x) {
        for (std::int32_t y = cell.y - 1; y <= cell.y + 1; ++y) {
            if (IsLand({x, y})) {
                return true;
            }
        }
    }
    return false;
}

// A cell of sea at the east end of the player's cluster with sea beyond the border and land near.
std::optional<Vec2i> SeaWestOfClusterBorder() {
    const Vec2i cluster = PlayerCell() / kClusterCells;
    const std::int32_t x = cluster.x * kClusterCells + kClusterCells - 1;
    for (std::int32_t row = 1; row < kClusterCells; ++row) {
        const Vec2i cell{x, cluster.y * kClusterCells + row};
        if (!IsLand(cell) && !IsLand(cell + Vec2i{1, 0}) && HasLandAround(cell)) {
            return cell;
        }
    }
    return std::nullopt;
}

} // namespace

void Pilot::PlayLeg() {
    switch (Draw(9)) {
    case 0:
        Sail();
        break;
    case 1:
    case 2:
        GoAshore();
        break;
    case 3:
        JumpToLand();
        break;
    case 4:
        Storm(2 + static_cast<int>(Draw(3)));
        break;
    case 5:
        LookAtMap();
        break;
    case 6:
        UseMenu();
        break;
    case 7:
        Shuttle(3 + static_cast<int>(Draw(4)));
        break;
    default:
        PlayWithJoystick();
        break;
    }
}

void Pilot::Sail() {
    for (int turn = 0; turn < 3; ++turn) {
        const std::size_t way = Draw(kMoveKeys.size());
        const SDL_Keycode zoom = Draw(2) == 0 ? SDLK_e : SDLK_q;
        const std::uint32_t ticks = 20 + Draw(200);
        HoldUntil(kMoveKeys[way], ticks, IsOnFoot);
        Hold(zoom, Draw(6));
        HoldUntil(kMoveKeys[way], 20 + Draw(200), IsOnFoot);
        StopAndRest();
        ReturnToBoat(IsHorizontal(way));
    }
}

// Straight onto the nearest land, some steps inland and aside, and back to the ship.
void Pilot::GoAshore() {
    for (std::size_t way = 0; way < kMoves.size(); ++way) {
        const std::uint32_t tiles = TilesToLand(kMoves[way]);
        if (tiles == 0) {
            continue;
        }
        HoldUntil(kMoveKeys[way], tiles * kWalkTicks, IsOnFoot);
        Hold(kMoveKeys[way], kWalkTicks * (1 + Draw(8)));
        StopAndRest();
        const std::size_t aside = (way + 2 + Draw(2)) % kMoves.size();
        Hold(kMoveKeys[aside], kWalkTicks * Draw(6));
        StopAndRest();
        ReturnToBoat(!IsHorizontal(way));
        return;
    }
    Sail();
}

// Not always possible: water may be in the way.
void Pilot::ReturnToBoat(bool alongXFirst) {
    bool alongX = alongXFirst;
    for (int attempt = 0; attempt < 3 && IsOnFoot(); ++attempt) {
        const Vec2i way = WorldManager::GetInstance()->anchoredBoat->position - PlayerPosition();
        const std::int32_t distance = std::abs(alongX ? way.x : way.y) / kTileSize;
        if (distance > 0 && distance < 60) {
            const SDL_Keycode horizontal = way.x > 0 ? SDLK_d : SDLK_a;
            const SDL_Keycode vertical = way.y > 0 ? SDLK_w : SDLK_s;
            HoldUntil(alongX ? horizontal : vertical,
                      static_cast<std::uint32_t>(distance) * kWalkTicks,
                      [] { return !IsOnFoot(); });
            StopAndRest();
        }
        alongX = !alongX;
    }
}

void Pilot::JumpToLand() {
    JumpTo(NearbyLand());
}

// Leaves the menu open at the button that jumps, and the map open around the player.
void Pilot::PrepareJump() {
    OpenMenuAt(kGoToMapLocation);
    StopAndRest();
    if (IsOnFoot()) { // the menu's keys may have moved the ship ashore
        CloseMenu();
        ReturnToBoat(false);
        OpenMenuAt(kGoToMapLocation);
    }
    Tap(SDLK_BACKSPACE);
}

void Pilot::JumpTo(Vec2i cell) {
    PrepareJump();
    PanByCells(cell - PlayerCell());
    Tap(SDLK_RETURN);
    Tap(SDLK_BACKSPACE);
    CloseMenu();
    StopAndRest();
}

// The jumps go one way and far enough that none ends in a cell that another has asked for: such a
// cell would read as water or land, depending on how far its load has come.
void Pilot::Storm(int jumps) {
    PrepareJump();
    const Vec2i cell = PlayerCell();
    const bool horizontal = Draw(2) == 0;
    const std::int32_t sign = (horizontal ? cell.x : cell.y) > 32 ? -1 : 1;
    for (int jump = 0; jump < jumps; ++jump) {
        const auto distance = static_cast<std::int32_t>(4 + Draw(4)) * sign;
        PanByCells(horizontal ? Vec2i{distance, 0} : Vec2i{0, distance});
        Tap(SDLK_RETURN);
    }
    Tap(SDLK_BACKSPACE);
    CloseMenu();
    StopAndRest();
}

// To and fro across the border of two clusters, before anything has been loaded there. Sea on both
// sides reads as water whether it has been loaded or not.
void Pilot::Shuttle(int jumps) {
    const std::optional<Vec2i> west = SeaWestOfClusterBorder();
    if (!west) {
        return;
    }
    PrepareJump();
    PanByCells(*west - PlayerCell());
    Tap(SDLK_RETURN);
    for (int jump = 0; jump < jumps; ++jump) {
        PanByCells({jump % 2 == 0 ? 1 : -1, 0});
        Tap(SDLK_RETURN);
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
    std::uint32_t row = Draw(kMenuRows);
    if (row == kGoToMapLocation) {
        row = 0;
    }
    OpenMenuAt(row);
    Tap(SDLK_RETURN);
    Wait(Draw(20));
    CloseMenu();
    StopAndRest();
}

void Pilot::PlayWithJoystick() {
    Axis(0, static_cast<std::int16_t>(Draw(2) == 0 ? -32768 : 32767));
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

void Pilot::Hold(SDL_Keycode key, std::uint32_t ticks) {
    Key(SDL_KEYDOWN, key);
    Wait(ticks);
    Key(SDL_KEYUP, key);
    Wait(1);
}

void Pilot::HoldUntil(SDL_Keycode key, std::uint32_t ticks, bool (*reached)()) {
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

void Pilot::CloseMenu() {
    Tap(SDLK_BACKQUOTE);
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
    for (const ClusterRecord* cluster : WorldManager::GetInstance()->cellGrid.GetClusters()) {
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
