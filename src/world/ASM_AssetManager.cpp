#include "world/ASM_AssetManager.h"

#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/DebugText.h"

#include <utility>

namespace {

// Draws a line per record in use and returns the number of the line below them.
template <typename Record>
std::int32_t DrawListing(const RecordTable<Record>& table, const char* format,
                         Vec2i (*decode)(std::int32_t), std::int32_t line) {
    for (const auto& [id, count] : table.GetRefs()) {
        const Vec2i coords = decode(id);
        DrawDebugLine(line, format, id, coords.x, coords.y, static_cast<int>(count));
        ++line;
    }
    return line;
}

} // namespace

bool ASM_AssetManager::Init() {
    dungeons.Fill(dungeonPoolSize);
    clusters.Fill(clusterPoolSize);
    GEN_DungeonGenerator::GetInstance()->countNeighbors = [](const GridKey& cellKey) {
        return ASM_AssetManager::GetInstance()->GetNeighbors(cellKey).size();
    };
    return true;
}

ClusterRecord* ASM_AssetManager::AcquireCluster(const GridKey& key) {
    return clusters.Acquire(key.id, 0, [&key](ClusterRecord& record) {
        GenerateCluster(ClusterKey(key.Coords()), record);
    });
}

bool ASM_AssetManager::IsLand(Vec2i cell) const {
    const ClusterRecord* cluster = clusters.Find(ClusterKeyOfCell(cell).id);
    return cluster != nullptr && cluster->LandFlag(CellKey(cell).id) == 1;
}

DungeonRecord* ASM_AssetManager::AcquireDungeon(const GridKey& cellKey, std::size_t neighborCount) {
    return dungeons.Acquire(cellKey.id, neighborCount, [&](DungeonRecord& record) {
        GEN_DungeonGenerator::GetInstance()->Generate(cellKey, neighborCount, record);
    });
}

DungeonRecord* ASM_AssetManager::AcquireDungeon(const GridKey& cellKey) {
    return AcquireDungeon(cellKey, GetNeighbors(cellKey).size());
}

void ASM_AssetManager::RebuildNeighbors(const ClusterRecord* const* records, std::int32_t count) {
    CellNeighborMap rebuilt;
    BuildNeighborGraph(records, count, rebuilt);
    const MutexLock lock(neighborLock);
    neighbors.swap(rebuilt);
}

std::vector<GridKey> ASM_AssetManager::GetNeighbors(const GridKey& cellKey) const {
    const MutexLock lock(neighborLock);
    const auto entry = neighbors.find(cellKey);
    return entry == neighbors.end() ? std::vector<GridKey>{} : entry->second;
}

void ASM_AssetManager::DrawLoadedAssets() const {
    const std::int32_t below = DrawListing(dungeons, "Dungeon %d (%d, %d) : %d", DecodeCellId, 0);
    DrawListing(clusters, "Cluster %d (%d, %d) : %d", DecodeClusterId, below);
}
