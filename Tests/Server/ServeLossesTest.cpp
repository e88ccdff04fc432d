#include "Tests/Server/ServedFiles.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class ServeLosses : public FilesToServe {
protected:
    ServeLosses() {
        commitTwoFiles();
        sandbox.write("a.c", "edited\n");
    }
};

TEST_F(ServeLosses, ARevertKeepsWhatItTakesAndUndoBringsItBack) {
    RunningServer server(sandbox);
    server.initialize();
    server.ask("workingCopy/open", {{"path", root()}});
    sandbox.svn({"propset", "-q", "colour", "green", "d"});
    const Json done = server.ask("change/revert", {{"paths", {root()}}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_EQ(done.at("kept"), Json::array({path("a.c")}));
    EXPECT_EQ(sandbox.read("a.c"), "a\n");
    EXPECT_EQ(countsOf(server), Json::object());

    const Json back = server.ask("change/undo", {{"workingCopy", root()}});
    EXPECT_EQ(back.at("step"), "revert") << back;
    EXPECT_EQ(back.at("items"), Json::array({itemOf(path("a.c"), "restored")}));
    EXPECT_EQ(back.at("notRestored"), Json::array());
    EXPECT_THAT(back.at("notes").dump(), HasSubstr("green"));
    EXPECT_EQ(sandbox.read("a.c"), "edited\n");
    EXPECT_EQ(countsOf(server), Json::parse(R"({"modified": 1})"));

    const Json nothing = server.ask("change/undo", {{"workingCopy", root()}});
    EXPECT_EQ(nothing.at("step"), nullptr) << nothing;
    EXPECT_EQ(nothing.at("error"), nullptr);
}

TEST_F(ServeLosses, ARemovalKeepsWhatIsInNoRevision) {
    RunningServer server(sandbox);
    server.initialize();
    sandbox.write("d/new.c", "new\n");
    sandbox.write("d/b.c", "edited too\n");
    const Json done = server.ask("change/remove", {{"paths", {path("d")}}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_EQ(done.at("kept"), Json::array({path("d/b.c"), path("d/new.c")}));
    EXPECT_FALSE(std::filesystem::exists(path("d")));
    EXPECT_EQ(server.ask("change/undo", {{"workingCopy", root()}}).at("items").size(), 2U);
    EXPECT_EQ(sandbox.read("d/b.c"), "edited too\n");
    EXPECT_EQ(sandbox.read("d/new.c"), "new\n");
}

TEST_F(ServeLosses, NewerWorkStaysAndWhatWasKeptGoesBeside) {
    RunningServer server(sandbox);
    server.initialize();
    server.ask("change/revert", {{"paths", {path("a.c")}}});
    sandbox.write("a.c", "newer\n");
    const Json back = server.ask("change/undo", {{"workingCopy", root()}});
    ASSERT_EQ(back.at("notRestored").size(), 1U) << back;
    EXPECT_EQ(back.at("notRestored")[0].at("path"), path("a.c"));
    EXPECT_EQ(sandbox.read(back.at("notRestored")[0].at("beside").get<std::string>()), "edited\n");
    EXPECT_EQ(sandbox.read("a.c"), "newer\n");
}

TEST_F(ServeLosses, WhatCannotBeKeptStaysUntilItMayGo) {
    RunningServer server(sandbox, {}, {"XDG_STATE_HOME=/dev/null"});
    server.initialize();
    const Json refused = server.ask("change/revert", {{"paths", {path("a.c")}}});
    EXPECT_EQ(refused.value("code", 0), -32602) << refused;
    EXPECT_THAT(refused.at("message").get<std::string>(), HasSubstr(path("a.c")));
    EXPECT_EQ(refused.at("data").at("notKept")[0].at("path"), path("a.c"));
    EXPECT_EQ(sandbox.read("a.c"), "edited\n");
    const Json done = server.ask("change/revert", {{"paths", {path("a.c")}}, {"notKept", true}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_EQ(done.at("kept"), Json::array());
    EXPECT_EQ(sandbox.read("a.c"), "a\n");
}

TEST_F(ServeLosses, WithoutALossNothingIsKept) {
    RunningServer server(sandbox, {}, {"XDG_STATE_HOME=/dev/null"});
    server.initialize();
    sandbox.write("new.c", "");
    sandbox.svn({"add", "-q", "new.c"});
    const Json done = server.ask("change/revert", {{"paths", {path("new.c")}}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_EQ(done.at("items"), Json::array({itemOf(path("new.c"), "reverted")}));
}

} // namespace

} // namespace quen::test
