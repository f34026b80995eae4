// What the page's workers call: pictures of the ocean and facts about its islands.
//
// Each worker has an instance of its own. Cells come in cell coordinates, y up. Texts are JSON.
// What is returned is valid until the next call.
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
#include <string>
#include <utility>
#include <vector>

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

// In the same order.
std::vector<Color> LayerColors() {
    std::vector<Color> colors{Picture::GraphColor()};
    for (const Tone tone :
         {Tone::Grid, Tone::SeaShade, Tone::Label, Tone::Rooms, Tone::Hallways, Tone::Tree,
          Tone::Compass, Tone::Spawns, Tone::Border, Tone::Triangulation}) {
        colors.push_back(Picture::ColorOf(tone));
    }
    return colors;
}

// JSON, kept until the next call.
const char* Keep(std::string text) {
    static std::string kept;
    kept = std::move(text);
    return kept.c_str();
}

std::string TextOf(const std::optional<Vec2i>& vec) {
    return vec ? "[" + std::to_string(vec->x) + "," + std::to_string(vec->y) + "]" : "null";
}

template <typename Things, typename Call>
std::string ListOf(const Things& things, const Call& textOf) {
    std::string list;
    for (const auto& thing : things) {
        list += list.empty() ? "[" : ",";
        list += textOf(thing);
    }
    return list.empty() ? "[]" : list + "]";
}

std::string TextOf(const Island& island, const DungeonRecord& dungeon) {
    std::size_t enemies = 0;
    for (const DungeonRoom& room : dungeon.rooms) {
        enemies += room.spawnPoints.size();
    }
    std::string text = R"({"rooms":)" + std::to_string(dungeon.mainRooms.size());
    text += R"(,"hallways":)" + std::to_string(dungeon.hallwayEdges.size());
    text += R"(,"enemies":)" + std::to_string(enemies);
    text += R"(,"markers":)" + std::to_string(dungeon.compassPoints.size());
    text += R"(,"neighbors":)" + ListOf(island.neighbors, [](Vec2i cell) { return TextOf(cell); });
    text += R"(,"anchorage":)" + TextOf(AnchorageOf(island.cell, dungeon));
    return text + '}';
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

/// The sea's colour and those of the layers, in the order of their bits: a list of texts.
EMSCRIPTEN_KEEPALIVE const char* DescribeColors() {
    std::vector<Color> colors = LayerColors();
    colors.insert(colors.begin(), Picture::ColorOf(Tone::Sea));
    return Keep(ListOf(colors, [](Color color) { return '"' + TextOf(color) + '"'; }));
}

/// The facts about the island in a cell; null for water.
EMSCRIPTEN_KEEPALIVE const char* DescribeIsland(std::int32_t x, std::int32_t y) {
    const Island* const island = Painter().IslandAt({x, y});
    return Keep(island == nullptr ? "null" : TextOf(*island, Painter().DungeonOf(*island)));
}

/// The cell of the nearest other island in a direction, -1 to 1 each way; (0, 0) takes the nearest
/// of all, the cell's own included. Null where none is near.
EMSCRIPTEN_KEEPALIVE const char* FindIsland(std::int32_t x, std::int32_t y, std::int32_t east,
                                            std::int32_t north) {
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
    return Keep(TextOf(nearest));
}
}
