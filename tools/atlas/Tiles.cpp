#include "atlas/Tiles.h"

#include "ClusterBlock.h"
#include "atlas/Records.h"
#include "gen/GEN_DungeonGenerator.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace {

constexpr std::int32_t kNamedClustersZoom = 3;
constexpr std::int32_t kCellBordersZoom = 5;
constexpr std::int32_t kShapesZoom = 6;
constexpr std::int32_t kTilesZoom = 9;
constexpr std::int32_t kTileBordersZoom = 12;

// One picture in the making.
class TileScene {
public:
    TileScene(TilePainter& thePainter, const PicturePlace& place, const Layers& theLayers)
        : painter(thePainter), layers(theLayers), zoom(place.zoom),
          side(1 << place.zoom), origin{place.column * kPictureSide, place.row * kPictureSide},
          firstCell{std::max(origin.x / side, 0), std::max(origin.y / side, 0)},
          lastCell{std::min((origin.x + kPictureSide - 1) / side, kLastCell),
                   std::min((origin.y + kPictureSide - 1) / side, kLastCell)},
          picture(kPictureSide, kPictureSide) {}

    Picture Draw() {
        const Vec2i first = firstCell / kClusterCells;
        const Vec2i last = lastCell / kClusterCells;
        ForEach(first, last, [this](Vec2i cluster) { DrawSea(cluster); });
        if (zoom >= kShapesZoom) {
            DrawLinks(first, last); // islands lie above
        }
        const Vec2i beyond = Vec2i{1, 1} * (zoom < kTilesZoom ? 1 : 0); // whose shoals may reach in
        ForEach((firstCell - beyond) / kClusterCells, (lastCell + beyond) / kClusterCells,
                [this, beyond](Vec2i cluster) {
                    for (const Island& island : painter.IslandsOf(cluster)) {
                        if (IsWithin(island.cell, firstCell - beyond, lastCell + beyond)) {
                            DrawIsland(island);
                        }
                    }
                });
        if (zoom < kShapesZoom) {
            DrawLinks(first, last); // squares and names let no line through
        }
        ForEach(first, last, [this](Vec2i cluster) { DrawNames(cluster); });
        return std::move(picture);
    }

private:
    template <typename Call>
    static void ForEach(Vec2i first, Vec2i last, const Call& call) {
        for (std::int32_t y = first.y; y <= last.y; ++y) {
            for (std::int32_t x = first.x; x <= last.x; ++x) {
                call(Vec2i{x, y});
            }
        }
    }

    static bool IsWithin(Vec2i cell, Vec2i first, Vec2i last) {
        return cell.x >= first.x && cell.x <= last.x && cell.y >= first.y && cell.y <= last.y;
    }

    // The upper left pixel of a cell.
    Vec2i CornerOf(Vec2i cell) const {
        return {cell.x * side - origin.x, origin.y + kPictureSide - (cell.y + 1) * side};
    }

    // The pixels of the cells from one to another, both included.
    Area AreaOf(Vec2i first, Vec2i last) const {
        const Vec2i corner = CornerOf({first.x, last.y});
        return {corner.x, corner.y, (last.x - first.x + 1) * side, (last.y - first.y + 1) * side};
    }

    void DrawSea(Vec2i cluster) {
        const Vec2i first = cluster * kClusterCells;
        const Area area = AreaOf(first, LastCellOf(cluster));
        const bool shaded =
            layers.clusters && zoom < kTilesZoom && (cluster.x + cluster.y) % 2 != 0;
        picture.Fill(area, shaded ? Tone::SeaShade : Tone::Sea);
        const Tone line = shaded ? Tone::Sea : Tone::SeaShade;
        if (layers.grid && zoom >= kTileBordersZoom) {
            DrawGrid(area, side / kCellTiles, line);
        } else if (layers.grid && zoom >= kCellBordersZoom) {
            DrawGrid(area, side, line);
        }
        if (layers.clusters) {
            DrawCorner(area, Tone::Grid);
        }
    }

    // The upper and left borders of the squares of an area, given their side in pixels.
    void DrawGrid(Area area, std::int32_t pitch, Tone tone) {
        const Vec2i begin{std::max(area.x, area.x % pitch), std::max(area.y, area.y % pitch)};
        for (std::int32_t x = begin.x; x < std::min(area.x + area.w, kPictureSide); x += pitch) {
            picture.Fill({x, area.y, 1, area.h}, tone);
        }
        for (std::int32_t y = begin.y; y < std::min(area.y + area.h, kPictureSide); y += pitch) {
            picture.Fill({area.x, y, area.w, 1}, tone);
        }
    }

    // The upper and the left border of an area.
    void DrawCorner(Area area, Tone tone) {
        picture.Fill({area.x, area.y, area.w, 1}, tone);
        picture.Fill({area.x, area.y, 1, area.h}, tone);
    }

    void DrawIsland(const Island& island) {
        const Area area = AreaOf(island.cell, island.cell);
        if (zoom < kShapesZoom) {
            picture.Fill(area, Tone::Land);
            if (side > 6) {
                picture.Outline(area, Tone::Shore);
            }
            return;
        }
        const CellView view(picture, {area.x, area.y}, side);
        const DungeonRecord& dungeon = painter.DungeonOf(island);
        if (zoom < kTilesZoom) {
            view.DrawShapes(dungeon);
        } else {
            view.DrawTiles(dungeon);
            if (layers.grid && zoom >= kTileBordersZoom) {
                view.DrawTileBorders(dungeon);
            }
        }
        view.DrawOverlays(dungeon, layers.overlays);
    }

