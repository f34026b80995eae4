// What the page's workers call: pictures of the ocean and facts about its islands.
//
// Each worker has an instance of its own. Cells come in cell coordinates, y up. What is returned is
// valid until the next call.
#include "atlas/Anchorage.h"
#include "atlas/Tiles.h"
#include "common/Arithmetic.h"

#include <emscripten.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

namespace {

constexpr std::int32_t kSearchedClusters = 3; // around a cell, each way

TilePainter& Painter() {
    static TilePainter painter;
    return painter;
}

// A bit for each layer, in the order in which the page lists them.
Layers LayersOf(unsigned bits) {
    Layers layers;
    Overlays& over = layers.overlays;
    const std::array<bool*, 11> flags{&layers.links, &layers.clusters,   &layers.grid,
                                      &layers.names, &over.rooms,        &over.hallways,
                                      &over.tree,    &over.compass,      &over.spawns,
                                      &over.border,  &over.triangulation};
    for (std::size_t i = 0; i < flags.size(); ++i) {
        *flags[i] = (bits >> i & 1) != 0;
    }
    return layers;
}

void WriteVec(std::ostream& out, Vec2i vec) {
    out << '[' << vec.x << ',' << vec.y << ']';
}

void WriteIsland(std::ostream& out, const Island& island, const DungeonRecord& dungeon) {
    std::size_t enemies = 0;
    for (const DungeonRoom& room : dungeon.rooms) {
        enemies += room.spawnPoints.size();
    }
    out << R"({"cell":)";
    WriteVec(out, island.cell);
    out << R"(,"rooms":)" << dungeon.mainRooms.size() << R"(,"corridors":)"
        << dungeon.hallways.size() << R"(,"enemies":)" << enemies << R"(,"markers":)"
        << dungeon.compassPoints.size() << R"(,"neighbors":[)";
    const char* separator = "";
    for (const Vec2i neighbor : island.neighbors) {
        out << separator;
        WriteVec(out, neighbor);
        separator = ",";
    }
    out << R"(],"anchorage":)";
    const std::optional<Vec2i> anchorage = AnchorageOf(island.cell, dungeon);
    if (anchorage) {
        WriteVec(out, *anchorage);
    } else {
        out << "null";
    }
    out << '}';
}

// Whether a way leads more in this one of the eight directions than in any other; (0, 0) takes all.
bool Leads(Vec2i way, Vec2i direction) {
    const Vec2f along = ToVec2f(way);
    const Vec2f wanted = ToVec2f(direction);
    const float product = along.x * wanted.x + along.y * wanted.y;
    const float lengths = std::hypot(along.x, along.y) * std::hypot(wanted.x, wanted.y);
    constexpr float cosineOfHalfAnEighth = 0.92387953f;
    return product >= lengths * cosineOfHalfAnEighth;
}

} // namespace

extern "C" {

/// 256 x 256 pixels of four bytes, red, green, blue and 255, rows from the top.
EMSCRIPTEN_KEEPALIVE const std::uint8_t* DrawPicture(std::int32_t zoom, std::int32_t column,
                                                     std::int32_t row, unsigned layers) {
    static std::array<std::uint8_t, std::size_t{4} * kPictureSide * kPictureSide> bytes;
    const Picture picture = Painter().Draw({zoom, column, row}, LayersOf(layers));
    auto* byte = bytes.begin();
    for (const std::uint8_t pixel : picture.Pixels()) {
        const Color color = Picture::ColorOf(pixel);
        *byte++ = color.r;
        *byte++ = color.g;
        *byte++ = color.b;
        *byte++ = 255;
    }
    return bytes.data();
}

/// The facts about the island in a cell as JSON; "null" for water.
EMSCRIPTEN_KEEPALIVE const char* DescribeIsland(std::int32_t x, std::int32_t y) {
    static std::string text;
    std::ostringstream out;
    const Island* const island = Painter().IslandAt({x, y});
    if (island == nullptr) {
        out << "null";
    } else {
        WriteIsland(out, *island, Painter().DungeonOf(*island));
    }
    text = out.str();
    return text.c_str();
}

/// The cell of the nearest other island in a direction, -1 to 1 each way, as JSON; (0, 0) takes the
/// nearest of all, the cell's own included. "null" where none is near.
EMSCRIPTEN_KEEPALIVE const char* FindIsland(std::int32_t x, std::int32_t y, std::int32_t east,
                                            std::int32_t north) {
    static std::string text;
    const Vec2i start{x, y};
    const Vec2i direction{east, north};
    std::optional<Vec2i> nearest;
    std::int64_t least = 0;
    for (std::int32_t i = -kSearchedClusters; i <= kSearchedClusters; ++i) {
        for (std::int32_t j = -kSearchedClusters; j <= kSearchedClusters; ++j) {
            for (const Island& island : Painter().IslandsOf(start / kClusterCells + Vec2i{j, i})) {
                const Vec2i way = island.cell - start;
                const std::int64_t distance =
                    std::int64_t{way.x} * way.x + std::int64_t{way.y} * way.y;
                const bool fits = distance == 0 ? direction == Vec2i{} : Leads(way, direction);
                if (fits && (!nearest || distance < least)) {
                    nearest = island.cell;
                    least = distance;
                }
            }
        }
    }
    std::ostringstream out;
    if (nearest) {
        WriteVec(out, *nearest);
    } else {
        out << "null";
    }
    text = out.str();
    return text.c_str();
}
}
