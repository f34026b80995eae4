// Generates the dungeon of a land cell: rooms, hallways, tiles, enemy and compass points.
//
// A manager, created at start-up and destroyed at shutdown. `Generate` may run on any number of
// threads at once, each with a record of its own: random engines and temporaries belong to the
// call, and the fields are only read. Free of SDL; units are tiles of the cell, x to the right, y
// up.
#pragma once

#include "app/CMN_Singleton.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gen/Random.h"

#include <cstddef>
#include <cstdint>
#include <functional>

class GEN_DungeonGenerator : public CMN_Singleton<GEN_DungeonGenerator> {
public:
    std::int32_t maxRoomSize = 25; ///< tiles; changed only while nothing is generated
    std::int32_t minRoomSize = 3;

    /// Returns a cell's number of neighbours. The world data store sets it at start-up, because the
    /// generator knows no store; any thread may call it.
    std::function<std::size_t(const GridKey& cellKey)> countNeighbors;

    /// Generates with the number of neighbours that `countNeighbors` returns now, or 0 when it is
    /// not set.
    void Generate(const GridKey& cellKey, DungeonRecord& record) const;

    /// Rewrites the record with the dungeon of the cell; its lists keep their memory. The key's x
    /// and y (cell coordinates, y up) decide the dungeon. It gets neighborCount compass points, but
    /// at most one for each main room. Writes the lines of `Triangulate` on standard error.
    void Generate(const GridKey& cellKey, std::size_t neighborCount, DungeonRecord& record) const;

    // The steps of Generate, in their order. Each works on what those before it have filled in.

    /// Makes 100 attempts to place a room at random, at least one empty tile away from every other;
    /// fills `rooms` and `mainRooms`.
    void PlaceRooms(Twister rng, DungeonRecord& record) const;

    /// Triangulates the main rooms' centres; fills `edges` and `adjacency`.
    static void TriangulateMainRooms(DungeonRecord& record);

    /// Fills `hallwayEdges` with the edges of a minimum spanning tree, grown from the first main
    /// room by the shortest edge that leaves the tree, the first in `edges` of equally long ones.
    static void BuildSpanningTree(DungeonRecord& record);

    /// Adds to `hallwayEdges` three more edges for every ten of the tree, rounded up: the first in
    /// `edges` that are not there yet. An edge counts as new when only its reverse is there.
    static void AddExtraEdges(DungeonRecord& record);

    /// Fills `hallways` from `hallwayEdges`: one straight hallway, three tiles wide, where the
    /// middle between the two centres lies beside both rooms, otherwise two that form an L. A
    /// hallway of an L can get a negative width or height; it covers no tile.
    static void BuildHallways(DungeonRecord& record);

    /// Paints the hallways and, over them, the main rooms, cut to the cell's 512 x 512 tiles. The
    /// tiles must be 0 before.
    static void PaintTiles(DungeonRecord& record);

    /// Draws the enemies' `spawnPoints` in the main rooms; their number depends on the seed.
    static void PlaceEnemies(std::int32_t seed, Twister& rng, DungeonRecord& record);

    /// Draws neighborCount `compassPoints`, each in another main room, or one for every main room.
    static void PlaceCompassPoints(std::size_t neighborCount, Twister& rng, DungeonRecord& record);
};
