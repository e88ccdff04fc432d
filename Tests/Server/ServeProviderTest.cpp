#include "Tests/Server/ServedFiles.h"

#include <fstream>
#include <gmock/gmock.h>
#include <ostream>

namespace quen::test {

namespace {

using ::testing::HasSubstr;
using OrderedJson = nlohmann::ordered_json;

class ServeProvider : public ServedFiles {
protected:
    ServeProvider() {
        sandbox.write("a.c", "a\n");
        sandbox.svn({"add", "-q", "a.c"});
        sandbox.commit("A file");
        sandbox.write("a.c", "b\n");
        server.initialize();
    }

    /// What the console answers to the same object, run in the same directory.
    Json console(const Json& input) const {
        sandbox.write(sandbox.root() / "input.json", input.dump());
        return Json::parse(sandbox.quen({"request", (sandbox.root() / "input.json").string()}).out);
    }
};

/// Times and fresh names differ from run to run.
Json comparable(Json answer) {
    for (Json& line : answer["log"]) {
        line["text"] = line["text"].get<std::string>().substr(0, 20);
    }
    answer.erase("failure");
    return answer;
}

TEST_F(ServeProvider, AnswersAsTheConsoleDoes) {
    const Json tree{{"kind", "workingTree"}, {"location", path("")}};
    const std::vector<Json> inputs{
        {{"request", {{"type", "RequestTypeStatus"}, {"files", {path("a.c")}}}}, {"logLevel", 4}},
        {{"request", {{"type", 15}, {"files", {path("nowhere.c")}}}}},
        {{"request",
          {{"type", "RequestTypeInfo"}, {"files", {path("a.c")}}, {"sourceTree", tree}}}},
        {{"request", {{"type", "RequestTypeBlame"}, {"files", {path("a.c")}}}}},
        {{"request", {{"type", "RequestTypeList"}, {"files", {sandbox.url("trunk")}}}}},
        {{"request",
          {{"type", "RequestTypeDiff"},
           {"files", {path("a.c")}},
           {"sourceTree", tree},
           {"startingRevision", "1"},
           {"endingRevision", "2"}}}},
        {{"request", {{"type", 33}}}},
        {{"request", {{"type", 29}}}},
        {{"request", {{"type", 3}}}, {"dryRun", true}},
        {{"request",
          {{"type", 4}, {"sourceTree", {{"kind", "workingTree"}}}, {"files", {"d/a.txt"}}}},
         {"replay", {{{"stdout", "<properties/>"}}, Json::object()}}},
        {{"request", {{"type", 15}, {"files", {"a"}}}},
         {"replay",
          {{{"stdoutBase64", "PHN0YXR1cy8+"},
            {"stderr", "svn: E155004: locked"},
            {"exitStatus", 1}}}}},
    };
    for (const Json& input : inputs) {
        const Json served = server.ask("provider/perform", input);
        EXPECT_EQ(comparable(served), comparable(console(input))) << input;
        EXPECT_TRUE(served.contains("failure")) << served;
    }
}

TEST_F(ServeProvider, TheMembersKeepTheirOrderAndFailureIsTheLast) {
    const Json whole = server.answer(
        server.start("provider/perform",
                     {{"request", {{"type", 15}, {"files", {"a"}}}},
                      {"replay", {{{"stderr", "svn: E155004: locked"}, {"exitStatus", 1}}}}}));
    EXPECT_EQ(whole.at("result").at("failure"), "locked");
    RunningServer raw(sandbox);
    raw.initialize();
    raw.ask("provider/perform", {{"request", {{"type", 33}}}});
    EXPECT_TRUE(whole.at("result").contains("log"));
}

TEST_F(ServeProvider, BadInputIsAnErrorOfTheParams) {
    const auto messageOf = [&](const Json& input) {
        const Json error = server.ask("provider/perform", input);
        EXPECT_EQ(error.value("code", 0), -32602) << error;
        return error.value("message", "");
    };
    EXPECT_THAT(messageOf(Json::object()), HasSubstr("params.request: required"));
    EXPECT_THAT(messageOf({{"request", {{"type", 1}, {"files", {"a", "b", 3}}}}}),
                HasSubstr("params.request.files[2]: expected a string"));
    EXPECT_THAT(messageOf({{"request", {{"type", 1}}}, {"x", 1}}),
                HasSubstr("params.x: unknown member"));
    EXPECT_THAT(
        messageOf({{"request", {{"type", 15}, {"files", {"a"}}}}, {"replay", Json::array()}}),
        HasSubstr("replay: the operation started more runs than it holds"));
}

TEST_F(ServeProvider, ManyAreServedAtOnceEachWithItsOwnEffects) {
    std::vector<int> ids;
    for (int i = 0; i < 60; ++i) {
        ids.push_back(server.start(
            "provider/perform",
            {{"request", {{"type", i % 2 == 0 ? 29 : 15}, {"files", {path("a.c")}}}}}));
    }
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const Json result = server.answer(ids[i]).at("result");
        EXPECT_EQ(result.at("assertions").size(), i % 2 == 0 ? 1U : 0U);
        EXPECT_EQ(result.at("runs").size(), i % 2 == 0 ? 0U : 1U);
    }
}

TEST_F(ServeProvider, DescribesEveryServedType) {
    const Json description = server.ask("provider/describe");
    EXPECT_TRUE(description.at("contractVersion").is_number());
    std::size_t count = 0;
    for (const Json& type : description.at("requestTypes")) {
        for (const char* member :
             {"code", "name", "operation", "required", "optional", "resultKeys"}) {
            EXPECT_TRUE(type.contains(member)) << type;
        }
        count += type.at("name") == "RequestTypeStatus" ? 1U : 0U;
        if (type.at("name") == "RequestTypeStatus") {
            EXPECT_EQ(type.at("code"), 15);
            EXPECT_EQ(type.at("operation"), "SVNStatusOperation");
            EXPECT_EQ(type.at("required"), Json::array({"files"}));
        }
    }
    EXPECT_EQ(count, 1U);
}

} // namespace

} // namespace quen::test
