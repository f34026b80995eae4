// Generates the dungeon of a land cell: rooms, corridors, tiles, enemy and compass points.
//
// A manager, created at start-up and destroyed at shutdown. `Generate` may run on any number of
// threads at once, for a different record each: a call's random engines and temporaries are its
// own, and it reads nothing but its arguments and the fields. Free of SDL; units are tiles of the
// cell, x to the right, y up.
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

    /// How many land cells the neighbour graph joins to a cell, as the store of the graph answers
    /// it on any thread; set before anything is generated. The generator knows no store.
    std::function<std::size_t(const GridKey& cellKey)> countNeighbors;

    /// Rewrites the record with the dungeon of the cell, with a compass point for each of its
    /// neighbours as `countNeighbors` counts them now: none where nothing counts them.
    void Generate(const GridKey& cellKey, DungeonRecord& record) const;

    /// Rewrites the record with the dungeon of the cell, using the memory of its lists again. The
    /// dungeon follows from the key's x and y (cell coordinates, y up), and the number of its
    /// compass points from neighborCount. There are never more compass points than main rooms. Says
    /// on standard error what `Triangulate` says.
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

    /// Fills `hallways` from `hallwayEdges`: one straight corridor, three tiles wide, where the
    /// middle between the two centres lies beside both rooms, otherwise two that form an L. A
    /// corridor of an L can get a negative width or height; it covers no tile.
    static void BuildHallways(DungeonRecord& record);

    /// Paints the corridors and then, over them, the main rooms. The tiles must be 0 before.
    /// Whatever lies outside the cell's 512 x 512 tiles is left out.
    static void PaintTiles(DungeonRecord& record);

    /// Draws the enemies' `spawnPoints` in the main rooms; their number depends on the seed.
    static void PlaceEnemies(std::int32_t seed, Twister& rng, DungeonRecord& record);

    /// Draws so many `compassPoints`, each in another main room, while there are main rooms.
    static void PlaceCompassPoints(std::size_t neighborCount, Twister& rng, DungeonRecord& record);
};
