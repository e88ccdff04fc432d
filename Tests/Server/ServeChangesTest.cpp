#include "Tests/Server/ServedFiles.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class ServeChanges : public ServedFiles {
protected:
    ServeChanges() {
        commitTwoFiles();
        openWorkingCopy();
    }

    Json change(const std::string& method, const Json& params) {
        return server.ask("change/" + method, params);
    }
};

TEST_F(ServeChanges, ACommitAnswersItsRevision) {
    sandbox.write("a.c", "changed\n");
    const Json done = change("commit", {{"paths", {path("a.c")}}, {"message", "a.c"}});
    EXPECT_EQ(done.at("revision"), 3) << done;
    EXPECT_EQ(done.at("failure"), nullptr);
    EXPECT_EQ(counts(), Json::object());
    EXPECT_EQ(done.at("items"), Json::array({itemOf(path("a.c"), "sent")}));
    // The message is the name of a file that is there: it is text all the same.
    EXPECT_EQ(
        sandbox.svn({"propget", "--no-newline", "--revprop", "-r3", "svn:log", sandbox.url()}),
        "a.c");
}

TEST_F(ServeChanges, ACommitOfADirectoryTakesNothingAlongUnasked) {
    sandbox.write("d/b.c", "changed\n");
    sandbox.svn({"propset", "-q", "p", "v", "d"});
    const Json refused = change("commit", {{"paths", {path("d")}}, {"message", "x"}});
    EXPECT_EQ(refused.at("code"), -32602);
    EXPECT_THAT(refused.at("message").get<std::string>(), HasSubstr(path("d/b.c")));
    EXPECT_EQ(refused.at("data").at("alsoTaken"), Json::array({path("d/b.c")}));
    const Json done =
        change("commit", {{"paths", {path("d")}}, {"message", "x"}, {"alsoTaken", true}});
    EXPECT_EQ(done.at("revision"), 3);
    EXPECT_EQ(counts(), Json::object());
}

TEST_F(ServeChanges, ACommitOfNothingHasNoRevision) {
    const Json done = change("commit", {{"paths", {path("a.c")}}, {"message", "x"}});
    EXPECT_EQ(done.at("revision"), nullptr);
    EXPECT_EQ(done.at("error"), nullptr);
}

TEST_F(ServeChanges, AddRemoveAndRevertSayWhatTheyDid) {
    sandbox.write("new.c", "");
    EXPECT_EQ(change("add", {{"paths", {path("new.c")}}}).at("items"),
              Json::array({itemOf(path("new.c"), "added")}));
    EXPECT_EQ(counts(), Json::parse(R"({"added": 1})"));
    EXPECT_EQ(change("remove", {{"paths", {path("a.c")}}}).at("items"),
              Json::array({itemOf(path("a.c"), "deleted")}));
    EXPECT_EQ(counts(), Json::parse(R"({"added": 1, "deleted": 1})"));
    EXPECT_EQ(change("revert", {{"paths", {path("a.c")}}}).at("items"),
              Json::array({itemOf(path("a.c"), "reverted")}));
    EXPECT_EQ(counts(), Json::parse(R"({"added": 1})"));
    EXPECT_EQ(sandbox.read("a.c"), "a\n");
}

TEST_F(ServeChanges, NamesOfAllKindsGoThroughAsTheyAre) {
    for (const char* name :
         {"with blank.c", "at@2.c", "-dash.c", "\xD1\x84\xD0\xB0\xD0\xB9\xD0\xBB.c"}) {
        sandbox.write(name, "");
        EXPECT_EQ(change("add", {{"paths", {path(name)}}}).at("failure"), nullptr) << name;
        const Json done = change("commit", {{"paths", {path(name)}}, {"message", name}});
        EXPECT_TRUE(done.at("revision").is_number()) << done;
    }
    EXPECT_EQ(counts(), Json::object());
}

