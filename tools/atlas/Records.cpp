#include "atlas/Records.h"

#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"

#include <algorithm>

Block::Block(Vec2i cluster) {
    std::array<const ClusterRecord*, 9> pointers{};
    for (std::int32_t i = 0; i < 9; ++i) {
        ClusterRecord& record = clusters[static_cast<std::size_t>(i)];
        GenerateCluster(ClusterKey(cluster + Vec2i{i % 3 - 1, i / 3 - 1}), record);
        pointers[static_cast<std::size_t>(i)] = &record;
    }
    BuildNeighborGraph(pointers.data(), 9, neighbors);
}

std::vector<GridKey> Block::NeighborsOf(const GridKey& cell) const {
    const auto found = neighbors.find(cell);
    return found == neighbors.end() ? std::vector<GridKey>() : found->second;
}

bool Block::IsLand(const GridKey& cell) const {
    return std::any_of(clusters.begin(), clusters.end(), [&cell](const ClusterRecord& cluster) {
        const auto flag = cluster.cells.find(cell.id);
        return flag != cluster.cells.end() && flag->second == 1;
    });
}

Cell GenerateCell(Vec2i coordinates, const Block& block) {
    Cell cell;
    cell.key = CellKey(coordinates);
    cell.neighbors = block.NeighborsOf(cell.key);
    if (IsInWorld(coordinates) && block.IsLand(cell.key)) {
        cell.dungeon = std::make_unique<DungeonRecord>();
        GEN_DungeonGenerator().Generate(cell.key, cell.neighbors.size(), *cell.dungeon);
    }
    return cell;
}
