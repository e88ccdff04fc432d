#include "Tests/Server/ServedFiles.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

class ServeWorkingCopies : public ServedFiles {
protected:
    ServeWorkingCopies() {
        commitTwoFiles();
        server.initialize();
    }

    Json open(const std::string& at) { return server.ask("workingCopy/open", {{"path", at}}); }
    Json status(const Json& more = Json::object()) {
        Json params{{"workingCopy", root()}};
        params.update(more);
        return server.ask("workingCopy/status", params);
    }
    std::size_t runs(const std::string& word) {
        return server.ask("server/statistics").at("clientRuns").value(word, std::size_t{0});
    }
    /// How many items have come in parts under a token.
    std::size_t itemsInParts(const std::string& token) const {
        std::size_t items = 0;
        for (const Json& message : server.client().messages()) {
            if (message.value("method", "") == "$/progress" &&
                message.at("params").at("token") == token) {
                items += message.at("params").at("value").size();
            }
        }
        return items;
    }
    /// The `workingCopy/changed` whose changed or removed paths hold this one; null if none comes.
    Json heardOf(const std::string& name, const std::string& status) const {
        return server.client()
            .waitFor([&](const Json& message) {
                if (message.value("method", "") != "workingCopy/changed") {
                    return false;
                }
                const Json& params = message.at("params");
                for (const Json& item : params.at("changed")) {
                    if (item.at("path") == path(name) && item.at("status") == status) {
                        return true;
                    }
                }
                return status.empty() &&
                       std::find(params.at("removed").begin(), params.at("removed").end(),
                                 path(name)) != params.at("removed").end();
            })
            .value_or(nullptr);
    }
    std::size_t changesHeard() const {
        std::size_t count = 0;
        for (const Json& message : server.client().messages()) {
            count += message.value("method", "") == "workingCopy/changed" ? 1U : 0U;
        }
        return count;
    }
};

TEST_F(ServeWorkingCopies, WhoeverAsksFirstTheClientRunsOnce) {
    Sandbox other;
    other.write("new.c", "");
    const std::string root = other.workingCopy().string();
    RunningServer fresh(other);
    fresh.initialize({{"roots", {root}}});
    std::vector<int> ids;
    for (int i = 0; i < 8; ++i) {
        ids.push_back(fresh.start("workingCopy/open", {{"path", root}}));
        ids.push_back(fresh.start("workingCopy/status", {{"workingCopy", root}}));
    }
    for (std::size_t i = 1; i < ids.size(); i += 2) {
        EXPECT_EQ(fresh.answer(ids[i]).at("result").at("counts"),
                  Json::parse(R"({"unversioned": 1})"));
    }
    ASSERT_TRUE(becomesTrue([&] { return fresh.ask("server/statistics").at("ownWork") == 0; }));
    EXPECT_EQ(fresh.ask("server/statistics").at("clientRuns").at("status"), 1);
}

TEST_F(ServeWorkingCopies, OpenFindsTheRootAboveAndSaysWhatItIs) {
    const Json facts = open(path("d/b.c"));
    EXPECT_EQ(facts.at("workingCopy"), root());
    EXPECT_EQ(facts.at("url"), sandbox.url("trunk"));
    EXPECT_EQ(facts.at("repositoryRoot"), sandbox.url());
    EXPECT_EQ(facts.at("repositoryUUID").get<std::string>().size(), 36U);
    EXPECT_EQ(facts.at("revision"), 2);
    EXPECT_EQ(facts.at("branch"), Json::parse(R"({"name": "trunk", "isTrunk": true})"));
    EXPECT_EQ(facts.at("nested"), Json::array());
    EXPECT_EQ(facts.at("externals"), Json::array());
    EXPECT_EQ(facts.at("error"), nullptr);
    EXPECT_EQ(facts.at("failure"), nullptr);
    EXPECT_EQ(open(root()), facts);
    EXPECT_EQ(open(path("none/at/all")), facts);
    EXPECT_EQ(open(sandbox.root().string()), nullptr);
    EXPECT_EQ(open("/nowhere/at/all"), nullptr);
}

TEST_F(ServeWorkingCopies, ALinkLeadsToTheSameOne) {
    const auto link = sandbox.root() / "link";
    std::filesystem::create_directory_symlink(sandbox.workingCopy(), link);
    EXPECT_EQ(open((link / "d").string()).at("workingCopy"), root());
    open(root());
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 1);
}

TEST_F(ServeWorkingCopies, ManyOpenAtOnceAreOne) {
    std::vector<int> ids;
    for (int i = 0; i < 10; ++i) {
        ids.push_back(server.start("workingCopy/open", {{"path", root()}}));
    }
    for (const int id : ids) {
        EXPECT_EQ(server.answer(id).at("result").at("workingCopy"), root());
    }
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 1);
}

