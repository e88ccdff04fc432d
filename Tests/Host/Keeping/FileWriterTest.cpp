#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Keeping/FreeName.h"
#include "Tests/Host/ScratchDirectory.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quen::test {

namespace {

namespace fs = std::filesystem;
using Existing = FileWriter::Existing;
using Link = FileWriter::Link;
using Options = FileWriter::Options;

std::string contentOf(const String& path) {
    std::ifstream file(path.str(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::size_t countIn(const ScratchDirectory& directory) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(directory.path().str()), fs::directory_iterator()));
}

mode_t permissionsOf(const String& path) {
    struct stat facts = {};
    EXPECT_EQ(::lstat(path.c_str(), &facts), 0);
    return facts.st_mode & 07777U;
}

Options with(Existing existing, Link link = Link::refused) {
    Options options;
    options.existing = existing;
    options.link = link;
    return options;
}

TEST(FileWriterTest, MakesAFileWithWhatTheMaskLeaves) {
    const ScratchDirectory directory;
    const String path = directory.pathOf("a \n\033[31m.c");
    EXPECT_FALSE(writeFile(path, std::string_view("one\0two", 7), Options()));
    EXPECT_EQ(contentOf(path), std::string("one\0two", 7));
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(permissionsOf(path), 0666U & ~mask);
    EXPECT_EQ(countIn(directory), 1U);
}

TEST(FileWriterTest, RefusesToReplaceUnlessTold) {
    const ScratchDirectory directory;
    const String path = directory.write("a.c", "old");
    const Error error = writeFile(path, "new", Options());
    EXPECT_EQ(error.domain(), FileErrorDomain);
    EXPECT_EQ(error.code(), EEXIST);
    EXPECT_EQ(error.localizedDescription(),
              String("\"" + path.str() + "\" could not be written: File exists."));
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(countIn(directory), 1U);
}

TEST(FileWriterTest, AFileThatAppearsMeanwhileIsNotReplaced) {
    const ScratchDirectory directory;
    const String path = directory.pathOf("a.c");
    FileWriter writer(path, Options());
    EXPECT_FALSE(writer.write("mine"));
    directory.write("a.c", "theirs");
    EXPECT_EQ(writer.finish().code(), EEXIST);
    EXPECT_EQ(contentOf(path), "theirs");
}

TEST(FileWriterTest, ReplacesAndKeepsThePermissions) {
    const ScratchDirectory directory;
    const String path = directory.write("a.c", "a longer old text");
    ASSERT_EQ(::chmod(path.c_str(), 0751), 0);
    EXPECT_FALSE(writeFile(path, "new", with(Existing::replaced)));
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(permissionsOf(path), 0751U);
    Options options = with(Existing::replaced);
    options.mode = 0600;
    EXPECT_FALSE(writeFile(path, "newer", options));
    EXPECT_EQ(permissionsOf(path), 0600U);
    EXPECT_EQ(countIn(directory), 1U);
}

TEST(FileWriterTest, UntilTheEndTheTargetIsWhatItWas) {
    const ScratchDirectory directory;
    const String path = directory.write("a.c", "old");
    {
        FileWriter writer(path, with(Existing::replaced));
        EXPECT_FALSE(writer.write("half of it"));
        EXPECT_EQ(contentOf(path), "old");
        EXPECT_EQ(countIn(directory), 2U);
    }
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(countIn(directory), 1U) << "nothing is left of what was not finished";
}

/// A limit on the size of files stands for a full disk: the write fails in the middle.
TEST(FileWriterTest, AWriteThatFailsLeavesTheTargetAlone) {
    const ScratchDirectory directory;
    const String path = directory.write("a.c", "old");
    const String absent = directory.pathOf("b.c");
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 4096;
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string large(10'000, 'x');
    const Error first = writeFile(path, large, with(Existing::replaced));
    const Error second = writeFile(absent, large, Options());
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, handler);
    EXPECT_EQ(first.code(), EFBIG);
    EXPECT_EQ(second.code(), EFBIG);
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_FALSE(fs::exists(absent.str()));
    EXPECT_EQ(countIn(directory), 1U);
}

TEST(FileWriterTest, TellsTheSystemsReason) {
    const ScratchDirectory directory;
    directory.write("file", "");
    EXPECT_EQ(writeFile(directory.pathOf("no/a.c"), "x", Options()).code(), ENOENT);
    EXPECT_EQ(writeFile(directory.pathOf("file/a.c"), "x", Options()).code(), ENOTDIR);
    EXPECT_EQ(writeFile(directory.path(), "x", with(Existing::replaced)).code(), EISDIR);
    EXPECT_EQ(writeFile("/dev/full", "x", with(Existing::replaced)).code(), ENOSPC);
    EXPECT_EQ(writeFile("/dev/full", "x", with(Existing::replaced)).localizedDescription(),
              "\"/dev/full\" could not be written: No space left on device.");
    EXPECT_FALSE(writeFile("/dev/null", "x", Options()));
}

TEST(FileWriterTest, DoesWithLinksWhatItIsTold) {
    const ScratchDirectory directory;
    const String target = directory.write("elsewhere/target", "old");
    const String link = directory.pathOf("link");
    const String dangling = directory.pathOf("dangling");
    fs::create_symlink("elsewhere/target", link.str());
    fs::create_symlink("elsewhere/none", dangling.str());

    EXPECT_EQ(writeFile(link, "x", with(Existing::replaced, Link::refused)).code(), ELOOP);
    EXPECT_EQ(writeFile(link, "x", with(Existing::refused, Link::replaced)).code(), EEXIST);
    EXPECT_EQ(writeFile(link, "x", with(Existing::refused, Link::followed)).code(), EEXIST);
    EXPECT_EQ(contentOf(target), "old");

    EXPECT_FALSE(writeFile(link, "through", with(Existing::replaced, Link::followed)));
    EXPECT_EQ(contentOf(target), "through");
    EXPECT_TRUE(fs::is_symlink(link.str()));
    EXPECT_FALSE(writeFile(dangling, "made", with(Existing::refused, Link::followed)));
    EXPECT_EQ(contentOf(directory.pathOf("elsewhere/none")), "made");
    EXPECT_TRUE(fs::is_symlink(dangling.str()));

    EXPECT_FALSE(writeFile(link, "instead", with(Existing::replaced, Link::replaced)));
    EXPECT_FALSE(fs::is_symlink(link.str()));
    EXPECT_EQ(contentOf(link), "instead");
    EXPECT_EQ(contentOf(target), "through");
}

TEST(FileWriterTest, CopiesBytesAndPermissions) {
    const ScratchDirectory directory;
    const std::string bytes(200'000, '\0');
    const String from = directory.write("from", bytes);
    ASSERT_EQ(::chmod(from.c_str(), 0750), 0);
    const String to = directory.pathOf("to");
    EXPECT_FALSE(copyFile(from, to, Options()));
    EXPECT_EQ(contentOf(to), bytes);
    EXPECT_EQ(permissionsOf(to), 0750U);
    EXPECT_EQ(copyFile(directory.pathOf("none"), directory.pathOf("x"), Options()).code(), ENOENT);
    EXPECT_EQ(copyFile(directory.path(), directory.pathOf("x"), Options()).code(), EISDIR);
    fs::create_symlink("from", directory.pathOf("link").str());
    EXPECT_EQ(copyFile(directory.pathOf("link"), directory.pathOf("x"), Options()).code(), ELOOP);
    const String pipe = directory.pathOf("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(copyFile(pipe, directory.pathOf("x"), Options()).code(), EINVAL) << "and not hang";
    EXPECT_FALSE(fs::exists(directory.pathOf("x").str()));
}

TEST(FreeNameTest, NumbersWhatIsTakenAndFitsWhatIsLong) {
    const ScratchDirectory directory;
    const auto put = [&](const String& name) { return writeFile(name, "x", Options()); };
    const auto nameFor = [&](const std::string& path) {
        const Placement placement = atFreeName(directory.pathOf(path).str(), ".theirs.r7", put);
        EXPECT_FALSE(placement.error) << placement.error.description().str();
        return fs::path(placement.path.str()).filename().string();
    };
    EXPECT_EQ(nameFor("a.c"), "a.c.theirs.r7");
    EXPECT_EQ(nameFor("a.c"), "a.c.theirs.r7.2");
    EXPECT_EQ(nameFor("a.c"), "a.c.theirs.r7.3");
    const std::string name = nameFor(std::string(120, 'a') + std::string(60, '\xC3') + "");
    EXPECT_EQ(name.size(), 190U);
    std::string umlauts;
    for (int i = 0; i < 127; ++i) {
        umlauts += "\u00FC";
    }
    const std::string cut = nameFor(umlauts);
    EXPECT_EQ(cut.size(), 254U) << "cut between characters";
    EXPECT_TRUE(cut.ends_with("\u00FC.theirs.r7"));
    EXPECT_EQ(atFreeName(directory.pathOf("no/a").str(), ".x", put).error.code(), ENOENT);
}

} // namespace

} // namespace quen::test
