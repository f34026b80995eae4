// The command line of vesk_atlas.
#pragma once

#include "atlas/CellView.h"
#include "gfx/Vec2.h"

#include <cstdint>
#include <optional>
#include <string>

enum class Command { Help, Cell, Clusters, Tour };

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
    std::string output;
    std::string json; ///< empty without data
};

/// The longest side of a picture, in pixels.
inline constexpr std::int32_t kLongestSide = 16384;

extern const char* const kUsage;

/// Reads the command line. Returns nothing when it is not right, with the reason in `error`.
std::optional<Arguments> ParseArguments(int count, char** words, std::string& error);