TEST_F(ServeWorkingCopies, NestedOnesAndExternalsAreNamed) {
    sandbox.svn({"checkout", "-q", sandbox.url("trunk/d"), path("build/nested")});
    sandbox.svn({"propset", "-q", "svn:externals", "^/trunk/d ext", "."});
    sandbox.svn({"update", "-q"});
    const Json facts = open(root());
    EXPECT_THAT(facts.at("nested"), ElementsAre(path("build/nested")));
    EXPECT_THAT(facts.at("externals"), ElementsAre(path("ext")));
    sandbox.write("ext/b.c", "changed\n");
    EXPECT_EQ(open(path("ext/b.c")).at("workingCopy"), path("ext"));
    const Json items = status({{"refresh", true}}).at("items");
    for (const Json& item : items) {
        EXPECT_NE(item.at("path"), path("ext/b.c"));
    }
    EXPECT_EQ(server.ask("workingCopy/status", {{"workingCopy", path("ext")}}).at("counts"),
              Json::parse(R"({"modified": 1})"));
}

TEST_F(ServeWorkingCopies, StatusIsAnsweredFromWhatIsKept) {
    sandbox.write("a.c", "changed\n");
    sandbox.write("new.c", "");
    open(root());
    const std::size_t before = runs("status");
    const Json kept = status();
    EXPECT_EQ(kept.at("counts"), Json::parse(R"({"modified": 1, "unversioned": 1})"));
    ASSERT_EQ(kept.at("items").size(), 2U);
    EXPECT_EQ(kept.at("items")[0], Json({{"path", path("a.c")},
                                         {"status", "modified"},
                                         {"property", "none"},
                                         {"revision", 2}}));
    EXPECT_EQ(kept.at("items")[1].at("path"), path("new.c"));
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(status(), kept);
    }
    EXPECT_EQ(runs("status"), before);
    const Json again = status({{"refresh", true}});
    EXPECT_EQ(runs("status"), before + 1);
    EXPECT_EQ(again, kept);
    EXPECT_EQ(changesHeard(), 0U);
}

TEST_F(ServeWorkingCopies, IgnoredItemsComeWhenAskedFor) {
    sandbox.svn({"propset", "-q", "svn:ignore", "*.o", "."});
    sandbox.write("x.o", "");
    open(root());
    EXPECT_EQ(status().at("items").size(), 1U);
    const Json all = status({{"includeIgnored", true}});
    EXPECT_EQ(all.at("items").size(), 2U);
    EXPECT_EQ(all.at("counts").at("ignored"), 1);
}

TEST_F(ServeWorkingCopies, FactsOfChangelistsConflictsAndLocksAreThere) {
    sandbox.write("a.c", "mine\n");
    sandbox.svn({"changelist", "-q", "work", "a.c"});
    sandbox.svn({"lock", "-q", "d/b.c"});
    sandbox.svn({"move", "-q", "d/b.c", "moved.c"});
    open(root());
    std::map<std::string, Json> items;
    const Json told = status();
    for (const Json& item : told.at("items")) {
        items[item.at("path").get<std::string>().substr(root().size() + 1)] = item;
    }
    EXPECT_EQ(items["a.c"].at("changelist"), "work");
    EXPECT_EQ(items["d/b.c"].at("status"), "deleted");
    EXPECT_EQ(items["d/b.c"].at("movedTo"), path("moved.c"));
    EXPECT_TRUE(items["d/b.c"].at("lock").at("owner").is_string());
    EXPECT_EQ(items["moved.c"].at("copied"), true);
    EXPECT_EQ(items["moved.c"].at("movedFrom"), path("d/b.c"));
}

TEST_F(ServeWorkingCopies, NoticesAreGatheredAndServedByOneRun) {
    open(root());
    const std::size_t before = runs("status");
    sandbox.write("a.c", "changed\n");
    sandbox.write("d/b.c", "changed\n");
    for (int i = 0; i < 10; ++i) {
        server.notify("workingCopy/didChange", {{"paths", {path("a.c"), path("d/b.c")}}});
    }
    const Json news = heardOf("a.c", "modified");
    ASSERT_FALSE(news.is_null());
    EXPECT_EQ(news.at("params").at("workingCopy"), root());
    EXPECT_EQ(news.at("params").at("changed").size(), 2U);
    EXPECT_EQ(news.at("params").at("counts"), Json::parse(R"({"modified": 2})"));
    EXPECT_EQ(runs("status"), before + 1);
    EXPECT_EQ(status().at("generation"), news.at("params").at("generation"));
    sandbox.write("a.c", "a\n");
    server.notify("workingCopy/didChange", {{"paths", {path("a.c")}}});
    const Json gone = heardOf("a.c", "");
    ASSERT_FALSE(gone.is_null());
    EXPECT_EQ(gone.at("params").at("changed"), Json::array());
}

