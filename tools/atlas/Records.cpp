#include "atlas/Records.h"

#include "gen/GEN_DungeonGenerator.h"

#include <algorithm>

Vec2i CellOfId(std::int32_t id, Vec2i near) {
    const std::int32_t apart = WrapSub(id, CellKey(near).id);
    const std::int32_t half = kCellIdFactor / 2;
    const std::int32_t rows = WrapAdd(apart, apart < 0 ? -half : half) / kCellIdFactor;
    return near + Vec2i{apart - rows * kCellIdFactor, rows};
}

Block::Block(Vec2i cluster) : block(cluster), neighbors(block.Neighbors()) {}

std::vector<GridKey> Block::NeighborsOf(const GridKey& cell) const {
    const auto found = neighbors.find(cell);
    return found == neighbors.end() ? std::vector<GridKey>() : found->second;
}

bool Block::IsLand(const GridKey& cell) const {
    return std::any_of(
        block.clusters.begin(), block.clusters.end(),
        [&cell](const ClusterRecord& cluster) { return cluster.LandFlag(cell.id) == 1; });
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
