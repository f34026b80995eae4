#include "atlas/Arguments.h"

#include "atlas/OutputFile.h"
#include "atlas/Records.h"
#include "atlas/Tiles.h"
#include "gen/Clusters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <getopt.h>

const char* const kUsage =
    R"(usage: vesk_atlas cell X Y [--overlay LIST] [--tmj FILE] -o FILE
       vesk_atlas tour X Y [--overlay LIST] -o FILE
       vesk_atlas clusters X0 Y0 X1 Y1 [--graph GRAPH] -o FILE
       vesk_atlas tiles X0 Y0 X1 Y1 --zoom A-B [--overlay LIST] -o DIR

Draws the world of vesk to a PNG file, north up.

  cell      the cell in column X and row Y of the world
  tour      that cell and the eight around it, with the neighbour graph
  clusters  the clusters from (X0, Y0) to (X1, Y1): land, borders, neighbour graph
  tiles     those clusters as pictures of 256 x 256 pixels that fit together

  -o, --output FILE   the picture, of tiles their folder; "-" is the standard output
      --overlay LIST  border, rooms, tree, hallways, spawns, compass, triangulation,
                      separated by commas, or all
      --graph GRAPH   middle: of every block of 3 x 3 clusters the edges of the middle
                      one's cells (the usual); whole: every edge of every block;
                      X,Y: every edge of the block around that island; none
      --scale N       pixels per tile (1), at most 32, of a tour 10;
                      of clusters per cell (4), at most 64
      --zoom A-B      the zooms of tiles, from 2 to 13: at zoom Z a cell is 2^Z pixels wide
      --json FILE     the records as data
      --tmj FILE      the cell as a map for Tiled
      --threads N     as many threads (one per core)
  -h, --help          this text
      --version       the program's version

The file formats are described in vesk_atlas(6).
)";

namespace {

constexpr std::int32_t kLargestScale = 64;
constexpr std::int64_t kMostTiles = 1 << 20;
constexpr std::int32_t kMostThreads = 256;
constexpr std::int32_t kTourCells = 3;

enum Option { kOverlay = 256, kGraph, kScale, kZoom, kJson, kTmj, kThreads, kVersion };

constexpr option kOptions[] = {{"output", required_argument, nullptr, 'o'},
                               {"overlay", required_argument, nullptr, kOverlay},
                               {"graph", required_argument, nullptr, kGraph},
                               {"scale", required_argument, nullptr, kScale},
                               {"zoom", required_argument, nullptr, kZoom},
                               {"json", required_argument, nullptr, kJson},
                               {"tmj", required_argument, nullptr, kTmj},
                               {"threads", required_argument, nullptr, kThreads},
                               {"help", no_argument, nullptr, 'h'},
                               {"version", no_argument, nullptr, kVersion},
                               {nullptr, 0, nullptr, 0}};

// A command, and which options it takes beside those that all take.
struct CommandRule {
    std::string_view name;
    Command command;
    std::size_t coordinates;
    std::string_view options;
    std::int32_t usualScale;
    std::int32_t largestScale;
};

constexpr std::array<CommandRule, 4> kCommands{
    {{"cell", Command::Cell, 2, "--overlay --scale --json --tmj", 1, kLongestSide / kCellTiles},
     {"tour", Command::Tour, 2, "--overlay --scale --json", 1,
      kLongestSide / (kTourCells * kCellTiles)},
     {"clusters", Command::Clusters, 4, "--graph --scale --json", 4, kLargestScale},
     {"tiles", Command::Tiles, 4, "--overlay --zoom", 1, 1}}};

constexpr std::array<std::pair<std::string_view, Graph>, 3> kGraphNames{
    {{"none", Graph::None}, {"middle", Graph::Middle}, {"whole", Graph::Whole}}};

struct OverlayName {
    std::string_view name;
    bool Overlays::*flag;
};

constexpr std::array<OverlayName, 7> kOverlayNames{{{"border", &Overlays::border},
                                                    {"rooms", &Overlays::rooms},
                                                    {"tree", &Overlays::tree},
                                                    {"hallways", &Overlays::hallways},
                                                    {"spawns", &Overlays::spawns},
                                                    {"compass", &Overlays::compass},
                                                    {"triangulation", &Overlays::triangulation}}};

// Reads one command line. Each step returns the reason why it is not right, or an empty text.
class Reader {
public:
    std::string Read(int count, char** words) {
        opterr = 0;
        optind = 1;
        int found = 0;
        while ((found = getopt_long(count, words, "ho:", kOptions, nullptr)) != -1) {
            if (found == '?') {
                return WrongOption(words[optind - 1]);
            }
            const std::string error = TakeOption(found, optarg == nullptr ? "" : optarg);
            if (!error.empty() || found == 'h' || found == kVersion) {
                return error;
            }
        }
        const std::vector<std::string> rest(words + optind, words + count);
        const std::string error = TakeCommand(rest);
        return error.empty() ? CheckWhole() : error;
    }