TEST_F(ServeWorkingCopies, NothingIsSentWhenNothingChanged) {
    open(root());
    const std::size_t before = runs("status");
    server.notify("workingCopy/didChange", {{"paths", {path("a.c")}}});
    EXPECT_TRUE(becomesTrue([&] { return runs("status") == before + 1; }));
    EXPECT_EQ(status({{"refresh", true}}).at("generation"), 1);
    EXPECT_EQ(changesHeard(), 0U);
}

TEST_F(ServeWorkingCopies, AFileInANewDirectoryIsToldByTheDirectory) {
    open(root());
    sandbox.write("n/m/f.c", "");
    server.notify("workingCopy/didChange", {{"paths", {path("n/m/f.c")}}});
    EXPECT_FALSE(heardOf("n", "unversioned").is_null());
    EXPECT_EQ(status().at("counts"), Json::parse(R"({"unversioned": 1})"));
    std::filesystem::remove_all(path("n"));
    server.notify("workingCopy/didChange", {{"paths", {path("n/m/f.c")}}});
    EXPECT_FALSE(heardOf("n", "").is_null());
}

TEST_F(ServeWorkingCopies, AnotherWorkingCopyInsideIsOneItemWhateverIsTouchedThere) {
    open(root());
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), path("n")});
    server.notify("workingCopy/didChange", {{"paths", {path("n")}}});
    EXPECT_FALSE(heardOf("n", "unversioned").is_null());
    const std::size_t before = changesHeard();
    sandbox.write("n/a.c", "changed\n");
    server.notify("workingCopy/didChange", {{"paths", {path("n"), path("n/a.c")}}});
    // What comes later has been looked at later.
    sandbox.write("b.txt", "");
    server.notify("workingCopy/didChange", {{"paths", {path("b.txt")}}});
    EXPECT_FALSE(heardOf("b.txt", "unversioned").is_null());
    EXPECT_EQ(changesHeard(), before + 1);
    EXPECT_EQ(status().at("counts"), Json::parse(R"({"unversioned": 2})"));
    std::filesystem::remove_all(path("n"));
    server.notify("workingCopy/didChange", {{"paths", {path("n")}}});
    EXPECT_FALSE(heardOf("n", "").is_null());
}

TEST_F(ServeWorkingCopies, AnExternalThatComesIsOneItemWhateverIsTouchedThere) {
    open(root());
    sandbox.svn({"propset", "-q", "svn:externals", "^/branches n", root()});
    sandbox.svn({"update", "-q"});
    EXPECT_FALSE(heardOf("n", "external").is_null());
    sandbox.write("n/new.c", "");
    server.notify("workingCopy/didChange", {{"paths", {path("n"), path("n/new.c")}}});
    sandbox.write("b.txt", "");
    server.notify("workingCopy/didChange", {{"paths", {path("b.txt")}}});
    EXPECT_FALSE(heardOf("b.txt", "unversioned").is_null());
    EXPECT_EQ(status().at("counts"),
              Json::parse(R"({"external": 1, "normal": 1, "unversioned": 1})"));
}

TEST_F(ServeWorkingCopies, CommandsOfATerminalAreSeen) {
    sandbox.write("a.c", "changed\n");
    open(root());
    sandbox.svn({"revert", "-q", "a.c"});
    EXPECT_FALSE(heardOf("a.c", "").is_null());
    sandbox.svn({"rm", "-q", "a.c"});
    EXPECT_FALSE(heardOf("a.c", "deleted").is_null());
}

TEST_F(ServeWorkingCopies, AWorkingCopyThatGoesIsClosed) {
    open(root());
    std::filesystem::remove_all(sandbox.workingCopy());
    EXPECT_TRUE(server.client().waitFor([&](const Json& message) {
        return message.value("method", "") == "workingCopy/didClose" &&
               message.at("params").at("workingCopy") == root();
    }));
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 0);
}

TEST_F(ServeWorkingCopies, CloseEndsTheWatch) {
    open(root());
    EXPECT_EQ(server.ask("workingCopy/close", {{"workingCopy", root()}}), nullptr);
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 0);
    EXPECT_EQ(server.ask("workingCopy/close", {{"workingCopy", root()}}), nullptr);
    EXPECT_EQ(status().at("counts"), Json::object());
}

