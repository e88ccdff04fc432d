#include "Tests/Server/RunningServer.h"

#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class ServeBranches : public ::testing::Test {
protected:
    ServeBranches() { server.initialize(); }

    Json ask(const std::string& method, Json params = Json::object()) {
        params["workingCopy"] = sandbox.workingCopy().string();
        return server.ask(method, params);
    }

    Sandbox sandbox;
    RunningServer server{sandbox};
};

TEST_F(ServeBranches, AreMadeListedAndTakenAway) {
    const Json made = ask("branch/create", {{"name", "new one"}, {"message", "a branch"}});
    EXPECT_EQ(made.at("revision"), 2) << made;
    EXPECT_EQ(made.at("url"), sandbox.url("branches/new%20one"));
    const Json list = ask("branch/list").at("branches");
    ASSERT_EQ(list.size(), 2U) << list;
    EXPECT_EQ(list[0], Json({{"name", "trunk"}, {"isTrunk", true}, {"url", sandbox.url("trunk")}}));
    EXPECT_EQ(list[1].at("name"), "new one");
    EXPECT_EQ(list[1].at("url"), made.at("url"));
    EXPECT_EQ(ask("branch/current").at("branch").at("name"), "trunk");
    EXPECT_EQ(ask("branch/delete", {{"url", made.at("url")}, {"message", "away"}}).at("revision"),
              3);
    EXPECT_EQ(ask("branch/list").at("branches").size(), 1U);
}

TEST_F(ServeBranches, TagsLieBesideThem) {
    EXPECT_EQ(ask("tag/create", {{"name", "v@1"}, {"message", "a tag"}}).at("revision"), 2);
    EXPECT_EQ(sandbox.svn({"list", sandbox.url("tags")}), "v@1/\n");
    EXPECT_EQ(ask("tag/delete", {{"name", "v@1"}, {"message", "away"}}).at("revision"), 3);
    EXPECT_EQ(sandbox.svn({"list", sandbox.url("tags")}), "");
}

TEST_F(ServeBranches, NamesThatLeaveTheFolderAreRefused) {
    for (const char* name : {"", "..", "a/../b", "/", "a//b"}) {
        const Json error = ask("branch/delete", {{"name", name}, {"message", "x"}});
        EXPECT_EQ(error.value("code", 0), -32602) << name;
    }
    const Json error = ask("branch/delete", {{"url", sandbox.url("trunk")}, {"message", "x"}});
    EXPECT_THAT(error.value("message", ""), HasSubstr("params.url: expected a URL below"));
}

TEST_F(ServeBranches, TheLayoutIsThatOfTheSettings) {
    sandbox.write(".quen", "trunk = ^/branches/main\nbranches = ^/branches\n");
    sandbox.svn({"copy", "-q", "-m", "x", sandbox.url("trunk"), sandbox.url("branches/main")});
    EXPECT_EQ(ask("branch/list").at("branches")[0].at("url"), sandbox.url("branches/main"));
}

} // namespace

} // namespace quen::test
