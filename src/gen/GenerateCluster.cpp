#include "gen/GenerateCluster.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "gen/Twister.h"
#include "gen/UniformInt.h"

namespace {

constexpr std::size_t kCellCount = std::size_t{kClusterCells} * kClusterCells;
using CellArray = std::array<CellFlagMap::value_type, kCellCount>;

// Row by row, one accepted draw per cell.
void DrawFlags(const GridKey& key, CellArray& cells) {
    Twister rng(static_cast<std::uint32_t>(key.id));
    const Vec2i corner = key.Coords() * kClusterCells;
    std::size_t next = 0;
    for (std::int32_t row = 0; row < kClusterCells; ++row) {
        const std::int32_t rowId = CellKey(corner + Vec2i{0, row}).id;
        for (std::int32_t col = 0; col < kClusterCells; ++col) {
            const bool land = UniformInt(rng, 0, 100) <= 5;
            cells[next] = {WrapAdd(rowId, col), land ? 1 : 0};
            ++next;
        }
    }
}

// The ids ascend from cell to cell, but for one step where they may wrap to the most negative id.
void StartAtLowestId(CellArray& cells) {
    const auto wrapped = std::adjacent_find(
        cells.begin(), cells.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    if (wrapped != cells.end()) {
        std::rotate(cells.begin(), wrapped + 1, cells.end());
    }
}

} // namespace

void GenerateCluster(const GridKey& key, ClusterRecord& record) {
    CellArray cells;
    DrawFlags(key, cells);
    StartAtLowestId(cells);
    record.key = key;
    record.cells.AssignAscending(cells);
}
