#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tests/Support/CaseName.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace quen::test {
namespace {

namespace fs = std::filesystem;

fs::path onDisk(const MarlFilePathPtr& path) {
    return path->pathString().str();
}

void writeTo(const MarlFilePathPtr& path) {
    std::ofstream(onDisk(path)) << "text";
}

class TemporaryFiles : public testing::Test {
protected:
    ScratchDirectory scratch_;
    const RunContext::Scope scope_{RunContext::current().withTemporaryDirectory(scratch_.path())};
};

TEST_F(TemporaryFiles, LieInAFreshDirectoryThatIsTheOwnersAlone) {
    const auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    const fs::path directory = onDisk(path).parent_path();
    EXPECT_EQ(directory.parent_path(), scratch_.path().view());
    EXPECT_EQ(fs::status(directory).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(fs::is_empty(directory));
    EXPECT_FALSE(path->existsInFileSystem());
}

TEST_F(TemporaryFiles, OfTheSameNameDoNotMeet) {
    const auto first = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    const auto second = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    EXPECT_NE(first->pathString(), second->pathString());
    EXPECT_EQ(first->fileName(), second->fileName());
}

TEST_F(TemporaryFiles, GoWithTheirLastHolder) {
    auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    writeTo(path);
    EXPECT_FALSE(scratch_.isEmpty());
    path.reset();
    EXPECT_TRUE(scratch_.isEmpty());
}

TEST_F(TemporaryFiles, StayWhileAPathMadeFromTheirTextLives) {
    auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    writeTo(path);
    auto same = MarlFilePath::filePathForPathString(path->pathString());
    path.reset();
    EXPECT_TRUE(same->existsInFileSystem());
    same.reset();
    EXPECT_TRUE(scratch_.isEmpty());
}

TEST_F(TemporaryFiles, AreNotHeldByAPathBesideThem) {
    auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
    const auto beside = MarlFilePath::filePathForPathString(scratch_.pathOf("a.c"));
    const auto directory = MarlFilePath::filePathForPathString(onDisk(path).parent_path().string());
    path.reset();
    EXPECT_TRUE(scratch_.isEmpty());
    EXPECT_FALSE(directory->existsInFileSystem());
}

TEST_F(TemporaryFiles, GoWithADirectoryThatWasMadeInTheirPlace) {
    auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName("a");
    fs::create_directories(onDisk(path) / "b" / "c");
    path.reset();
    EXPECT_TRUE(scratch_.isEmpty());
}

/// A host may hold one in a global that is older than anything of this library's.
TEST_F(TemporaryFiles, GoWithAGlobalThatHoldsThem) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, with fresh globals
    ::setenv("QUEN_TEST_PLACE", scratch_.path().c_str(), 0);
    const String place = std::getenv("QUEN_TEST_PLACE");
    EXPECT_EXIT(
        {
            static MarlFilePathPtr held;
            const RunContext::Scope scope(RunContext::current().withTemporaryDirectory(place));
            held = QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c");
            writeTo(held);
            std::exit(scratch_.isEmpty() ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
    ::unsetenv("QUEN_TEST_PLACE");
    EXPECT_TRUE(scratch_.isEmpty());
}

TEST_F(TemporaryFiles, CannotBeMadeWithoutAPlace) {
    const RunContext::Scope scope(
        RunContext::current().withTemporaryDirectory(scratch_.pathOf("nowhere")));
    EXPECT_EQ(QuenSourceControl_filePathForTmpFileBasedOnFileName("a.c"), nullptr);
}

struct NameCase {
    const char* name;
    String given;
    const char* expected;

    friend void PrintTo(const NameCase& c, std::ostream* out) { *out << c.given; }
};

class TemporaryNames : public TemporaryFiles, public testing::WithParamInterface<NameCase> {};

TEST_P(TemporaryNames, AreTheLastComponent) {
    const auto path = QuenSourceControl_filePathForTmpFileBasedOnFileName(GetParam().given);
    EXPECT_EQ(path->fileName(), GetParam().expected);
    EXPECT_EQ(onDisk(path).parent_path().parent_path(), scratch_.path().view());
    writeTo(path);
    EXPECT_TRUE(path->existsInFileSystem());
}

// A name that leads out of the directory, or is empty, must not decide where the file lies.
INSTANTIATE_TEST_SUITE_P(
    Names, TemporaryNames,
    testing::Values(NameCase{"name", "a.c", "a.c"}, NameCase{"path", "/dir/a.c", "a.c"},
                    NameCase{"URL", "http://host/r/a%20b.c", "a%20b.c"},
                    NameCase{"directory", "dir/sub/", "sub"},
                    NameCase{"at sign", "icon@2x.png@", "icon@2x.png@"},
                    NameCase{"blanks and quotes", "it's \"a\" b.c", "it's \"a\" b.c"},
                    NameCase{"hidden", ".bashrc", ".bashrc"}, NameCase{"parent", "/dir/..", "file"},
                    NameCase{"itself", ".", "file"}, NameCase{"root", "/", "file"},
                    NameCase{"empty", "", "file"}, NameCase{"nothing", String(), "file"}),
    CaseName());

} // namespace
} // namespace quen::test
