#include "entities/MapEntity.h"

#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/Colors.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace {

constexpr float kZoomStep = 0.1f;         // share of the zoom gained or lost in a tick
constexpr std::int32_t kLabelRise = 50;   // window pixels
constexpr std::int32_t kLabelWidth = 200; // window pixels

GFX_GraphicsManager& Graphics() {
    return *GFX_GraphicsManager::GetInstance();
}

// A world coordinate along one axis, `offset` world units from a cell's origin. Cells decoded from
// wrapped ids and cells on the edge of the world reach beyond 32 bits.
float WorldCoordinate(std::int32_t cellCoordinate, std::int32_t offset) {
    return static_cast<float>(std::int64_t{cellCoordinate} * kCellSize + offset);
}

Vec2f WorldPoint(Vec2i coords, Vec2i offset) {
    return {WorldCoordinate(coords.x, offset.x), WorldCoordinate(coords.y, offset.y)};
}

// The rectangle of this size with its lower left corner at a window point.
Rect RectAt(Vec2i corner, Vec2i size) {
    const std::int32_t right = SaturatingAdd(corner.x, size.x);
    const std::int32_t top = SaturatingAdd(corner.y, size.y);
    return {right, corner.x, top, corner.y, size.x, size.y};
}

// A square of twice `reach` pixels around a window point.
Rect SquareAround(Vec2i point, std::int32_t reach) {
    const Vec2i corner{SaturatingSub(point.x, reach), SaturatingSub(point.y, reach)};
    return RectAt(corner, {2 * reach, 2 * reach});
}

void DrawCross(Vec2i point, std::int32_t reach, const SDL_Color& color) {
    const Vec2i across{reach, 0};
    const Vec2i upright{0, reach};
    Graphics().DrawLine(point - across, point + across, color);
    Graphics().DrawLine(point - upright, point + upright, color);
}

} // namespace

MapEntity::MapEntity() {
    const Vec2i window{Graphics().width, Graphics().height};
    const Vec2i size = window * sizeFraction;
    const Vec2i margin = (window - size) * 0.5f;
    frame = RectAt(margin, size);
    center = margin + size * 0.5f;
}

Vec2i MapEntity::WorldToMap(Vec2i world) const {
    return ToWindow(ToVec2f(world));
}

Vec2i MapEntity::ToWindow(Vec2f world) const {
    const Vec2i offset = ToVec2i((world * worldToMap - pan) * zoom);
    return {SaturatingAdd(offset.x, center.x), SaturatingAdd(offset.y, center.y)};
}

Vec2i MapEntity::GetCenterWorldPosition() const {
    return ToVec2i(pan) * mapToWorld;
}

bool MapEntity::IsInFrame(Vec2i point) const {
    return point.x >= frame.left && point.x <= frame.right && point.y >= frame.bottom &&
           point.y <= frame.top;
}

void MapEntity::Update() {
    const float speed = detailZoom > zoom ? fastPanSpeed : slowPanSpeed;
    UpdateZoom();
    UpdatePan(speed);
}

void MapEntity::UpdateZoom() {
    if (zoom > maxZoom) {
        return;
    }
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    zoom -= zoom * kZoomStep * input.ActionValue(InputAction::ZoomOut);
    // Below the smallest normal float a tenth of it rounds to nothing, and no key would lead back.
    zoom = std::max(zoom, std::numeric_limits<float>::min());
    zoom = std::min(zoom + zoom * kZoomStep * input.ActionValue(InputAction::ZoomIn), maxZoom);
}

// Far out a step falls below the pan's precision: it comes to a stop there and stays finite.
void MapEntity::UpdatePan(float speed) {
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    pan.y += input.ActionValue(InputAction::PanVertical) * speed;
    pan.x += input.ActionValue(InputAction::PanHorizontal) * speed;
}

void MapEntity::Render() {
    Graphics().FillRect(frame, kBlue);
    Graphics().DrawRect(frame, kBlack);
    if (detailZoom > zoom) {
        RenderOverview();
    } else {
        RenderDetail();
    }
    DrawCross(center, 2, kYellow);
    const Vec2i player = WorldToMap(WorldManager::GetInstance()->player->position);
    if (IsInFrame(player)) {
        DrawCross(player, 3, kRed);
    }
}

void MapEntity::RenderOverview() const {
    for (const ClusterRecord* cluster : WorldManager::GetInstance()->cellGrid.clusters) {
        if (cluster == nullptr) {
            continue;
        }
        for (const auto& [id, land] : cluster->cells) {
            if (land == 1) {
                RenderCell(DecodeCellId(id));
            }
        }
    }
}

void MapEntity::RenderCell(Vec2i coords) const {
    const Vec2i point = ToWindow(WorldPoint(coords, {kCellSize / 2, kCellSize / 2}));
    if (!IsInFrame(point)) {
        return;
    }
    Graphics().FillRect(SquareAround(point, 5), kGreen);
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "(%d,%d)", coords.x, coords.y);
    const Rect label{point.x + kLabelWidth, point.x,    point.y + kLabelRise, point.y,
                     kLabelWidth,           -kLabelRise};
    Graphics().DrawText(text.data(), label, kWhite);
}

void MapEntity::RenderDetail() {
    marks.clear();
    const CellGrid& grid = WorldManager::GetInstance()->cellGrid;
    for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
        grid.GetEntity(slot)->ReadDungeon([this](const GridKey& key, const DungeonRecord& record) {
            AddDungeon(key.Coords(), record);
        });
    }
    for (const Mark& mark : marks) {
        Graphics().FillRect(mark.rect, mark.color);
    }
}

// Runs under a cell's record lock, so it only computes what is to be drawn afterwards.
void MapEntity::AddDungeon(Vec2i coords, const DungeonRecord& record) {
    for (const DungeonRoom& hallway : record.hallways) {
        AddArea(coords, hallway, kYellow);
    }
    for (const std::int32_t room : record.mainRooms) {
        AddArea(coords, record.Room(room), kGreen);
    }
    if (showCompasses) {
        for (const Vec2i tile : record.compassPoints) {
            const Vec2i point = ToWindow(WorldPoint(coords, tile * kTileSize));
            marks.push_back({SquareAround(point, 2), kOrange});
        }
    }
}

void MapEntity::AddArea(Vec2i coords, const DungeonRoom& room, const SDL_Color& color) {
    const Vec2i corner = ToWindow(WorldPoint(coords, room.minCorner * kTileSize));
    const Vec2i size = ToVec2i(ToVec2f(Vec2i{room.w, room.h} * kTileSize) * (zoom * worldToMap));
    marks.push_back({RectAt(corner, size), color});
}