TEST_F(ServeWorkingCopies, IncomingChangesAreTold) {
    open(root());
    const std::string other = (sandbox.root() / "other").string();
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), other});
    sandbox.write(other + "/a.c", "theirs\n");
    sandbox.svn({"commit", "-q", "-m", "theirs", other});
    const Json incoming = server.ask("workingCopy/incoming", {{"workingCopy", root()}});
    ASSERT_EQ(incoming.at("items").size(), 1U) << incoming;
    EXPECT_EQ(incoming.at("items")[0].at("path"), path("a.c"));
    EXPECT_EQ(incoming.at("items")[0].at("incoming"), "modified");
    EXPECT_EQ(incoming.at("failure"), nullptr);
}

TEST_F(ServeWorkingCopies, InfoHasARecordForEachPath) {
    sandbox.write("new.c", "");
    const Json info = server.ask("workingCopy/info", {{"paths", {path("a.c"), path("new.c")}}});
    ASSERT_EQ(info.at("items").size(), 2U);
    EXPECT_EQ(info.at("items")[0].at("url"), sandbox.url("trunk/a.c"));
    EXPECT_EQ(info.at("items")[0].at("changed").at("revision"), 2);
    EXPECT_EQ(info.at("items")[1].at("path"), path("new.c"));
    EXPECT_EQ(info.at("items")[1].at("url"), nullptr);
}

TEST_F(ServeWorkingCopies, InfoNamesWhatTheClientSaysOfAConflictOfProperties) {
    sandbox.svn({"propset", "-q", "p", "theirs", "a.c"});
    sandbox.svn({"commit", "-q", "-m", "theirs", "a.c"});
    sandbox.svn({"update", "-q", "-r", "PREV", "a.c"});
    sandbox.svn({"propset", "-q", "p", "mine", "a.c"});
    sandbox.svn({"update", "-q", "--accept", "postpone", "a.c"});
    const Json info = server.ask("workingCopy/info", {{"paths", {path("a.c")}}});
    const Json& conflicts = info.at("items")[0].at("conflicts");
    ASSERT_EQ(conflicts.size(), 1U);
    EXPECT_EQ(conflicts[0].at("kind"), "property");
    EXPECT_EQ(conflicts[0].at("theirs"), nullptr);
    EXPECT_EQ(conflicts[0].at("properties"), path("a.c.prej"));
}

TEST_F(ServeWorkingCopies, StatusComesInPartsWhereAsked) {
    for (int i = 0; i < 2500; ++i) {
        sandbox.write("many/" + std::to_string(i), "");
    }
    sandbox.svn({"add", "-q", "many"});
    // The first one, while the client writes, and one that a person asks for.
    for (const bool refresh : {false, true}) {
        const std::string token = refresh ? "second" : "first";
        const int id = server.start(
            "workingCopy/status",
            {{"workingCopy", root()}, {"refresh", refresh}, {"partialResultToken", token}});
        const Json answer = server.answer(id).at("result");
        EXPECT_EQ(answer.at("items"), Json::array());
        EXPECT_EQ(answer.at("counts").at("added"), 2501);
        EXPECT_EQ(itemsInParts(token), 2501U) << token;
    }
}

TEST_F(ServeWorkingCopies, WhoOpensOneBesideItsFirstStatusWaitsForThat) {
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), path("n")});
    const int status = server.start("workingCopy/status", {{"workingCopy", root()}});
    const int opened = server.start("workingCopy/open", {{"path", root()}});
    EXPECT_EQ(server.answer(opened).at("result").at("nested"), Json::array({path("n")}));
    EXPECT_EQ(server.answer(status).at("result").at("counts").at("unversioned"), 1);
    EXPECT_EQ(server.ask("server/statistics").at("clientRuns").at("status"), 1);
}

TEST_F(ServeWorkingCopies, RootsAreDiscovered) {
    RunningServer other(sandbox);
    other.ask("initialize", {{"roots", {sandbox.root().string()}}});
    other.notify("initialized");
    EXPECT_TRUE(other.client().waitFor([&](const Json& message) {
        return message.value("method", "") == "workingCopy/didOpen" &&
               message.at("params").at("workingCopy") == root();
    }));
}

TEST_F(ServeWorkingCopies, TwoServersFollowOneWorkingCopy) {
    RunningServer other(sandbox);
    other.initialize();
    open(root());
    other.ask("workingCopy/open", {{"path", root()}});
    sandbox.write("new.c", "");
    EXPECT_EQ(other.ask("change/add", {{"paths", {path("new.c")}}}).at("failure"), nullptr);
    EXPECT_FALSE(heardOf("new.c", "added").is_null());
}

TEST_F(ServeWorkingCopies, WhatIsNotOneIsRefusedWithThePath) {
    const Json error = server.ask("workingCopy/status", {{"workingCopy", path("d")}});
    EXPECT_EQ(error.at("code"), -32602);
    EXPECT_THAT(error.at("message").get<std::string>(),
                HasSubstr("params.workingCopy: expected the top"));
}

} // namespace

} // namespace quen::test