TEST_F(ServeChanges, MoveCopyAndMakeDirectoryAreRecorded) {
    EXPECT_EQ(change("move", {{"from", path("a.c")}, {"to", path("x/y.c")}}).at("failure"),
              nullptr);
    EXPECT_EQ(change("copy", {{"from", path("d")}, {"to", path("e")}}).at("failure"), nullptr);
    EXPECT_EQ(change("makeDirectory", {{"paths", {path("f"), path("g")}}}).at("failure"), nullptr);
    const std::string status = sandbox.svn({"status"});
    for (const char* line :
         {"D       a.c", "A  +    x/y.c", "A  +    e\n", "A       f", "A       g"}) {
        EXPECT_THAT(status, HasSubstr(line));
    }
}

TEST_F(ServeChanges, AMoveOfTheEditorIsAdopted) {
    std::filesystem::rename(path("a.c"), path("moved.c"));
    EXPECT_EQ(change("adoptMove", {{"from", path("a.c")}, {"to", path("moved.c")}}).at("failure"),
              nullptr);
    EXPECT_THAT(sandbox.svn({"status"}), HasSubstr("A  +    moved.c"));
    EXPECT_EQ(sandbox.read("moved.c"), "a\n");
}

TEST_F(ServeChanges, AMoveThatTheClientRefusesStaysAsTheEditorMadeIt) {
    sandbox.write("plain.c", "plain\n");
    std::filesystem::rename(path("plain.c"), path("moved.c"));
    const Json refused = change("adoptMove", {{"from", path("plain.c")}, {"to", path("moved.c")}});
    EXPECT_EQ(refused.at("failure"), "other");
    EXPECT_EQ(sandbox.read("moved.c"), "plain\n");
    EXPECT_FALSE(std::filesystem::exists(path("plain.c")));
    EXPECT_EQ(change("adoptMove", {{"from", path("a.c")}, {"to", path("none.c")}}).at("code"),
              -32602);
}

TEST_F(ServeChanges, NamesAreIgnoredAndNoLonger) {
    sandbox.write("x.made", "");
    EXPECT_EQ(change("ignore", {{"paths", {path("x.made")}}}).at("items"),
              Json::array({itemOf(path("x.made"), "ignored")}));
    EXPECT_EQ(counts(), Json::parse(R"({"normal": 1})"));
    EXPECT_EQ(change("unignore", {{"paths", {path("x.made")}}}).at("failure"), nullptr);
    EXPECT_EQ(counts(), Json::parse(R"({"unversioned": 1})"));
    EXPECT_THAT(change("ignore", {{"paths", {path("a@b")}}}).at("message").get<std::string>(),
                HasSubstr("params.paths[0]: holds an @"));
}

TEST_F(ServeChanges, AnUpdateSaysWhatCameAndWhatWasSettled) {
    changeElsewhere("a.c", "theirs\n");
    sandbox.write("a.c", "mine\n");
    const Json done = server.ask("workingCopy/update", {{"paths", {root()}}});
    EXPECT_EQ(done.at("revision"), 3) << done;
    EXPECT_EQ(done.at("failure"), nullptr);
    EXPECT_EQ(done.at("items"), Json::array({itemOf(path("a.c"), "conflicted")}));
    ASSERT_EQ(done.at("settled").size(), 1U) << done;
    EXPECT_EQ(done.at("settled")[0].at("path"), path("a.c"));
    EXPECT_EQ(done.at("settled")[0].at("kind"), "text");
    EXPECT_EQ(sandbox.read(done.at("settled")[0].at("theirs").get<std::string>()), "theirs\n");
    EXPECT_EQ(done.at("conflicts"), Json::array());
    EXPECT_EQ(sandbox.read("a.c"), "mine\n");
}

TEST_F(ServeChanges, AConflictIsResolvedAsAsked) {
    for (const auto& [accept, text] :
         {std::pair{"theirs", "theirs\n"}, std::pair{"mine", "mine\n"}}) {
        changeElsewhere("a.c", "before\n");
        sandbox.svn({"update", "-q"});
        changeElsewhere("a.c", "theirs\n");
        sandbox.write("a.c", "mine\n");
        sandbox.svn({"update", "-q", "--accept", "postpone"});
        EXPECT_EQ(change("resolve", {{"paths", {path("a.c")}}, {"accept", accept}}).at("failure"),
                  nullptr);
        EXPECT_EQ(sandbox.read("a.c"), text);
        sandbox.svn({"revert", "-q", "a.c"});
    }
}

