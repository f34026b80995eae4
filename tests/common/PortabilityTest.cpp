#include "common/Portability.h"

#include "support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(PortabilityTest, ComparesIgnoringTheCaseOfLettersOnly) {
    EXPECT_TRUE(EqualIgnoringCase("Dev-1", "dEV-1"));
    EXPECT_FALSE(EqualIgnoringCase("dev", "de"));
    EXPECT_FALSE(EqualIgnoringCase("de", "dev"));
    // Characters a case bit away from each other that are no letters.
    EXPECT_FALSE(EqualIgnoringCase("[", "{"));
    EXPECT_FALSE(EqualIgnoringCase("@", "`"));
}

TEST(PortabilityTest, OpensFilesButNoDirectories) {
    const TemporaryFile file("x");
    std::FILE* opened = nullptr;
    ASSERT_EQ(OpenFile(&opened, file.Path(), "rb"), 0);
    EXPECT_EQ(std::fgetc(opened), 'x');
    std::fclose(opened);
    const std::string directory = std::filesystem::temp_directory_path().string();
    for (const std::string& path : {directory, directory + "/no/such/file", std::string()}) {
        EXPECT_NE(OpenFile(&opened, path, "rb"), 0) << path;
        EXPECT_EQ(opened, nullptr) << path;
    }
}
