#include "Host/Keeping/UndoManifest.h"
#include "Host/Keeping/UndoStore.h"
#include "Tests/Host/ScratchDirectory.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

class UndoStoreTest : public testing::Test {
protected:
    UndoStoreTest() { fs::create_directory(top()); }

    std::string top() const { return directory_.pathOf("wc").str(); }
    String store() const { return directory_.pathOf("state/undo"); }
    String pathOf(std::string_view name) const { return top() + "/" + std::string(name); }
    String write(std::string_view name, std::string_view text) const {
        return directory_.write("wc/" + std::string(name), text);
    }
    std::string read(std::string_view name) const {
        std::ifstream file(pathOf(name).str(), std::ios::binary);
        return file.is_open() ? std::string{std::istreambuf_iterator<char>(file),
                                            std::istreambuf_iterator<char>()}
                              : "absent";
    }
    mode_t permissionsOf(const std::string& path) const {
        struct stat facts = {};
        EXPECT_EQ(::lstat(path.c_str(), &facts), 0) << path;
        return facts.st_mode & 07777U;
    }
    /// Keeps, does the step, and notes its result.
    template <typename Step> UndoStore::Kept keeping(const std::vector<String>& paths, Step step) {
        UndoStore undo(store());
        UndoStore::Kept kept = undo.keep(top(), "revert", paths, {"colour of a.c"});
        EXPECT_FALSE(kept.error) << kept.error.description().str();
        step();
        EXPECT_FALSE(undo.noteResult(kept.entry.id));
        return kept;
    }
    std::size_t countOfSteps() const { return UndoStore(store()).entries(top()).size(); }

    const ScratchDirectory directory_;
};

TEST_F(UndoStoreTest, PutsBackWhatAStepTookAway) {
    write("changed.c", "my work");
    write("gone.c", "also mine");
    write("tree/deep/a", "A");
    fs::create_symlink("tree/deep/a", pathOf("link").str());
    ::chmod(pathOf("changed.c").c_str(), 0754);
    ::chmod(pathOf("gone.c").c_str(), 0640);
    const auto kept = keeping(
        {pathOf("changed.c"), pathOf("gone.c"), pathOf("tree"), pathOf("link"), pathOf("nothing")},
        [&] {
            write("changed.c", "base");
            fs::remove(pathOf("gone.c").str());
            fs::remove_all(pathOf("tree").str());
            fs::remove(pathOf("link").str());
        });
    EXPECT_TRUE(kept.refused.empty());
    EXPECT_EQ(kept.entry.items.size(), 6U) << "tree, tree/deep and tree/deep/a among them";
    UndoStore undo(store());
    const auto entries = undo.entries(top());
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].step, "revert");
    EXPECT_EQ(entries[0].notes, std::vector<String>{"colour of a.c"});

    const auto restored = undo.restoreLast(top());
    EXPECT_FALSE(restored.error);
    EXPECT_TRUE(restored.refused.empty());
    EXPECT_EQ(restored.restored.size(), 6U);
    EXPECT_EQ(read("changed.c"), "my work");
    EXPECT_EQ(permissionsOf(pathOf("changed.c").str()), 0754U);
    EXPECT_EQ(read("gone.c"), "also mine");
    EXPECT_EQ(permissionsOf(pathOf("gone.c").str()), 0640U);
    EXPECT_EQ(read("tree/deep/a"), "A");
    EXPECT_EQ(fs::read_symlink(pathOf("link").str()), "tree/deep/a");
    EXPECT_EQ(countOfSteps(), 0U);
    const auto again = undo.restoreLast(top());
    EXPECT_TRUE(again.entry.id.isNil());
    EXPECT_FALSE(again.error);
}

