// The command line of vesk_atlas.
#pragma once

#include "atlas/CellView.h"
#include "gfx/Vec2.h"

#include <cstdint>
#include <optional>
#include <string>

enum class Command { Help, Version, Cell, Tour, Clusters, Tiles };

/// Which neighbour graph is drawn over a block of clusters.
enum class Graph {
    None,
    Middle, ///< of every 3 x 3 block the edges of its middle cluster's cells
    Whole,  ///< of every 3 x 3 block every edge
    Around  ///< every edge of the 3 x 3 block around one cell
};

struct Arguments {
    Command command = Command::Help;
    Vec2i first; ///< cell coordinates, of clusters the lower left one's
    Vec2i last;  ///< the upper right cluster's
    Overlays overlays;
    Graph graph = Graph::Middle;
    Vec2i graphCell;
    std::int32_t scale = 0; ///< pixels per tile, of clusters per cell
    unsigned threads = 0;
    Vec2i zooms;        ///< of tiles the first and the last
    std::string output; ///< of tiles a folder
    std::string json;   ///< empty without data
    std::string tmj;    ///< empty without a map for Tiled
};

/// The longest side of a picture, in pixels.
inline constexpr std::int32_t kLongestSide = 16384;

struct TileRange {
    Vec2i first; ///< column and row
    Vec2i last;
};

/// The pictures that show the clusters of a `tiles` command at a zoom.
TileRange TilesOf(const Arguments& arguments, std::int32_t zoom);

extern const char* const kUsage;

/// Reads the command line. Returns nothing when it is not right, with the reason in `error`.
std::optional<Arguments> ParseArguments(int count, char** words, std::string& error);
