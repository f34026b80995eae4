// Generates the dungeon of a land cell: rooms, corridors, tiles, enemy and compass points.
//
// A manager, created at start-up and destroyed at shutdown. `Generate` may run on any number of
// threads at once, for a different record each: a call's random engines and temporaries are its
// own, and it reads nothing but its arguments and the two sizes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "app/CMN_Singleton.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"

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

    /// Rewrites the record with the dungeon of the cell, using the memory of its containers again.
    /// The dungeon follows from the key's x and y (cell coordinates, y up), and the number of its
    /// compass points from neighborCount, the number of land cells that the neighbour graph joins
    /// to the cell. There are never more compass points than main rooms. Says on standard error
    /// what `Triangulate` says.
    void Generate(const GridKey& cellKey, std::size_t neighborCount, DungeonRecord& record) const;
};