    Arguments arguments;

private:
    // `last` is the last word that getopt_long has taken, of which a short option may be a part.
    static std::string WrongOption(const std::string& last) {
        if (optopt >= '0' && optopt <= '9') {
            return "coordinates begin at 0";
        }
        const bool isShort = optopt > 0 && optopt < kOverlay;
        const std::string word = isShort ? std::string{'-', static_cast<char>(optopt)} : last;
        return word + " is no option, or lacks its value";
    }

    std::string TakeOption(int which, const std::string& value) {
        switch (which) {
        case 'o':
            arguments.output = value;
            return {};
        case kJson:
            return Take("--json", arguments.json, value);
        case kTmj:
            return Take("--tmj", arguments.tmj, value);
        case kScale:
            return Take("--scale", scale, value);
        case kZoom:
            return Take("--zoom", zooms, value);
        case kOverlay:
            given.emplace_back("--overlay");
            return TakeOverlays(value);
        case kGraph:
            given.emplace_back("--graph");
            return TakeGraph(value);
        case kThreads: {
            std::int32_t threads = 0;
            const std::string error =
                TakeNumber("the number of threads", value, 1, kMostThreads, threads);
            arguments.threads = static_cast<unsigned>(threads);
            return error;
        }
        default:
            arguments.command = which == 'h' ? Command::Help : Command::Version;
            return {};
        }
    }

    std::string Take(const char* option, std::string& text, const std::string& value) {
        given.emplace_back(option);
        text = value;
        return value.empty() ? std::string(option) + " lacks its value" : "";
    }

    static std::string TakeNumber(const std::string& what, const std::string& text,
                                  std::int32_t least, std::int32_t most, std::int32_t& number) {
        const char* const textEnd = text.data() + text.size();
        const auto [end, error] = std::from_chars(text.data(), textEnd, number);
        if (error == std::errc() && end == textEnd && number >= least && number <= most) {
            return {};
        }
        return what + " must be a number from " + std::to_string(least) + " to " +
               std::to_string(most) + ", not \"" + text + "\"";
    }

    std::string TakeOverlays(const std::string& list) {
        std::istringstream words(list);
        for (std::string word; std::getline(words, word, ',');) {
            bool known = false;
            for (const OverlayName& overlay : kOverlayNames) {
                if (word == overlay.name || word == "all") {
                    arguments.overlays.*overlay.flag = true;
                    known = true;
                }
            }
            if (!known) {
                return "\"" + word + "\" is no overlay";
            }
        }
        return {};
    }

    std::string TakeGraph(const std::string& value) {
        for (const auto& [name, graph] : kGraphNames) {
            if (value == name) {
                arguments.graph = graph;
                return {};
            }
        }
        const std::size_t comma = value.find(',');
        if (comma == std::string::npos) {
            return "\"" + value + "\" is no graph";
        }
        arguments.graph = Graph::Around;
        return TakePlace("a cell's", {value.substr(0, comma), value.substr(comma + 1)}, kLastCell,
                         arguments.graphCell);
    }

    static std::string TakePlace(const std::string& whose, const std::array<std::string, 2>& words,
                                 std::int32_t most, Vec2i& place) {
        const std::string error = TakeNumber(whose + " column", words[0], 0, most, place.x);
        return error.empty() ? TakeNumber(whose + " row", words[1], 0, most, place.y) : error;
    }

    std::string TakeCommand(const std::vector<std::string>& words) {
        if (words.empty()) {
            return "a command is missing";
        }
        const std::string& name = words[0];
        rule = std::find_if(kCommands.begin(), kCommands.end(),
                            [&name](const CommandRule& known) { return known.name == name; });
        if (rule == kCommands.end()) {
            return "\"" + name + "\" is no command";
        }
        arguments.command = rule->command;
        if (words.size() != rule->coordinates + 1) {
            return name + " takes " + (rule->coordinates == 4 ? "four" : "two") + " coordinates";
        }
        if (rule->coordinates == 2) {
            return TakePlace("a cell's", {words[1], words[2]}, kLastCell, arguments.first);
        }
        const std::string error =
            TakePlace("a cluster's", {words[1], words[2]}, kLastCluster, arguments.first);
        return error.empty()
                   ? TakePlace("a cluster's", {words[3], words[4]}, kLastCluster, arguments.last)
                   : error;
    }

    // What needs more than one word to be judged, and what nobody has given.
    std::string CheckWhole() {
        for (const auto check : {&Reader::CheckOptions, &Reader::CheckRange, &Reader::CheckGraph,
                                 &Reader::CheckScale, &Reader::CheckZooms, &Reader::CheckFiles}) {
            const std::string error = (this->*check)();
            if (!error.empty()) {
                return error;
            }
        }
        if (arguments.threads == 0) {
            arguments.threads = std::max(1u, std::thread::hardware_concurrency());
        }
        return {};
    }

