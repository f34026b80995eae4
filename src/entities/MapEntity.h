// The world map: a panel over the middle of the window that shows the land cells of the clusters
// around the player or, zoomed in, the dungeons of the loaded cells.
//
// Map units: a cell is 50 wide; at zoom 1 a map unit is a window pixel. Window points here have y
// up. The world manager owns the map, which is active only in map mode. Main thread; cluster
// records are read in place, as the main thread holds them, and dungeon records under their cell's
// lock, as load jobs may replace them.
#pragma once

#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gfx/Rect.h"
#include "gfx/Vec2.h"
#include "world/IEntity.h"

#include <SDL_pixels.h>

#include <vector>

class MapEntity : public IEntity {
public:
    /// Takes frame and centre from the window's size; the graphics manager must be initialised.
    MapEntity();

    void Update() override;
    void Render() override;

    /// Where a world point (world units) appears in the window.
    Vec2i WorldToMap(Vec2i world) const;

    /// The world point under the map's centre, in world units, at whole map units.
    Vec2i GetCenterWorldPosition() const;

    float sizeFraction = 0.8f;  ///< the panel's share of the window, per axis
    Rect frame;                 ///< the panel
    Vec2i center;               ///< the window point that shows `pan`
    bool showCompasses = false; ///< show the compass points of dungeons, too
    float zoom = 1.0f;          ///< window pixels per map unit
    float maxZoom = 5.0f;
    float detailZoom = 4.0f;    ///< from here up dungeons are shown, and panning is slow
    Vec2f pan;                  ///< map units
    float fastPanSpeed = 10.0f; ///< map units per tick
    float slowPanSpeed = 2.0f;  ///< map units per tick
    float cellPixels = 50.0f;   ///< map units per cell
    float worldToMap = cellPixels / static_cast<float>(kCellSize); ///< map units per world unit
    float mapToWorld = static_cast<float>(kCellSize) / cellPixels; ///< world units per map unit

private:
    /// A filled rectangle of the detailed view.
    struct Mark {
        Rect rect;
        SDL_Color color;
    };

    void UpdateZoom();
    void UpdatePan(float speed);
    void RenderOverview() const;
    void RenderCell(Vec2i coords) const;
    void RenderDetail();
    void AddDungeon(Vec2i coords, const DungeonRecord& record);
    void AddArea(Vec2i coords, const DungeonRoom& room, const SDL_Color& color);

    Vec2i ToWindow(Vec2f world) const;
    bool IsInFrame(Vec2i point) const;

    std::vector<Mark> marks; ///< reused by every detailed view
};
