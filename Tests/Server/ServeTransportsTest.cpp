#include "Tests/Server/RunningServer.h"
#include "Tests/Servers/Server.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

/// One project's life on one kind of server, by the server's own methods; after each step a look at
/// what it has done.
class ServeTransports : public ::testing::TestWithParam<ServerKind> {
protected:
    ServeTransports() { server.initialize(); }

    std::string path(const std::string& name) const { return (copy / name).string(); }
    std::string url(const std::string& place) const { return repository.url(place); }
    /// The result of a request that must pass.
    Json pass(const std::string& method, const Json& params) {
        Json result = server.ask(method, params);
        EXPECT_EQ(result.value("failure", Json("none told")), nullptr) << method << result.dump(1);
        return result;
    }
    Json commit(const std::string& message) {
        return pass("change/commit",
                    {{"paths", {copy.string()}}, {"message", message}, {"alsoTaken", true}});
    }
    void switchTo(const std::string& place) {
        pass("workingCopy/switch", {{"workingCopy", copy.string()}, {"url", url(place)}});
    }

    /// Each stage stands on the ones before.
    void walk() {
        for (const auto stage :
             {&ServeTransports::begin, &ServeTransports::lookBack, &ServeTransports::branch,
              &ServeTransports::merge, &ServeTransports::meetSomebodyElse}) {
            (this->*stage)();
            if (HasFailure()) {
                return;
            }
        }
    }

    void begin();
    void lookBack();
    void branch();
    void merge();
    void meetSomebodyElse();

    Sandbox sandbox;
    Server repository{sandbox, GetParam()};
    std::filesystem::path copy = sandbox.root() / "project";
    RunningServer server{sandbox, {}, repository.variables()};
};

void ServeTransports::begin() {
    sandbox.write(sandbox.root() / "seed/a.c", "one\n");
    pass("repository/import", {{"path", (sandbox.root() / "seed").string()},
                               {"url", url("trunk/seed")},
                               {"message", "Import"}});
    pass("workingCopy/checkout", {{"url", url("trunk")}, {"path", copy.string()}});
    EXPECT_EQ(sandbox.read(path("seed/a.c")), "one\n");
    const Json open = pass("workingCopy/open", {{"path", path("seed/a.c")}});
    EXPECT_EQ(open.at("url"), url("trunk"));
    EXPECT_EQ(open.at("branch"), Json::parse(R"({"name": "trunk", "isTrunk": true})"));
    sandbox.write(path("seed/a.c"), "one\ntwo\n");
    sandbox.write(path("b@2.c"), "b\n");
    pass("change/add", {{"paths", {path("b@2.c")}}});
    EXPECT_EQ(commit("The second line").at("revision"), 3);
}

void ServeTransports::lookBack() {
    const Json log = pass("history/log", {{"url", url("trunk")}, {"limit", 2}, {"files", true}});
    EXPECT_EQ(log.at("entries").size(), 2U);
    EXPECT_EQ(log.at("entries")[0].at("message"), "The second line");
    EXPECT_EQ(log.at("next"), 1);
    EXPECT_EQ(pass("history/search", {{"path", copy.string()}, {"limit", 5}, {"text", "IMPORT"}})
                  .at("entries")
                  .size(),
              1U);
    EXPECT_EQ(pass("file/content", {{"url", url("trunk/seed/a.c")}, {"revision", 2}}).at("base64"),
              "b25lCg==");
    EXPECT_EQ(pass("file/blame", {{"path", path("seed/a.c")}}).at("lines"), Json::parse("[0, 1]"));
    EXPECT_EQ(pass("repository/list", {{"url", url("trunk")}}).at("entries").size(), 2U);
    EXPECT_EQ(pass("diff/summary", {{"from", {{"url", url("trunk")}, {"revision", 2}}},
                                    {"to", {{"url", url("trunk")}, {"revision", 3}}}})
                  .at("items")
                  .size(),
              2U);
    pass("repository/export",
         {{"url", url("trunk/seed/a.c")}, {"to", (sandbox.root() / "a.c").string()}});
    EXPECT_EQ(sandbox.read(sandbox.root() / "a.c"), "one\ntwo\n");
}

void ServeTransports::branch() {
    const Json copyName{{"workingCopy", copy.string()}};
    Json named = copyName;
    named["name"] = "polite";
    named["message"] = "A branch";
    EXPECT_EQ(pass("branch/create", named).at("url"), url("branches/polite"));
    named["name"] = "first";
    pass("tag/create", named);
    EXPECT_THAT(pass("branch/list", copyName).dump(), HasSubstr("polite"));
    switchTo("branches/polite");
    EXPECT_EQ(pass("branch/current", copyName).at("branch").at("name"), "polite");
    sandbox.write(path("b@2.c"), "branch\n");
    EXPECT_EQ(commit("On the branch").at("revision"), 6);
}

void ServeTransports::merge() {
    switchTo("trunk");
    pass("workingCopy/update", {{"workingCopy", copy.string()}});
    sandbox.write(path("b@2.c"), "trunk\n");
    Json params{{"kind", "merge"}, {"paths", {copy.string()}}, {"url", url("branches/polite")}};
    EXPECT_EQ(pass("change/plan", params).at("decidedForMine"), Json::array({path("b@2.c")}));
    const Json merged =
        pass("branch/merge", {{"workingCopy", copy.string()}, {"url", url("branches/polite")}});
    ASSERT_EQ(merged.at("settled").size(), 1U) << merged;
    EXPECT_EQ(sandbox.read(merged.at("settled")[0].at("theirs").get<std::string>()), "branch\n");
    EXPECT_EQ(sandbox.read(path("b@2.c")), "trunk\n");
    EXPECT_EQ(commit("Merge").at("revision"), 7);
    pass("branch/delete",
         {{"workingCopy", copy.string()}, {"name", "polite"}, {"message", "Arrived"}});
}

void ServeTransports::meetSomebodyElse() {
    sandbox.svn({"update", "-q"});
    sandbox.write("seed/a.c", "theirs\n");
    sandbox.svn({"commit", "-q", "-m", "theirs"});
    EXPECT_EQ(pass("workingCopy/incoming", {{"workingCopy", copy.string()}}).at("items")[0]["path"],
              path("seed/a.c"));
    const Json plan = pass("change/plan", {{"kind", "update"}, {"paths", {copy.string()}}});
    EXPECT_THAT(plan.at("items").dump(), HasSubstr(path("seed/a.c")));
    EXPECT_EQ(pass("workingCopy/update", {{"paths", {copy.string()}}}).at("revision"), 9);
    EXPECT_EQ(sandbox.read(path("seed/a.c")), "theirs\n");
    const Json told = server.ask(
        "provider/perform",
        {{"request", {{"type", "RequestTypeRemoteStatus"}, {"files", {copy.string()}}}}});
    EXPECT_EQ(told.at("error"), nullptr) << told;
}

TEST_P(ServeTransports, EveryStepPasses) {
    walk();
}

INSTANTIATE_TEST_SUITE_P(On, ServeTransports,
                         ::testing::Values(ServerKind::files, ServerKind::svnserveWithPassword,
                                           ServerKind::httpd, ServerKind::sshd),
                         ::testing::PrintToStringParamName());

} // namespace

} // namespace quen::test
