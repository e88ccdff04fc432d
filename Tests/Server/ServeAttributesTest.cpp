#include "Tests/Server/ServedFiles.h"
#include "Tools/Console/Base64.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

/// Changelists, properties, locks, patches, and what an administrator mends.
class ServeAttributes : public ServedFiles {
protected:
    ServeAttributes() {
        sandbox.write("a.c", "a\n");
        sandbox.write("b@2.c", "b\n");
        sandbox.svn({"add", "-q", "a.c", "b@2.c@"});
        sandbox.commit("Two files");
        openWorkingCopy();
    }

    /// What is kept of an item; null where nothing is.
    Json item(const std::string& name) {
        const Json status = server.ask("workingCopy/status", {{"workingCopy", root()}});
        for (const Json& each : status.at("items")) {
            if (each.at("path") == path(name)) {
                return each;
            }
        }
        return nullptr;
    }
    Json properties(const std::string& name) {
        return server.ask("property/list", {{"path", path(name)}}).at("properties");
    }
};

TEST_F(ServeAttributes, AFileGoesIntoAChangelistAndOutOfIt) {
    const Json both = {path("a.c"), path("b@2.c")};
    sandbox.write("a.c", "changed\n");
    const Json listed = server.ask("change/changelist", {{"paths", both}, {"name", "two words"}});
    EXPECT_EQ(listed.at("items")[1], Json({{"path", path("b@2.c")}, {"action", "listed"}}))
        << listed;
    EXPECT_EQ(item("a.c").at("changelist"), "two words");
    server.ask("change/changelist", {{"paths", both}, {"name", nullptr}});
    EXPECT_FALSE(item("a.c").contains("changelist"));
    for (const char* name : {"", "-q"}) {
        const Json refused = server.ask("change/changelist", {{"paths", both}, {"name", name}});
        EXPECT_THAT(refused.value("message", ""), HasSubstr("params.name: expected a name"));
    }
}

TEST_F(ServeAttributes, PropertiesAreSetListedAndTakenAway) {
    for (const char* value : {"one", "-F /etc/passwd", "two\nlines\n", "", "Größe 日本"}) {
        const Json set = server.ask("property/set",
                                    {{"paths", {path("b@2.c")}}, {"name", "p"}, {"value", value}});
        EXPECT_EQ(set.at("error"), nullptr) << set;
        EXPECT_EQ(properties("b@2.c"), Json::array({{{"name", "p"}, {"value", value}}}));
    }
    EXPECT_EQ(item("b@2.c").at("property"), "modified");
    server.ask("property/set", {{"paths", {path("b@2.c")}}, {"name", "p"}, {"value", nullptr}});
    EXPECT_EQ(properties("b@2.c"), Json::array());
    EXPECT_EQ(item("b@2.c"), nullptr);
}

TEST_F(ServeAttributes, APropertyThatTheClientRefusesIsAFailure) {
    const Json set = server.ask(
        "property/set", {{"paths", {path("a.c")}}, {"name", "svn:eol-style"}, {"value", "odd"}});
    EXPECT_EQ(set.at("failure"), "other");
    EXPECT_EQ(set.at("items"), Json::array());
    EXPECT_THAT(set.at("error").at("clientText").get<std::string>(),
                HasSubstr("line ending style 'odd'"));
}

TEST_F(ServeAttributes, ALockIsTakenShownStolenAndReleased) {
    // The comment is the name of a file that is there: it is text all the same.
    const Json taken = server.ask("lock/get", {{"paths", {path("a.c")}}, {"message", "a.c"}});
    EXPECT_EQ(taken.at("error"), nullptr) << taken;
    EXPECT_EQ(item("a.c").at("lock").at("comment"), "a.c");
    const std::string other = (sandbox.root() / "other").string();
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), other});
    const Json theirs = {other + "/a.c"};
    EXPECT_EQ(server.ask("lock/get", {{"paths", theirs}}).at("failure"), "other");
    EXPECT_EQ(server.ask("lock/get", {{"paths", theirs}, {"steal", true}}).at("error"), nullptr);
    EXPECT_EQ(server.ask("lock/release", {{"paths", theirs}}).at("error"), nullptr);
    EXPECT_THAT(sandbox.svn({"info", sandbox.url("trunk/a.c")}), ::testing::Not(HasSubstr("Lock")));
}

TEST_F(ServeAttributes, APatchIsApplied) {
    sandbox.write("a.c", "changed\n");
    const Json patch = server.ask("diff/text", {{"paths", {path("a.c")}}}).at("base64");
    EXPECT_THAT(tools::bytesFromBase64(patch.get<std::string>()).value_or(""),
                HasSubstr("Index: a.c\n"));
    sandbox.svn({"revert", "-q", "a.c"});
    const Json done = server.ask("change/patch", {{"workingCopy", root()}, {"base64", patch}});
    EXPECT_EQ(done.at("items"), Json::array({{{"path", path("a.c")}, {"action", "updated"}}}))
        << done;
    EXPECT_EQ(item("a.c").at("status"), "modified");
}

TEST_F(ServeAttributes, AnOldMessageIsReplacedAlsoInWhatIsKept) {
    const Json log = {{"path", path("a.c")}, {"limit", 1}, {"from", 2}};
    EXPECT_EQ(server.ask("history/log", log).at("entries")[0].at("message"), "Two files");
    const Json change = {{"path", root()}, {"revision", 2}, {"message", "New\nwords"}};
    EXPECT_EQ(server.ask("history/setMessage", change).at("failure"), "other");
    const auto hook = sandbox.root() / "repository/hooks/pre-revprop-change";
    std::ofstream(hook) << "#!/bin/sh\nexit 0\n";
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
    EXPECT_EQ(server.ask("history/setMessage", change).at("error"), nullptr);
    EXPECT_EQ(server.ask("history/log", log).at("entries")[0].at("message"), "New\nwords");
}

TEST_F(ServeAttributes, ABranchIsRecordedAsMergedWithoutItsChanges) {
    const std::string url = sandbox.url("branches/b");
    sandbox.svn({"copy", "-q", "-m", "Branch", sandbox.url("trunk"), url});
    sandbox.svn({"mkdir", "-q", "-m", "Directory", url + "/new"});
    sandbox.svn({"update", "-q"});
    const Json done = server.ask("branch/recordMerge", {{"workingCopy", root()}, {"url", url}});
    EXPECT_EQ(done.at("error"), nullptr) << done;
    EXPECT_FALSE(std::filesystem::exists(path("new")));
    EXPECT_THAT(sandbox.svn({"propget", "svn:mergeinfo", root()}), HasSubstr("/branches/b:"));
}

TEST_F(ServeAttributes, AWorkingCopyFollowsItsRepository) {
    const auto moved = sandbox.root() / "moved";
    std::filesystem::rename(sandbox.root() / "repository", moved);
    const std::string url = "file://" + moved.string() + "/trunk";
    const Json done = server.ask("workingCopy/relocate", {{"workingCopy", root()}, {"url", url}});
    EXPECT_EQ(done.at("error"), nullptr) << done;
    EXPECT_EQ(server.ask("workingCopy/open", {{"path", root()}}).at("url"), url);
}

} // namespace

} // namespace quen::test
