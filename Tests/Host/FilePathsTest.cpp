#include "MarlFoundation/MarlDeveloperPaths.h"
#include "MarlFoundation/MarlFilePath.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tests/Support/HostRecorder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace quen::test {
namespace {

TEST(FilePath, KeepsItsTextAndKnowsItsName) {
    struct {
        const char* path;
        const char* name;
    } const cases[]{{"/a/b.c", "b.c"}, {"b.c", "b.c"},     {"/a/b/", "b"}, {"/", "/"},
                    {"", ""},          {"/a//b.c", "b.c"}, {"./../x", "x"}};
    for (const auto& [path, name] : cases) {
        const MarlFilePathPtr object = MarlFilePath::filePathForPathString(path);
        EXPECT_EQ(object->pathString(), path);
        EXPECT_EQ(object->fileName(), name);
    }
}

TEST(FilePath, OfNothingIsNothing) {
    EXPECT_EQ(MarlFilePath::filePathForPathString(nullptr), nullptr);
}

TEST(FilePath, ExistsWhileSomethingIsThere) {
    const ScratchDirectory scratch;
    const MarlFilePathPtr path = MarlFilePath::filePathForPathString(scratch.write("a.c", "text"));
    EXPECT_TRUE(path->existsInFileSystem());
    std::filesystem::remove(path->pathString().str());
    EXPECT_FALSE(path->existsInFileSystem());
}

TEST(FilePath, ExistsForADirectoryAndForALinkThatLeadsNowhere) {
    const ScratchDirectory scratch;
    const String link = scratch.pathOf("link");
    std::filesystem::create_symlink("nowhere", link.str());
    EXPECT_TRUE(MarlFilePath::filePathForPathString(link)->existsInFileSystem());
    EXPECT_TRUE(MarlFilePath::filePathForPathString(scratch.path())->existsInFileSystem());
}

TEST(FilePath, DoesNotExistForTheEmptyPathOrBehindAFile) {
    const ScratchDirectory scratch;
    const String behind = scratch.write("a.c", "text").str() + "/b.c";
    EXPECT_FALSE(MarlFilePath::filePathForPathString("")->existsInFileSystem());
    EXPECT_FALSE(MarlFilePath::filePathForPathString(behind)->existsInFileSystem());
}

String preferredDirectory(int platform) {
    return MarlDeveloperPaths::defaultPaths()
        ->binSearchPathForPlatform(platform)
        ->preferredDirectoryPath()
        ->pathString();
}

TEST(DeveloperPaths, AnswerTheHostsToolsDirectoryForEveryPlatform) {
    const HostRecorder recorder;
    EXPECT_EQ(preferredDirectory(0), "/tools");
    EXPECT_EQ(preferredDirectory(7), "/tools");
}

TEST(DeveloperPaths, FollowTheHost) {
    const HostRecorder recorder;
    const auto searchPath = MarlDeveloperPaths::defaultPaths()->binSearchPathForPlatform(0);
    const RunContext::Scope scope(RunContext::current().withToolsDirectory("/other"));
    EXPECT_EQ(searchPath->preferredDirectoryPath()->pathString(), "/other");
}

TEST(DeveloperPaths, AreShared) {
    EXPECT_EQ(MarlDeveloperPaths::defaultPaths(), MarlDeveloperPaths::defaultPaths());
}

} // namespace
} // namespace quen::test
