#include "Tests/Server/ServedFiles.h"

#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class ServePlans : public ServedFiles {
protected:
    ServePlans() {
        commitTwoFiles();
        openWorkingCopy();
    }

    Json plan(Json params, const std::string& kind) {
        params["kind"] = kind;
        Json told = server.ask("change/plan", params);
        EXPECT_EQ(told.value("failure", Json("none told")), nullptr) << told;
        return told;
    }
    Json planOf(const std::string& name, const std::string& kind) {
        return plan({{"paths", {path(name)}}}, kind);
    }
    void makeBranch() const {
        sandbox.svn({"copy", "-q", "-m", "b", sandbox.url("trunk"), sandbox.url("branches/b")});
    }
};

TEST_F(ServePlans, EveryKindAnswersEveryMemberAndChangesNothing) {
    makeBranch();
    sandbox.write("a.c", "changed\n");
    sandbox.write("new.c", "");
    const std::string before = sandbox.svn({"status"});
    for (const char* kind : {"commit", "revert", "remove", "update", "merge", "switch"}) {
        Json params{{"paths", {root()}}};
        if (std::string_view(kind) == "merge" || std::string_view(kind) == "switch") {
            params["url"] = sandbox.url("branches/b");
        }
        const Json told = plan(params, kind);
        for (const char* member :
             {"items", "alsoTaken", "lost", "needsParents", "groups", "decidedForMine",
              "needsOtherEnds", "conflicts", "inTheWay", "localChanges"}) {
            EXPECT_TRUE(told.at(member).is_array()) << kind << member;
        }
        EXPECT_EQ(told.at("groups"), Json::array({{{"workingCopy", root()}, {"paths", {root()}}}}))
            << kind;
        EXPECT_EQ(sandbox.svn({"status"}), before) << kind;
    }
}

TEST_F(ServePlans, OfACommitSaysWhatGoesAlong) {
    sandbox.write("d/b.c", "changed\n");
    sandbox.write("d/new.c", "");
    const Json told = planOf("d", "commit");
    EXPECT_EQ(told.at("items"), Json::array({itemOf(path("d/b.c"), "modified")}));
    EXPECT_EQ(told.at("alsoTaken"), Json::array({path("d/b.c")}));
    EXPECT_EQ(told.at("lost"), Json::array());
}

TEST_F(ServePlans, OfACommitNamesParentsThatMustGoAlong) {
    sandbox.write("n/m/f.c", "");
    const Json unversioned = planOf("n/m/f.c", "commit");
    EXPECT_EQ(unversioned.at("needsParents"), Json::array({path("n"), path("n/m")}));
    EXPECT_EQ(unversioned.at("items"), Json::array());
    sandbox.svn({"add", "-q", "n"});
    EXPECT_EQ(planOf("n/m/f.c", "commit").at("needsParents"),
              Json::array({path("n"), path("n/m")}));
}

TEST_F(ServePlans, OfACommitNamesOtherEndsAndConflicts) {
    sandbox.svn({"move", "-q", "a.c", "moved.c"});
    EXPECT_EQ(planOf("moved.c", "commit").at("needsOtherEnds"), Json::array({path("a.c")}));
    changeElsewhere("d/b.c", "theirs\n");
    sandbox.write("d/b.c", "mine\n");
    sandbox.svn({"update", "-q", "--accept", "postpone"});
    EXPECT_EQ(planOf("d", "commit").at("conflicts"), Json::array({path("d/b.c")}));
}

TEST_F(ServePlans, OfALossSayWhatIsLost) {
    sandbox.write("d/b.c", "changed\n");
    sandbox.write("d/new.c", "");
    sandbox.write("d/added.c", "");
    sandbox.svn({"add", "-q", "d/added.c"});
    const Json revert = planOf("d", "revert");
    EXPECT_EQ(revert.at("lost"), Json::array({path("d/b.c")}));
    EXPECT_EQ(revert.at("alsoTaken"), Json::array({path("d/added.c"), path("d/b.c")}));
    const Json remove = planOf("d", "remove");
    EXPECT_EQ(remove.at("lost"), Json::array({path("d/added.c"), path("d/b.c"), path("d/new.c")}));
    EXPECT_EQ(remove.at("items")[0], itemOf(path("d"), "deleted"));
    EXPECT_EQ(planOf("a.c", "remove").at("items"), Json::array({itemOf(path("a.c"), "deleted")}));
}

TEST_F(ServePlans, OfAnUpdateSaysWhatWillBeDecidedForMine) {
    changeElsewhere("a.c", "theirs\n");
    changeElsewhere("new.c", "theirs\n");
    sandbox.write("a.c", "mine\n");
    sandbox.write("new.c", "mine\n");
    const Json told = plan({{"paths", {root()}}}, "update");
    EXPECT_THAT(told.at("items"), ::testing::UnorderedElementsAre(itemOf(root(), "modified"),
                                                                  itemOf(path("a.c"), "modified"),
                                                                  itemOf(path("new.c"), "added")));
    EXPECT_EQ(told.at("decidedForMine"), Json::array({path("a.c")}));
    EXPECT_EQ(told.at("inTheWay"), Json::array({path("new.c")}));
    EXPECT_EQ(told.at("localChanges"), Json::array({path("a.c")}));
}