TEST_F(UndoStoreTest, NeverOverwritesNewerWork) {
    write("a.c", "before");
    write("b.c", "before");
    write("same.c", "before");
    keeping({pathOf("a.c"), pathOf("b.c"), pathOf("same.c")}, [&] {
        write("a.c", "base");
        fs::remove(pathOf("b.c").str());
        write("same.c", "base");
    });
    write("a.c", "newer work");
    write("b.c", "newer too");
    write("same.c", "before");
    write("b.c.undone", "taken");
    const auto restored = UndoStore(store()).restoreLast(top());
    EXPECT_EQ(restored.restored, std::vector<String>{pathOf("same.c")});
    EXPECT_EQ(restored.refused,
              (std::vector<UndoRefusal>{
                  {pathOf("a.c"), "what lies there has changed since", pathOf("a.c.undone")},
                  {pathOf("b.c"), "what lies there has changed since", pathOf("b.c.undone.2")}}));
    EXPECT_EQ(read("a.c"), "newer work");
    EXPECT_EQ(read("a.c.undone"), "before");
    EXPECT_EQ(read("b.c"), "newer too");
    EXPECT_EQ(read("b.c.undone"), "taken");
    EXPECT_EQ(read("b.c.undone.2"), "before");
}

TEST_F(UndoStoreTest, AnEarlierStepIsUndoneByItsId) {
    write("a.c", "first");
    write("b.c", "first");
    const auto first = keeping({pathOf("a.c"), pathOf("b.c")}, [&] {
        write("a.c", "mixed");
        write("b.c", "mixed");
    });
    keeping({pathOf("a.c")}, [&] { write("a.c", "base"); });
    write("b.c", "newer work");
    UndoStore undo(store());
    const auto restored = undo.restore(top(), first.entry.id);
    // The second step has kept what it took: what it left is nobody's newer work.
    EXPECT_EQ(restored.restored, std::vector<String>{pathOf("a.c")});
    EXPECT_EQ(read("a.c"), "first");
    ASSERT_EQ(restored.refused.size(), 1U);
    EXPECT_EQ(read("b.c"), "newer work");
    EXPECT_EQ(read("b.c.undone"), "first");
    EXPECT_EQ(undo.entries(top()).size(), 1U);
    EXPECT_EQ(undo.restore(top(), first.entry.id).error.code(), ENOENT);
    EXPECT_EQ(undo.restore(top() + "/other", undo.entries(top())[0].id).error.code(), ENOENT);
}

TEST_F(UndoStoreTest, AStepThatIsNotTakenIsForgotten) {
    write("a.c", "before");
    UndoStore undo(store());
    const auto kept = undo.keep(top(), "revert", {pathOf("a.c")});
    undo.forget(kept.entry.id);
    undo.forget(String());
    EXPECT_TRUE(undo.entries(top()).empty());
    EXPECT_FALSE(fs::exists((store().str() + "/" + kept.entry.id.str())));
}

TEST_F(UndoStoreTest, NotesAloneAreKept) {
    UndoStore undo(store());
    EXPECT_FALSE(undo.keep(top(), "revert", {}, {"colour of a.c"}).entry.id.isNil());
    EXPECT_TRUE(undo.keep(top(), "revert", {}).entry.id.isNil());
    const auto restored = undo.restoreLast(top());
    EXPECT_EQ(restored.entry.notes, std::vector<String>{"colour of a.c"});
    EXPECT_TRUE(undo.entries(top()).empty());
}

TEST_F(UndoStoreTest, WithoutANoteEverythingOnTheDiskIsNewer) {
    write("a.c", "before");
    UndoStore undo(store());
    undo.keep(top(), "revert", {pathOf("a.c")});
    write("a.c", "base");
    const auto restored = undo.restoreLast(top());
    ASSERT_EQ(restored.refused.size(), 1U);
    EXPECT_EQ(read("a.c"), "base");
    EXPECT_EQ(read("a.c.undone"), "before");
}

TEST_F(UndoStoreTest, WhatStandsInTheWayIsNamed) {
    write("file", "before");
    write("dir/a", "A");
    keeping({pathOf("file"), pathOf("dir")}, [&] {
        fs::remove(pathOf("file").str());
        fs::remove_all(pathOf("dir").str());
    });
    fs::create_directory(pathOf("file").str());
    write("dir", "a file now");
    const auto restored = UndoStore(store()).restoreLast(top());
    EXPECT_EQ(read("file.undone"), "before");
    EXPECT_EQ(read("dir"), "a file now");
    ASSERT_EQ(restored.refused.size(), 3U);
    EXPECT_EQ(restored.refused[0].beside, pathOf("file.undone"));
    EXPECT_TRUE(restored.refused[1].beside.isNil());
    EXPECT_TRUE(restored.refused[2].beside.isNil()) << "its directory is not there";
    EXPECT_EQ(countOfSteps(), 1U) << "what is nowhere else stays kept";
}

