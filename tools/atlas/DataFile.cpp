#include "atlas/DataFile.h"

#include <nlohmann/json.hpp>

#include <cstddef>

using Json = nlohmann::ordered_json;

// Goes up when what is there changes its name, place or meaning.
static constexpr int kDataVersion = 1;

// The library finds these by their names and their arguments' types.

static void to_json(Json& json, const Vec2i& point) {
    json = {{"x", point.x}, {"y", point.y}};
}

static void to_json(Json& json, const GridKey& key) {
    json = {{"x", key.x}, {"y", key.y}, {"id", key.id}};
}

static void to_json(Json& json, const DungeonRoom& room) {
    json = {{"x", room.x},
            {"y", room.y},
            {"w", room.w},
            {"h", room.h},
            {"center", room.center},
            {"minCorner", room.minCorner},
            {"maxCorner", room.maxCorner},
            {"spawnPoints", room.spawnPoints}};
}

static void to_json(Json& json, const DungeonEdge& edge) {
    json = {{"a", edge.a}, {"b", edge.b}, {"lengthSquared", edge.lengthSquared}};
}

// The tiles row by row from the south, each row as a text of 512 digits.
static Json TileRows(const DungeonRecord& record) {
    Json rows = Json::array();
    for (std::int32_t y = 0; y < kCellTiles; ++y) {
        std::string row;
        for (std::int32_t x = 0; x < kCellTiles; ++x) {
            row += static_cast<char>('0' + record.TileAt(x, y));
        }
        rows.push_back(row);
    }
    return rows;
}

static void to_json(Json& json, const DungeonRecord& record) {
    json = {{"rooms", record.rooms},
            {"edges", record.edges},
            {"mainRooms", record.mainRooms},
            {"hallwayEdges", record.hallwayEdges},
            {"hallways", record.hallways},
            {"adjacency", record.adjacency},
            {"compassPoints", record.compassPoints},
            {"tiles", TileRows(record)}};
}

DataFile::DataFile(OutputFile* theFile, const std::string& list) : file(theFile) {
    if (file != nullptr) {
        file->Write("{\"version\": " + std::to_string(kDataVersion) + ", \"" + list + "\": [");
    }
}

void DataFile::AddLine(const std::string& text) {
    file->Write(separator + text);
    separator = ",\n";
}

void DataFile::Add(const Cell& cell) {
    if (file != nullptr) {
        Json json = {{"key", cell.key}, {"neighbors", cell.neighbors}, {"dungeon", nullptr}};
        if (cell.dungeon != nullptr) {
            json["dungeon"] = *cell.dungeon;
        }
        AddLine(json.dump());
    }
}

void DataFile::Add(const ClusterRecord& cluster, const CellNeighborMap& neighbors) {
    if (file != nullptr) {
        const Json json = {
            {"cells", cluster.cells}, {"key", cluster.key}, {"neighbors", neighbors}};
        AddLine(json.dump());
    }
}

void DataFile::Finish() {
    if (file != nullptr) {
        file->Write("\n]}\n");
    }
}
