// The generated world is the one that the golden file records.
#include "WorldDigest.h"

#include "support/Files.h"
#include "support/Holds.h"

#include <gtest/gtest.h>

TEST(WorldGoldenTest, MakesTheRecordedWorld) {
    const ErrorLines quiet;
    EXPECT_EQ(CompareGolden(VESK_TESTS "/data/gen_golden.txt", GoldenDigests()), "");
}
