// The generated world is the one that the golden file records, whatever was generated before.
#include "WorldDigest.h"

#include "support/Files.h"
#include "support/Holds.h"

#include <gtest/gtest.h>

#include <ios>
#include <sstream>

TEST(WorldGoldenTest, MakesTheRecordedWorld) {
    const ErrorLines quiet;
    std::istringstream lines(ReadFile(VESK_TESTS "/data/gen_golden.txt"));
    int records = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind;
        Vec2i place;
        std::size_t neighborCount = 0;
        std::uint64_t expected = 0;
        if (words >> kind >> place.x >> place.y >> neighborCount >> std::hex >> expected) {
            const std::uint64_t digest = kind == "cluster" ? ClusterDigest(place)
                                         : kind == "neighbors"
                                             ? NeighborDigest(place)
                                             : DungeonDigest(place, neighborCount);
            EXPECT_EQ(digest, expected) << line;
            ++records;
        }
    }
    EXPECT_EQ(records, 600);
}
