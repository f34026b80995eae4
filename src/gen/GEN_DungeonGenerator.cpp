#include "gen/GEN_DungeonGenerator.h"

#include <algorithm>
#include <vector>

#include "gen/DungeonEdges.h"
#include "gen/DungeonHallways.h"
#include "gen/DungeonRooms.h"
#include "gen/Twister.h"
#include "gen/UniformInt.h"

namespace {

constexpr std::int32_t kTilesPerEnemy = 20;

// Everything but the rooms and the adjacency, which their steps overwrite in place.
void ClearRecord(DungeonRecord& record) {
    record.edges.clear();
    record.mainRooms.clear();
    record.hallwayEdges.clear();
    record.hallways.clear();
    record.compassPoints.clear();
    record.tiles.fill(kTileEmpty);
}

// Draws tiles of a room, x before y.
class TileDraw {
public:
    explicit TileDraw(const DungeonRoom& room)
        : columns(room.minCorner.x, room.minCorner.x + room.w - 1),
          rows(room.minCorner.y, room.minCorner.y + room.h - 1) {}

    Vec2i operator()(Twister& rng) const {
        const std::int32_t x = columns(rng);
        return {x, rows(rng)};
    }

private:
    UniformRange columns;
    UniformRange rows;
};

void PlaceEnemies(std::int32_t seed, Twister& rng, DungeonRecord& record) {
    for (const std::int32_t id : record.mainRooms) {
        DungeonRoom& room = record.Room(id);
        const std::int32_t most = room.w * room.h / kTilesPerEnemy;
        const std::int32_t count = most > 0 ? std::max(seed % most, 0) : 0;
        room.spawnPoints.resize(static_cast<std::size_t>(count));
        const TileDraw draw(room);
        for (Vec2i& point : room.spawnPoints) {
            point = draw(rng);
        }
    }
}

// Floyd's sampling: each set of `count` main rooms is as likely as any other.
std::vector<std::int32_t> ChooseRooms(std::size_t count, const std::vector<std::int32_t>& rooms,
                                      Twister& rng) {
    std::vector<std::int32_t> chosen;
    chosen.reserve(count);
    for (std::size_t j = rooms.size() - count; j < rooms.size(); ++j) {
        const std::int32_t r = UniformInt(rng, 0, static_cast<std::int32_t>(j));
        const std::int32_t drawn = rooms[static_cast<std::size_t>(r)];
        const bool taken = std::find(chosen.begin(), chosen.end(), drawn) != chosen.end();
        chosen.push_back(taken ? rooms[j] : drawn);
    }
    return chosen;
}

void PlaceCompassPoints(std::size_t neighborCount, Twister& rng, DungeonRecord& record) {
    const std::size_t count = std::min(neighborCount, record.mainRooms.size());
    for (const std::int32_t id : ChooseRooms(count, record.mainRooms, rng)) {
        record.compassPoints.push_back(TileDraw(record.Room(id))(rng));
    }
}

} // namespace

void GEN_DungeonGenerator::Generate(const GridKey& cellKey, DungeonRecord& record) const {
    Generate(cellKey, countNeighbors ? countNeighbors(cellKey) : 0, record);
}

void GEN_DungeonGenerator::Generate(const GridKey& cellKey, std::size_t neighborCount,
                                    DungeonRecord& record) const {
    ClearRecord(record);
    const std::int32_t seed = CellKey(cellKey.Coords()).id;
    // Both engines start from the seed, so the second repeats the numbers that placed the rooms.
    Twister rng(static_cast<std::uint32_t>(seed));
    Twister roomRng = rng;

    std::vector<DelaunayPoint> centres = PlaceRooms({minRoomSize, maxRoomSize}, roomRng, record);
    TriangulateMainRooms(centres, record);
    BuildSpanningTree(record);
    AddExtraEdges(record);
    BuildHallways(record);
    PaintTiles(record);
    PlaceEnemies(seed, rng, record);
    PlaceCompassPoints(neighborCount, rng, record);
}