TEST_F(ServePlans, OfAMergeIsWhatTheMergeThenSays) {
    makeBranch();
    changeElsewhere("a.c", "branch\n", "branches/b");
    changeElsewhere("d/b.c", "branch\n", "branches/b");
    sandbox.write("a.c", "trunk\n");
    sandbox.commit("trunk");
    const Json source{{"url", sandbox.url("branches/b")}};
    Json params = source;
    params["paths"] = {root()};
    const Json told = plan(params, "merge");
    EXPECT_THAT(told.at("items").dump(), HasSubstr(path("d/b.c")));
    EXPECT_EQ(told.at("decidedForMine"), Json::array({path("a.c")}));
    Json range = params;
    range["from"] = 3;
    range["to"] = 4;
    EXPECT_THAT(plan(range, "merge").at("items").dump(), Not(HasSubstr(path("d/b.c"))));

    params = source;
    params["workingCopy"] = root();
    const Json done = server.ask("branch/merge", params);
    ASSERT_EQ(done.at("settled").size(), 1U) << done;
    EXPECT_EQ(done.at("settled")[0].at("path"), path("a.c"));
    EXPECT_EQ(sandbox.read("a.c"), "trunk\n");
    EXPECT_EQ(sandbox.read(done.at("settled")[0].at("theirs").get<std::string>()), "branch\n");
}

TEST_F(ServePlans, OfASwitchSaysWhatWillConflict) {
    makeBranch();
    changeElsewhere("a.c", "branch\n", "branches/b");
    changeElsewhere("d/b.c", "branch\n", "branches/b");
    changeElsewhere("new.c", "branch\n", "branches/b");
    sandbox.write("a.c", "mine\n");
    sandbox.write("new.c", "mine\n");
    const Json told = plan({{"paths", {root()}}, {"url", sandbox.url("branches/b")}}, "switch");
    EXPECT_EQ(told.at("items"),
              Json::array({itemOf(path("a.c"), "modified"), itemOf(path("d/b.c"), "modified"),
                           itemOf(path("new.c"), "added")}));
    EXPECT_EQ(told.at("conflicts"), Json::array({path("a.c")}));
    EXPECT_EQ(told.at("inTheWay"), Json::array({path("new.c")}));
    EXPECT_EQ(told.at("localChanges"), Json::array({path("a.c")}));
}

TEST_F(ServePlans, OfSeveralWorkingCopiesGroupTheirPaths) {
    const std::string other = (sandbox.root() / "other").string();
    sandbox.svn({"checkout", "-q", sandbox.url("trunk"), other});
    sandbox.write("a.c", "changed\n");
    sandbox.write(other + "/a.c", "changed\n");
    const Json told = plan({{"paths", {path("a.c"), other + "/a.c", path("d")}}}, "commit");
    EXPECT_EQ(told.at("groups"),
              Json::array({{{"workingCopy", root()}, {"paths", {path("a.c"), path("d")}}},
                           {{"workingCopy", other}, {"paths", {other + "/a.c"}}}}));
}

TEST_F(ServePlans, WhatTheClientRefusesIsAnOutcome) {
    const Json told =
        server.ask("change/plan", {{"kind", "merge"},
                                   {"paths", {root()}},
                                   {"url", "file://" + (sandbox.root() / "none").string()}});
    EXPECT_EQ(told.at("failure"), "other") << told;
    EXPECT_FALSE(told.at("error").at("codes").empty());
}

TEST_F(ServePlans, RefusalsNameTheMember) {
    const std::string url = sandbox.url("branches/b");
    const std::vector<std::pair<Json, const char*>> refusals{
        {{{"kind", "x"}, {"paths", {root()}}}, "params.kind: expected"},
        {{{"kind", "merge"}, {"paths", {root()}}}, "params.url: required"},
        {{{"kind", "commit"}, {"paths", {root()}}, {"url", url}}, "params.url: unknown member"},
        {{{"kind", "switch"}, {"paths", {root()}}, {"url", url}, {"from", 1}},
         "params.from: unknown member"},
        {{{"kind", "switch"}, {"paths", {root(), path("d")}}, {"url", url}},
         "params.paths: expected one path"},
        {{{"kind", "merge"}, {"paths", {root()}}, {"url", url}, {"from", 1}},
         "params: expected both"},
        {{{"kind", "revert"}, {"paths", {path("a.c"), "/"}}},
         "params.paths[1]: lies in no working copy"}};
    for (const auto& [params, message] : refusals) {
        const Json error = server.ask("change/plan", params);
        EXPECT_EQ(error.value("code", 0), -32602) << error;
        EXPECT_THAT(error.value("message", ""), HasSubstr(message));
    }
}

} // namespace

} // namespace quen::test
