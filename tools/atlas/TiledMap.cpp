#include "atlas/TiledMap.h"

#include "atlas/Picture.h"

#include <nlohmann/json.hpp>

#include <string>

using Json = nlohmann::ordered_json;

namespace {

// Puts a map together. Its objects are measured in world units from the upper left corner, y down.
class TiledMap {
public:
    explicit TiledMap(const DungeonRecord& theDungeon) : dungeon(theDungeon) {}

    Json Make(const GridKey& key) {
        AddRooms();
        AddHallways();
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
                {"backgroundcolor", TextOf(Picture::ColorOf(Tone::Sea))},
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
        AddLayer("rooms", Tone::Room, rooms);
    }

    void AddHallways() {
        Json hallways = Json::array();
        for (const DungeonRoom& hallway : dungeon.hallways) {
            if (CoversTiles(hallway)) {
                hallways.push_back(Rectangle("hallway", hallway));
            }
        }
        AddLayer("hallways", Tone::Hallway, hallways);
    }

    void AddMarkers() {
        Json markers = Json::array();
        for (const Vec2i& tile : dungeon.compassPoints) {
            markers.push_back(Point("marker", tile));
        }
        AddLayer("markers", Tone::Compass, markers);
    }

    void AddEnemies() {
        Json enemies = Json::array();
        for (const DungeonRoom& room : dungeon.rooms) {
            for (const Vec2i& tile : room.spawnPoints) {
                enemies.push_back(Point("enemy", tile));
            }
        }
        AddLayer("enemies", Tone::Spawns, enemies);
    }

    void AddLayer(const char* name, Tone color, const Json& objects) {
        layers.push_back({{"type", "objectgroup"},
                          {"id", layers.size() + 1},
                          {"name", name},
                          {"color", TextOf(Picture::ColorOf(color))},
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