TEST_F(UndoStoreTest, WritesNothingOutsideTheWorkingCopy) {
    write("dir/a", "A");
    keeping({pathOf("dir/a")}, [&] { fs::remove_all(pathOf("dir").str()); });
    fs::create_directory(directory_.pathOf("outside").str());
    fs::create_directory_symlink(directory_.pathOf("outside").str(), pathOf("dir").str());
    const auto restored = UndoStore(store()).restoreLast(top());
    ASSERT_EQ(restored.refused.size(), 1U);
    EXPECT_EQ(restored.refused[0].reason, "its directory leads out of the working copy");
    EXPECT_TRUE(fs::is_empty(directory_.pathOf("outside").str()));
    EXPECT_EQ(countOfSteps(), 1U);
}

TEST_F(UndoStoreTest, RefusesWhatItCannotKeepAndSaysWhy) {
    write("large", std::string(101, 'x'));
    write("small", std::string(60, 'x'));
    write("too", std::string(60, 'x'));
    write(".svn/wc.db", "the client's");
    ::mkfifo(pathOf("pipe").c_str(), 0600);
    directory_.write("elsewhere", "not ours");
    UndoStore undo(store(), {100, 10});
    const auto kept =
        undo.keep(top(), "remove", {top(), directory_.pathOf("elsewhere"), pathOf("../elsewhere")});
    EXPECT_FALSE(kept.error);
    std::vector<std::string> refused;
    for (const UndoRefusal& each : kept.refused) {
        refused.push_back(fs::path(each.path.str()).lexically_relative(top()).string() + ": " +
                          each.reason.str());
    }
    EXPECT_EQ(refused,
              (std::vector<std::string>{".svn: the client's own records are never kept",
                                        "large: it is larger than what can be kept (100 bytes)",
                                        "pipe: it is neither a file, a link nor a directory",
                                        "too: it is larger than what can be kept (40 bytes)",
                                        "../elsewhere: it lies outside the working copy",
                                        "../elsewhere: it lies outside the working copy"}));
}

TEST_F(UndoStoreTest, IsPrivate) {
    write("a.c", "secret");
    const auto kept = keeping({pathOf("a.c")}, [] {});
    for (const auto& each : fs::recursive_directory_iterator(store().str())) {
        EXPECT_EQ(permissionsOf(each.path().string()), each.is_directory() ? 0700U : 0600U)
            << each.path();
    }
    EXPECT_EQ(permissionsOf(store().str()), 0700U);
    EXPECT_FALSE(kept.entry.id.isNil());
}

TEST_F(UndoStoreTest, IsNotUsedWhereItIsNotADirectory) {
    write("a.c", "A");
    directory_.write("state/undo", "a file");
    const auto kept = UndoStore(store()).keep(top(), "revert", {pathOf("a.c")});
    EXPECT_EQ(kept.error.code(), ENOTDIR);
    EXPECT_TRUE(kept.entry.id.isNil());
    fs::remove(store().str());
    fs::create_directory(directory_.pathOf("real").str());
    fs::create_directory_symlink(directory_.pathOf("real").str(), store().str());
    EXPECT_EQ(UndoStore(store()).keep(top(), "revert", {pathOf("a.c")}).error.code(), ENOTDIR)
        << "a link may be another's";
    EXPECT_EQ(UndoStore(String()).keep(top(), "revert", {pathOf("a.c")}).error.code(), ENOENT);
}

TEST_F(UndoStoreTest, KeepsWithinItsLimits) {
    const std::string text(40, 'x');
    UndoStore undo(store(), {100, 3});
    for (const char* const name : {"a", "b", "c", "d"}) {
        write(name, text);
        EXPECT_FALSE(undo.keep(top(), name, {pathOf(name)}).error);
    }
    const auto stepsOf = [&] {
        std::string steps;
        for (const UndoEntry& each : undo.entries(top())) {
            steps += each.step.str();
        }
        return steps;
    };
    EXPECT_EQ(stepsOf(), "dc") << "two of 40 bytes are what 100 bytes hold";
    for (const char* const name : {"e", "f", "g", "h"}) {
        write(name, "");
        undo.keep(top(), name, {pathOf(name)});
    }
    EXPECT_EQ(stepsOf(), "hgf");
}