    // A line of a cluster's island ends in the eight clusters around that one.
    void DrawLinks(Vec2i first, Vec2i last) {
        if (!layers.links) {
            return;
        }
        const float width = std::min(static_cast<float>(side) / 16.0f, 1.5f);
        ForEach(first - Vec2i{1, 1}, last + Vec2i{1, 1}, [this, width](Vec2i cluster) {
            for (const Island& island : painter.IslandsOf(cluster)) {
                for (const Vec2i& neighbor : island.neighbors) {
                    picture.GraphLine(MiddleOf(island.cell), MiddleOf(neighbor), width);
                }
            }
        });
    }

    Vec2i MiddleOf(Vec2i cell) const { return CornerOf(cell) + Vec2i{side / 2, side / 2}; }

    void DrawNames(Vec2i cluster) {
        if (layers.clusters && zoom >= kNamedClustersZoom) {
            DrawName(CornerOf({cluster.x * kClusterCells, LastCellOf(cluster).y}), cluster,
                     zoom > kNamedClustersZoom ? 2 : 1);
        }
        if (layers.names && zoom >= kShapesZoom) {
            for (const Island& island : painter.IslandsOf(cluster)) {
                DrawName(CornerOf(island.cell), island.cell, zoom > kShapesZoom ? 2 : 1);
            }
        }
    }

    void DrawName(Vec2i corner, Vec2i coordinates, std::int32_t dot) {
        picture.Text(corner + Vec2i{3 * dot, 3 * dot},
                     std::to_string(coordinates.x) + "," + std::to_string(coordinates.y), dot);
    }

    TilePainter& painter;
    const Layers& layers;
    std::int32_t zoom;
    std::int32_t side; // of a cell, pixels
    Vec2i origin;      // the picture's lower left corner, in pixels from the world's
    Vec2i firstCell;   // those that show
    Vec2i lastCell;
    Picture picture;
};

// The record without the sea, which is most of it.
ClusterRecord MakeLand(Vec2i cluster) {
    ClusterRecord record;
    GenerateCluster(ClusterKey(cluster), record);
    std::erase_if(record.cells, [](const auto& cell) { return cell.second == 0; });
    return record;
}

Island MakeIsland(Vec2i cell, const std::vector<GridKey>& neighbors) {
    Island island{cell, {}, neighbors.size()};
    for (const GridKey& neighbor : neighbors) {
        const Vec2i place = CellOfId(neighbor.id, cell);
        if (IsLinkSeen(cell, place)) {
            island.neighbors.push_back(place);
        }
    }
    return island;
}

bool IsClusterInWorld(Vec2i cluster) {
    return cluster.x >= 0 && cluster.x <= kLastCluster && cluster.y >= 0 &&
           cluster.y <= kLastCluster;
}

} // namespace

bool HoldsWorld(const PicturePlace& place) {
    const auto holds = [&place](std::int64_t number) {
        return number >= 0 && (number * kPictureSide >> place.zoom) <= kLastCell;
    };
    return holds(place.column) && holds(place.row);
}

Picture TilePainter::Draw(const PicturePlace& place, const Layers& layers) {
    if (!HoldsWorld(place)) {
        return {kPictureSide, kPictureSide};
    }
    return TileScene(*this, place, layers).Draw();
}

const std::vector<Island>& TilePainter::IslandsOf(Vec2i cluster) {
    static const std::vector<Island> none;
    if (!IsClusterInWorld(cluster)) {
        return none;
    }
    return clusters.At(cluster, [this, cluster] { return MakeIslands(cluster); });
}

std::vector<Island> TilePainter::MakeIslands(Vec2i cluster) {
    std::array<const ClusterRecord*, 9> block{};
    for (std::int32_t i = 0; i < 9; ++i) {
        const Vec2i place = ClusterInBlock(cluster, i);
        block[static_cast<std::size_t>(i)] = &land.At(place, [place] { return MakeLand(place); });
    }
    CellNeighborMap neighbors;
    BuildNeighborGraph(block.data(), 9, neighbors);
    std::vector<Island> islands;
    for (std::int32_t i = 0; i < kClusterCells * kClusterCells; ++i) {
        const Vec2i cell = cluster * kClusterCells + Vec2i{i % kClusterCells, i / kClusterCells};
        const GridKey key = CellKey(cell);
        if (IsInWorld(cell) && block[4]->LandFlag(key.id) == 1) {
            islands.push_back(MakeIsland(cell, neighbors[key]));
        }
    }
    return islands;
}

const Island* TilePainter::IslandAt(Vec2i cell) {
    if (!IsInWorld(cell)) {
        return nullptr;
    }
    const std::vector<Island>& islands = IslandsOf(cell / kClusterCells);
    const auto found = std::find_if(islands.begin(), islands.end(),
                                    [cell](const Island& island) { return island.cell == cell; });
    return found == islands.end() ? nullptr : &*found;
}

const DungeonRecord& TilePainter::DungeonOf(const Island& island) {
    return *dungeons.At(island.cell, [&island] {
        auto dungeon = std::make_unique<DungeonRecord>();
        GEN_DungeonGenerator().Generate(CellKey(island.cell), island.links, *dungeon);
        return dungeon;
    });
}
