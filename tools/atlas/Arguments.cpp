#include "atlas/Arguments.h"

#include "atlas/Records.h"

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
    R"(usage: vesk_atlas cell X Y [--overlay LIST] -o FILE
       vesk_atlas tour X Y [--overlay LIST] -o FILE
       vesk_atlas clusters X0 Y0 X1 Y1 [--graph GRAPH] -o FILE

Draws the world of vesk to a PNG file, north up.

  cell      the cell in column X and row Y of the world
  tour      that cell and the eight around it, with the neighbour graph
  clusters  the clusters from (X0, Y0) to (X1, Y1): land, borders, neighbour graph

  -o, --output FILE   the picture
      --overlay LIST  border, rooms, tree, hallways, spawns, compass, triangulation,
                      separated by commas, or all
      --graph GRAPH   middle: of every block of 3 x 3 clusters the edges of the middle
                      one's cells (the usual); whole: every edge of every block;
                      X,Y: every edge of the block around that cell; none
      --scale N       pixels per tile (1), of clusters per cell (4); at most 64
      --json FILE     the records as data
      --threads N     as many threads (one per core)
      --help          this text

The file formats are described in vesk_atlas(6).
)";

namespace {

constexpr std::int32_t kLargestScale = 64;
constexpr std::int32_t kMostThreads = 256;
constexpr std::int32_t kTourCells = 3;

enum Option { kOverlay = 256, kGraph, kScale, kJson, kThreads, kHelp };

constexpr option kOptions[] = {{"output", required_argument, nullptr, 'o'},
                               {"overlay", required_argument, nullptr, kOverlay},
                               {"graph", required_argument, nullptr, kGraph},
                               {"scale", required_argument, nullptr, kScale},
                               {"json", required_argument, nullptr, kJson},
                               {"threads", required_argument, nullptr, kThreads},
                               {"help", no_argument, nullptr, kHelp},
                               {nullptr, 0, nullptr, 0}};

constexpr std::array<std::pair<std::string_view, Command>, 3> kCommandNames{
    {{"cell", Command::Cell}, {"tour", Command::Tour}, {"clusters", Command::Clusters}}};

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
        while ((found = getopt_long(count, words, "o:", kOptions, nullptr)) != -1) {
            if (found == '?') {
                return WrongOption(words[optind - 1]);
            }
            const std::string error = TakeOption(found, optarg == nullptr ? "" : optarg);
            if (!error.empty() || found == kHelp) {
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
            arguments.json = value;
            return {};
        case kOverlay:
            overlaysGiven = true;
            return TakeOverlays(value);
        case kGraph:
            graphGiven = true;
            return TakeGraph(value);
        case kScale:
            return TakeNumber("the scale", value, 1, kLargestScale, arguments.scale);
        case kThreads: {
            std::int32_t threads = 0;
            const std::string error =
                TakeNumber("the number of threads", value, 1, kMostThreads, threads);
            arguments.threads = static_cast<unsigned>(threads);
            return error;
        }
        default:
            arguments.command = Command::Help;
            return {};
        }
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
        const auto known = std::find_if(kCommandNames.begin(), kCommandNames.end(),
                                        [&name](const auto& pair) { return pair.first == name; });
        if (known == kCommandNames.end()) {
            return "\"" + name + "\" is no command";
        }
        arguments.command = known->second;
        const bool clusters = arguments.command == Command::Clusters;
        const std::size_t wanted = clusters ? 5 : 3;
        if (words.size() != wanted) {
            return name + " takes " + (clusters ? "four coordinates" : "two coordinates");
        }
        if (!clusters) {
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
        const bool clusters = arguments.command == Command::Clusters;
        if (clusters ? overlaysGiven : graphGiven) {
            return clusters ? "clusters takes no --overlay" : "only clusters takes --graph";
        }
        if (clusters &&
            (arguments.first.x > arguments.last.x || arguments.first.y > arguments.last.y)) {
            return "the first cluster must be the lower left one";
        }
        if (arguments.output.empty()) {
            return "where the picture goes is missing: -o FILE";
        }
        if (arguments.json == arguments.output) {
            return "picture and data need a file each";
        }
        if (arguments.scale == 0) {
            arguments.scale = clusters ? 4 : 1;
        }
        if (arguments.threads == 0) {
            arguments.threads = std::max(1u, std::thread::hardware_concurrency());
        }
        return LongestSide() > kLongestSide
                   ? "the picture's sides would exceed " + std::to_string(kLongestSide) + " pixels"
                   : "";
    }

    std::int64_t LongestSide() const {
        if (arguments.command == Command::Clusters) {
            const Vec2i span = arguments.last - arguments.first;
            return (std::int64_t{std::max(span.x, span.y)} + 1) * kClusterCells * arguments.scale;
        }
        const std::int32_t cells = arguments.command == Command::Tour ? kTourCells : 1;
        return std::int64_t{cells} * kCellTiles * arguments.scale;
    }

    bool overlaysGiven = false;
    bool graphGiven = false;
};

} // namespace

std::optional<Arguments> ParseArguments(int count, char** words, std::string& error) {
    Reader reader;
    error = reader.Read(count, words);
    return error.empty() ? std::optional(reader.arguments) : std::nullopt;
}