TEST_F(ServeChanges, SwitchMergeAndCheckoutTellTheirOutcome) {
    sandbox.svn({"copy", "-q", "-m", "branch", sandbox.url("trunk"), sandbox.url("branches/b")});
    sandbox.write("a.c", "trunk\n");
    sandbox.commit("change of trunk");
    Json done = server.ask("workingCopy/switch",
                           {{"workingCopy", root()}, {"url", sandbox.url("branches/b")}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_EQ(sandbox.read("a.c"), "a\n");
    EXPECT_EQ(server.ask("branch/current", {{"workingCopy", root()}}).at("branch"),
              Json::parse(R"({"name": "b", "isTrunk": false})"));
    done = server.ask("branch/merge", {{"workingCopy", root()}, {"url", sandbox.url("trunk")}});
    EXPECT_EQ(done.at("failure"), nullptr) << done;
    EXPECT_THAT(done.at("items").dump(),
                HasSubstr(R"({"action":"updated","path":")" + path("a.c")));
    const std::string fresh = (sandbox.root() / "fresh").string();
    done = server.ask("workingCopy/checkout", {{"url", sandbox.url("trunk")}, {"path", fresh}});
    EXPECT_EQ(done.at("revision"), 4) << done;
    EXPECT_EQ(sandbox.read(fresh + "/a.c"), "trunk\n");
}

TEST_F(ServeChanges, ChangesOfOneWorkingCopyDoNotMeet) {
    std::vector<int> ids;
    Json paths = Json::array();
    for (int i = 0; i < 20; ++i) {
        const std::string name = "f" + std::to_string(i);
        sandbox.write(name, "");
        paths.push_back(path(name));
        ids.push_back(server.start("change/add", {{"paths", {path(name)}}}));
    }
    for (const int id : ids) {
        EXPECT_EQ(server.answer(id).at("result").at("failure"), nullptr);
    }
    EXPECT_EQ(counts(), Json::parse(R"({"added": 20})"));
    EXPECT_EQ(change("commit", {{"paths", paths}, {"message", "x"}}).at("revision"), 3);
}

TEST_F(ServeChanges, ALockedWorkingCopyIsToldAndCleanedUp) {
    EXPECT_EQ(server.ask("workingCopy/cleanup", {{"paths", {path("d")}}}).at("items"),
              Json::array({itemOf(root(), "cleaned")}));
}

struct Refusal {
    const char* method;
    Json params;
    const char* message;
};

TEST_F(ServeChanges, RefusalsNameTheMember) {
    const std::vector<Refusal> refusals{
        {"change/add", {{"paths", Json::array()}}, "params.paths: expected at least one path"},
        {"change/add", {{"paths", {"relative"}}}, "params.paths[0]: expected an absolute path"},
        {"change/add", {{"paths", {path("a.c"), 3}}}, "params.paths[1]: expected a string"},
        {"change/add", {{"paths", {path("a.c"), "/"}}}, "params.paths[1]: lies in no working copy"},
        {"change/add", {{"paths", {path("a.c")}}, {"x", 1}}, "params.x: unknown member"},
        {"change/commit", {{"paths", {path("a.c")}}}, "params.message: required"},
        {"change/resolve", {{"paths", {path("a.c")}}, {"accept", "x"}}, "params.accept: expected"},
        {"change/plan", {{"paths", {path("a.c")}}, {"kind", "x"}}, "params.kind: expected"},
        {"change/move", {{"from", path("a.c")}}, "params.to: required"},
        {"workingCopy/update",
         {{"paths", {root()}}, {"revision", "PREV"}},
         "params.revision: expected"},
        {"workingCopy/switch",
         {{"workingCopy", root()}, {"url", "trunk"}},
         "params.url: expected a URL"}};
    for (const Refusal& refusal : refusals) {
        const Json error = server.ask(refusal.method, refusal.params);
        ASSERT_TRUE(error.contains("code")) << error;
        EXPECT_EQ(error.at("code"), -32602);
        EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr(refusal.message));
    }
}

} // namespace

} // namespace quen::test
