#include "world/ASM_AssetManager.h"

#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"

#include <array>
#include <cstdio>
#include <utility>

namespace {

constexpr std::int32_t kListingLeft = 300;      // window pixels
constexpr std::int32_t kListingLineHeight = 15; // window pixels

// Draws a line per record in use and returns the y of the line below them.
template <typename Record>
std::int32_t DrawListing(const RecordTable<Record>& table, const char* format,
                         Vec2i (*decode)(std::int32_t), std::int32_t y) {
    for (const auto& [id, count] : table.GetRefs()) {
        const Vec2i coords = decode(id);
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), format, id, coords.x, coords.y,
                      static_cast<int>(count));
        GFX_GraphicsManager::GetInstance()->DrawTextAt(text.data(), kListingLeft, y);
        y += kListingLineHeight;
    }
    return y;
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
