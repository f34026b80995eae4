#include "atlas/TiledMap.h"

#include "atlas/TileColors.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>

using Json = nlohmann::ordered_json;

namespace {

// As HTML writes colours.
std::string TextOf(Color color) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "#";
    for (const int part : {color.r, color.g, color.b}) {
        text += digits[static_cast<std::size_t>(part / 16)];
        text += digits[static_cast<std::size_t>(part % 16)];
    }
    return text;
}

// Puts a map together. Its objects are measured in world units from the upper left corner, y down.
class TiledMap {
public:
    explicit TiledMap(const DungeonRecord& theDungeon) : dungeon(theDungeon) {}

    Json Make(const GridKey& key) {
        AddRooms();
        AddCorridors();
        AddMarkers();
        AddEnemies();
        return {{"type", "map"},
                {"version", "1.8"},
                {"orientation", "orthogonal"},
                {"renderorder", "right-down"},
                {"infinite", false},
                {"width", kCellTiles},
                {"height", kCellTiles},
                {"tilewidth", kTileSize},
                {"tileheight", kTileSize},
                {"backgroundcolor", TextOf(kWaterTile)},
                {"properties",
                 {Property("cellX", key.x), Property("cellY", key.y), Property("id", key.id)}},
                {"tilesets", Json::array()},
                {"layers", layers},
                {"nextlayerid", layers.size() + 1},
                {"nextobjectid", nextObject}};
    }

private:
    static Json Property(const char* name, std::int32_t value) {
        return {{"name", name}, {"type", "int"}, {"value", value}};
    }

    void AddRooms() {
        Json rooms = Json::array();
        for (const std::int32_t id : dungeon.mainRooms) {
            rooms.push_back(Rectangle("room " + std::to_string(id), dungeon.Room(id)));
        }
        AddLayer("rooms", TextOf(kRoomTile), rooms);
    }

    void AddCorridors() {
        Json corridors = Json::array();
        for (const DungeonRoom& hallway : dungeon.hallways) {
            if (hallway.w > 0 && hallway.h > 0) { // else it covers no tile
                corridors.push_back(Rectangle("corridor", hallway));
            }
        }
        AddLayer("corridors", TextOf(kHallwayTile), corridors);
    }

    void AddMarkers() {
        Json markers = Json::array();
        for (const Vec2i& tile : dungeon.compassPoints) {
            markers.push_back(Point("marker", tile));
        }
        AddLayer("markers", TextOf({255, 128, 0}), markers);
    }

    void AddEnemies() {
        Json enemies = Json::array();
        for (const DungeonRoom& room : dungeon.rooms) {
            for (const Vec2i& tile : room.spawnPoints) {
                enemies.push_back(Point("enemy", tile));
            }
        }
        AddLayer("enemies", TextOf({255, 0, 255}), enemies);
    }

    void AddLayer(const char* name, const std::string& color, const Json& objects) {
        layers.push_back({{"type", "objectgroup"},
                          {"id", layers.size() + 1},
                          {"name", name},
                          {"color", color},
                          {"draworder", "index"},
                          {"x", 0},
                          {"y", 0},
                          {"opacity", 1},
                          {"visible", true},
                          {"objects", objects}});
    }

    Json Rectangle(const std::string& name, const DungeonRoom& room) {
        const Vec2i upperLeft{room.minCorner.x, kCellTiles - room.minCorner.y - room.h};
        return Object(name, upperLeft * kTileSize, Vec2i{room.w, room.h} * kTileSize);
    }

    // The middle of a tile.
    Json Point(const std::string& name, Vec2i tile) {
        const Vec2i upperLeft{tile.x, kCellTiles - 1 - tile.y};
        Json object = Object(name, upperLeft * kTileSize + Vec2i{kTileSize / 2, kTileSize / 2}, {});
        object["point"] = true;
        return object;
    }

    Json Object(const std::string& name, Vec2i place, Vec2i size) {
        return {{"id", nextObject++}, {"name", name},  {"type", ""},
                {"x", place.x},       {"y", place.y},  {"width", size.x},
                {"height", size.y},   {"rotation", 0}, {"visible", true}};
    }

    const DungeonRecord& dungeon;
    Json layers = Json::array();
    std::int32_t nextObject = 1;
};

} // namespace

void WriteTiledMap(const Cell& cell, OutputFile& file) {
    static const DungeonRecord water;
    file.Write(TiledMap(cell.dungeon == nullptr ? water : *cell.dungeon).Make(cell.key).dump(1) +
               "\n");
}