TEST_F(UndoStoreTest, WorkingCopiesDoNotMix) {
    write("a.c", "A");
    const String other = directory_.pathOf("other");
    fs::create_directory(other.str());
    keeping({pathOf("a.c")}, [&] { fs::remove(pathOf("a.c").str()); });
    EXPECT_TRUE(UndoStore(store()).entries(other).empty());
    EXPECT_TRUE(UndoStore(store()).restoreLast(other).entry.id.isNil());
    EXPECT_EQ(read("a.c"), "absent");
    // The same one through a link.
    fs::create_directory_symlink(top(), directory_.pathOf("link").str());
    const auto restored = UndoStore(store()).restoreLast(directory_.pathOf("link"));
    EXPECT_EQ(restored.restored.size(), 1U);
    EXPECT_EQ(read("a.c"), "A");
}

TEST_F(UndoStoreTest, NamesMayHoldAnything) {
    const std::string name = "a \n%\t\033[31m\xFF\u00FC";
    write(name, "A");
    keeping({pathOf(name)}, [&] { fs::remove(pathOf(name).str()); });
    EXPECT_EQ(UndoStore(store()).restoreLast(top()).restored, std::vector<String>{pathOf(name)});
    EXPECT_EQ(read(name), "A");
}

TEST_F(UndoStoreTest, WhatAKilledProcessLeftIsNoStep) {
    write("a.c", "A");
    keeping({pathOf("a.c")}, [] {});
    fs::create_directory(store().str() + "/unfinished-abcdef");
    fs::create_directory(store().str() + "/00000000000000000001");
    EXPECT_EQ(countOfSteps(), 1U);
    keeping({pathOf("a.c")}, [] {});
    EXPECT_FALSE(fs::exists(store().str() + "/unfinished-abcdef"));
    EXPECT_EQ(countOfSteps(), 2U);
}

ManifestItem itemOf(const char* path, UndoItem::Kind kind, mode_t permissions) {
    ManifestItem item;
    item.item.path = path;
    item.item.kind = kind;
    item.permissions = permissions;
    return item;
}

TEST(UndoManifestTest, ComesBackAsItWasAndNotFromLess) {
    UndoManifest manifest;
    manifest.workingCopy = "/home/me/a b%";
    manifest.step = "revert";
    manifest.time = 1'763'000'000'000'000;
    manifest.notes = {"a note\nof two lines", ""};
    manifest.items = {itemOf("/x\001", UndoItem::Kind::file, 0754),
                      itemOf("/l", UndoItem::Kind::link, 0777),
                      itemOf("/d", UndoItem::Kind::directory, 0700)};
    manifest.items[0].item.size = 12;
    manifest.items[0].left = PlaceState::at("/");
    manifest.items[1].destination = "../ b";
    manifest.items[2].left = PlaceState();
    const std::string text = manifest.text();
    const auto read = UndoManifest::fromText(text);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->text(), text);
    EXPECT_EQ(read->notes, manifest.notes);
    EXPECT_EQ(read->items[0].item.path, "/x\001");
    EXPECT_EQ(read->items[0].left, PlaceState::at("/"));
    EXPECT_EQ(read->items[1].destination, "../ b");
    EXPECT_FALSE(read->items[1].left.has_value());
    EXPECT_FALSE(read->items[2].left->exists);
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_FALSE(UndoManifest::fromText(text.substr(0, length)).has_value()) << length;
    }
    for (const char* const bad :
         {"quen-undo 2\nend\n", "quen-undo 1\nwhat\nend\n", "quen-undo 1\nleft 1 1 1 1 1\nend\n",
          "quen-undo 1\nfile 9 1 /a\nend\n", "quen-undo 1\nfile 644 -1 /a\nend\n"}) {
        EXPECT_FALSE(UndoManifest::fromText(bad).has_value()) << bad;
    }
}

} // namespace

} // namespace quen::test
