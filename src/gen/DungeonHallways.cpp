#include "gen/DungeonHallways.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// The corridor runs from two tiles before its centre line to the tile after it.
constexpr std::int32_t kBeforeLine = 2;
constexpr std::int32_t kAfterLine = 1;

void AppendHallway(Vec2i minCorner, Vec2i maxCorner, DungeonRecord& record) {
    DungeonRoom& hallway = record.hallways.emplace_back();
    hallway.w = maxCorner.x - minCorner.x;
    hallway.h = maxCorner.y - minCorner.y;
    hallway.minCorner = minCorner;
    hallway.maxCorner = maxCorner;
}

bool InColumns(float x, const DungeonRoom& room) {
    return x >= static_cast<float>(room.minCorner.x) && x <= static_cast<float>(room.maxCorner.x);
}

bool InRows(float y, const DungeonRoom& room) {
    return y >= static_cast<float>(room.minCorner.y) && y <= static_cast<float>(room.maxCorner.y);
}

void AppendVertical(const DungeonRoom& a, const DungeonRoom& b, std::int32_t x,
                    DungeonRecord& record) {
    const bool aIsLower = a.center.y <= b.center.y;
    const DungeonRoom& lower = aIsLower ? a : b;
    const DungeonRoom& upper = aIsLower ? b : a;
    AppendHallway({x - kBeforeLine, lower.maxCorner.y}, {x + kAfterLine, upper.minCorner.y},
                  record);
}

void AppendHorizontal(const DungeonRoom& a, const DungeonRoom& b, std::int32_t y,
                      DungeonRecord& record) {
    const bool aIsLeft = a.center.x <= b.center.x;
    const DungeonRoom& left = aIsLeft ? a : b;
    const DungeonRoom& right = aIsLeft ? b : a;
    AppendHallway({left.maxCorner.x, y - kBeforeLine}, {right.minCorner.x, y + kAfterLine}, record);
}

// Along a's centre row, then along b's centre column.
void AppendCorner(const DungeonRoom& a, const DungeonRoom& b, DungeonRecord& record) {
    const std::int32_t rowMin = a.center.y - kBeforeLine;
    const std::int32_t rowMax = a.center.y + kAfterLine;
    const std::int32_t columnMin = b.center.x - kBeforeLine;
    const std::int32_t columnMax = b.center.x + kAfterLine;
    if (a.center.x < b.center.x) {
        AppendHallway({a.maxCorner.x, rowMin}, {columnMax, rowMax}, record);
    } else {
        AppendHallway({columnMin, rowMin}, {a.minCorner.x, rowMax}, record);
    }
    if (a.center.y < b.center.y) {
        AppendHallway({columnMin, rowMin}, {columnMax, b.minCorner.y}, record);
    } else {
        AppendHallway({columnMin, b.maxCorner.y}, {columnMax, rowMax}, record);
    }
}

void AppendHallways(const DungeonRoom& a, const DungeonRoom& b, DungeonRecord& record) {
    const Vec2f mid = ToVec2f(a.center + b.center) * 0.5f;
    const Vec2i line = ToVec2i(mid);
    if (InColumns(mid.x, a) && InColumns(mid.x, b)) {
        AppendVertical(a, b, line.x, record);
    } else if (InRows(mid.y, a) && InRows(mid.y, b)) {
        AppendHorizontal(a, b, line.y, record);
    } else {
        AppendCorner(a, b, record);
    }
}

// Most rows are as wide as a corridor or a room; writes of fixed sizes, which may overlap, are much
// faster there than a loop over a size that is not known beforehand.
void PaintRow(std::uint8_t* tiles, std::size_t width, std::uint8_t value) {
    if (width == kBeforeLine + kAfterLine) {
        std::memset(tiles, value, kBeforeLine + kAfterLine);
    } else if (width >= 8 && width <= 16) {
        std::memset(tiles, value, 8);
        std::memset(tiles + width - 8, value, 8);
    } else if (width >= 16 && width <= 32) {
        std::memset(tiles, value, 16);
        std::memset(tiles + width - 16, value, 16);
    } else {
        std::memset(tiles, value, width);
    }
}

// Cutting to the cell keeps every write inside the tiles, whatever rectangle comes in; one with no
// width or height has its end before its start and paints nothing.
void Paint(Vec2i minCorner, Vec2i maxCorner, std::uint8_t value, DungeonRecord& record) {
    const std::int32_t left = std::clamp(minCorner.x, 0, kCellTiles);
    const std::int32_t right = std::clamp(maxCorner.x, 0, kCellTiles);
    const std::int32_t bottom = std::clamp(minCorner.y, 0, kCellTiles);
    const std::int32_t top = std::clamp(maxCorner.y, 0, kCellTiles);
    if (left >= right) {
        return;
    }
    const std::size_t width = static_cast<std::size_t>(right - left);
    for (std::int32_t y = bottom; y < top; ++y) {
        std::uint8_t* const row = record.tiles.data() + static_cast<std::size_t>(y) * kCellTiles;
        PaintRow(row + left, width, value);
    }
}

} // namespace

void BuildHallways(DungeonRecord& record) {
    for (const DungeonEdge& edge : record.hallwayEdges) {
        AppendHallways(record.Room(edge.a), record.Room(edge.b), record);
    }
}

void PaintTiles(DungeonRecord& record) {
    for (const DungeonRoom& hallway : record.hallways) {
        Paint(hallway.minCorner, hallway.maxCorner, kTileHallway, record);
    }
    for (const std::int32_t id : record.mainRooms) {
        const DungeonRoom& room = record.Room(id);
        Paint(room.minCorner, room.maxCorner, kTileRoom, record);
    }
}