    std::string CheckOptions() {
        for (const std::string& option : given) {
            if (rule->options.find(option) == std::string_view::npos) {
                return std::string(rule->name) + " takes no " + option;
            }
        }
        return {};
    }

    std::string CheckRange() {
        if (rule->coordinates == 4 &&
            (arguments.first.x > arguments.last.x || arguments.first.y > arguments.last.y)) {
            return "the first cluster must be the lower left one";
        }
        return {};
    }

    std::string CheckGraph() {
        if (arguments.graph != Graph::Around) {
            return {};
        }
        ClusterRecord cluster;
        GenerateCluster(ClusterKeyOfCell(arguments.graphCell), cluster);
        if (cluster.LandFlag(CellKey(arguments.graphCell).id) == 0) {
            return "the cell of --graph is no land";
        }
        const Vec2i middle{cluster.key.x, cluster.key.y};
        const bool reaches = middle.x >= arguments.first.x - 1 &&
                             middle.x <= arguments.last.x + 1 &&
                             middle.y >= arguments.first.y - 1 && middle.y <= arguments.last.y + 1;
        return reaches ? "" : "the graph around the cell of --graph does not reach the picture";
    }

    std::string CheckScale() {
        arguments.scale = rule->usualScale;
        const std::string error = scale.empty()
                                      ? ""
                                      : TakeNumber("the scale of " + std::string(rule->name), scale,
                                                   1, rule->largestScale, arguments.scale);
        if (!error.empty() || rule->command != Command::Clusters) {
            return error;
        }
        const Vec2i span = arguments.last - arguments.first;
        const std::int64_t cells = (std::int64_t{std::max(span.x, span.y)} + 1) * kClusterCells;
        return cells * arguments.scale > kLongestSide
                   ? "the picture's sides would exceed " + std::to_string(kLongestSide) + " pixels"
                   : "";
    }

    std::string CheckZooms() {
        if (rule->command != Command::Tiles) {
            return {};
        }
        const std::size_t dash = std::min(zooms.find('-'), zooms.size());
        const std::string last = dash == zooms.size() ? zooms : zooms.substr(dash + 1);
        std::string error = TakeNumber("the first zoom", zooms.substr(0, dash), kFirstZoom,
                                       kLastZoom, arguments.zooms.x);
        if (error.empty()) {
            error =
                TakeNumber("the last zoom", last, arguments.zooms.x, kLastZoom, arguments.zooms.y);
        }
        std::int64_t count = 0;
        for (std::int32_t zoom = arguments.zooms.x; error.empty() && zoom <= arguments.zooms.y;
             ++zoom) {
            const TileRange tiles = TilesOf(arguments, zoom);
            const Vec2i size = tiles.last - tiles.first + Vec2i{1, 1};
            count += std::int64_t{size.x} * size.y;
        }
        return count > kMostTiles ? "these would be " + std::to_string(count) +
                                        " pictures, more than " + std::to_string(kMostTiles)
                                  : error;
    }

    std::string CheckFiles() {
        const bool isTiles = arguments.command == Command::Tiles;
        if (arguments.output.empty()) {
            return isTiles ? "where the tiles go is missing: -o DIR"
                           : "where the picture goes is missing: -o FILE";
        }
        if (isTiles && arguments.output == "-") {
            return "tiles go to a folder: -o DIR";
        }
        const std::array<std::string, 3> files{arguments.output, arguments.json, arguments.tmj};
        for (std::size_t i = 0; i < files.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (!files[i].empty() && !files[j].empty() && IsSameFile(files[i], files[j])) {
                    return "picture and data need a file each";
                }
            }
        }
        return {};
    }

    const CommandRule* rule = nullptr;
    std::vector<std::string> given; // the options that not every command takes
    std::string scale;
    std::string zooms;
};

} // namespace

std::optional<Arguments> ParseArguments(int count, char** words, std::string& error) {
    Reader reader;
    error = reader.Read(count, words);
    return error.empty() ? std::optional(reader.arguments) : std::nullopt;
}

TileRange TilesOf(const Arguments& arguments, std::int32_t zoom) {
    const Vec2i beyond = arguments.last + Vec2i{1, 1};
    const auto pictureAt = [zoom](std::int32_t cell, std::int32_t pixel) {
        return static_cast<std::int32_t>(((std::int64_t{cell} << zoom) + pixel) / kPictureSide);
    };
    const auto last = [&](std::int32_t cluster) {
        return pictureAt(std::min(cluster * kClusterCells, kLastCell + 1), -1);
    };
    return {{pictureAt(arguments.first.x * kClusterCells, 0),
             pictureAt(arguments.first.y * kClusterCells, 0)},
            {last(beyond.x), last(beyond.y)}};
}
