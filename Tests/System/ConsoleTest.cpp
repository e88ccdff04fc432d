#include "Tests/System/Sandbox.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

namespace quen::test {

namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Console : public ::testing::Test {
protected:
    Ran serve(const std::string& input, const Sandbox::Words& options = {}) const {
        sandbox.write("input.json", input);
        Sandbox::Words words{"request"};
        words.insert(words.end(), options.begin(), options.end());
        words.emplace_back("input.json");
        return sandbox.quen(words);
    }

    Json answer(const std::string& input, const Sandbox::Words& options = {}) const {
        const Ran ran = serve(input, options);
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_EQ(ran.err, "");
        return Json::parse(ran.out);
    }

    Sandbox sandbox;
};

const char* const replayedStatus = R"({
    "request": {"type": "RequestTypeStatus", "files": ["a.c", "b@2.c"]},
    "replay": [{"stdout": "<status><target path='.'><entry path='a.c'><wc-status item='odd' props='none'/></entry></target></status>"}],
    "logLevel": 1})";

const char* const statusAnswer = R"json({
    "authenticationRequired": false,
    "valid": true,
    "validationError": {
        "domain": "QuenSourceControlErrorDomain", "code": -20, "userInfo": {
            "NSLocalizedDescriptionKey": "The operation could not be performed because the repository \"(null)\" could not be reached."}},
    "operation": "SVNStatusOperation",
    "launchPath": "/opt/tools/svn",
    "arguments": ["status", "--no-ignore", "--xml", "a.c", "b@2.c@"],
    "files": ["a.c", "b@2.c@"],
    "runs": [{
        "operation": "SVNStatusOperation",
        "arguments": ["status", "--no-ignore", "--xml", "a.c", "b@2.c@"],
        "exitStatus": 0, "signal": null, "stderr": ""}],
    "result": [{
        "QuenSourceControlOperationPathKey": "a.c",
        "QuenSourceControlOperationWCStatusKey": 0,
        "QuenSourceControlOperationRepositoryStatusKey": 0}],
    "error": null,
    "dataReleased": true,
    "assertions": [],
    "log": [{"level": 1, "text": "ERROR: Your working copy returned an SVN status of \"odd\" that we don't handle (yet)"}]})json";

TEST_F(Console, AnswersWithEveryMemberInOrder) {
    // Compared as text, so that the order of the members counts.
    const Json json = answer(replayedStatus, {"--tools-directory", "/opt/tools/"});
    EXPECT_EQ(json.dump(1), Json::parse(statusAnswer).dump(1));
}

TEST_F(Console, DryRunMakesTheOperationAndDoesNotRunIt) {
    const Json json = answer(R"({"request": {"type": 15, "files": ["a"]}})", {"--dry-run"});
    EXPECT_EQ(json.at("arguments"), Json::parse(R"(["status", "--no-ignore", "--xml", "a"])"));
    EXPECT_EQ(json.at("runs"), Json::array());
    EXPECT_EQ(json.at("result"), nullptr);
    EXPECT_EQ(json.at("dataReleased"), true);
}

TEST_F(Console, AnObjectOverridesTheOptions) {
    const Json json = answer(R"({"request": {"type": 15, "files": []}, "dryRun": false,
                                 "replay": [{"stdout": "<status/>"}]})",
                             {"--dry-run"});
    EXPECT_EQ(json.at("runs").size(), 1U);
}

TEST_F(Console, ATypeWithoutAnOperationLeavesItsMembersNull) {
    const Json json = answer(R"({"request": {"type": 33}})");
    for (const char* member :
         {"operation", "launchPath", "arguments", "files", "result", "error"}) {
        EXPECT_EQ(json.at(member), nullptr) << member;
    }
    EXPECT_EQ(json.at("runs"), Json::array());
}

TEST_F(Console, AssertionsShowTheirWholeForm) {
    const Json assertions = answer(R"({"request": {"type": 29}})").at("assertions");
    ASSERT_EQ(assertions.size(), 1U);
    Json assertion = assertions.front();
    EXPECT_GT(assertion.at("line"), 0);
    assertion["line"] = 0;
    EXPECT_EQ(assertion, Json::parse(R"({
        "method": "-[SVNController operationForRequest:]", "file": "Classes/SVNController",
        "line": 0, "format": "code which should be unreachable has been reached",
        "arguments": ["0"], "message": "code which should be unreachable has been reached"})"));
}

TEST_F(Console, TheIgnoreChainShowsEveryRun) {
    const Json json = answer(R"({
        "request": {"type": 4, "sourceTree": {"kind": "workingTree"}, "files": ["d/a.txt"]},
        "replay": [{"stdout": "<properties/>"}, {}]})");
    EXPECT_EQ(json.at("operation"), "SVNIgnoreOperation");
    EXPECT_EQ(json.at("launchPath"), nullptr);
    EXPECT_EQ(json.at("arguments"), nullptr);
    ASSERT_EQ(json.at("runs").size(), 2U);
    EXPECT_EQ(json.at("runs")[0].at("operation"), "SVNPropGetOperation");
    EXPECT_EQ(json.at("runs")[1].at("arguments"),
              Json::parse(R"(["propset", "svn:ignore", "a.txt", "d"])"));
}

TEST_F(Console, AReplayThatIsTooShortIsAnErrorOfTheRequest) {
    EXPECT_THAT(answer(R"({"request": {"type": 15, "files": ["a"]}, "replay": []})").dump(),
                HasSubstr("{\"requestError\":\"replay: "));
}

TEST_F(Console, BytesThatJsonCannotHoldComeInAsBase64AndGoOutReplaced) {
    const Json json = answer(R"({"request": {"type": 15, "files": ["a"]},
        "replay": [{"stdoutBase64": "PHN0YXR1cy8+", "stderrBase64": "c3ZuOiD/AA==", "exitStatus": 1}]})");
    EXPECT_EQ(json.at("result"), Json::array());
    EXPECT_EQ(json.at("runs")[0].at("stderr"), std::string("svn: \xEF\xBF\xBD\0", 9));
}

TEST_F(Console, TheBASEConstantIsToldFromItsCopy) {
    const auto authenticationFor = [&](const std::string& revision) {
        return answer(R"({"request": {"type": 21, "files": ["a"], "startingRevision": )" +
                      revision + R"(}, "dryRun": true})")
            .at("authenticationRequired");
    };
    EXPECT_EQ(authenticationFor(R"({"constant": "QuenSourceControlBASERevisionName"})"), false);
    EXPECT_EQ(authenticationFor(R"({"copyOf": "QuenSourceControlBASERevisionName"})"), true);
    EXPECT_EQ(authenticationFor(R"({"constant": "QuenSourceControlHEADRevisionName"})"), true);
    EXPECT_EQ(authenticationFor("null"), true);
}

TEST_F(Console, LinesAreServedOneByOneWhateverTheyHold) {
    const Ran ran = serve(
        "{\"request\": {\"type\": 33}}\nnonsense\n\n{\"request\": {\"type\": 22}}", {"--lines"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    std::istringstream lines(ran.out);
    std::vector<bool> wereServed;
    for (std::string line; std::getline(lines, line);) {
        wereServed.push_back(!Json::parse(line).contains("requestError"));
    }
    EXPECT_THAT(wereServed, ElementsAre(true, false, false, true));
}

TEST_F(Console, RunsTheRealClient) {
    sandbox.write("a.c", "x\n");
    const Json json = answer(R"({"request": {"type": 15, "files": ["a.c"]}})");
    EXPECT_EQ(json.at("result")[0].at("QuenSourceControlOperationWCStatusKey"), 256);
}

TEST_F(Console, AMissingClientIsAnErrorWithItsPath) {
    const Json json =
        answer(R"({"request": {"type": 15, "files": ["a.c"]}})", {"--tools-directory", "/nowhere"});
    EXPECT_EQ(json.at("error").at("domain"), "QuenSourceControlTaskErrorDomain");
    EXPECT_THAT(json.at("error").at("userInfo").at("NSLocalizedDescriptionKey"),
                HasSubstr("\"/nowhere/svn\""));
    EXPECT_EQ(json.at("result"), nullptr);
}

// Input that cannot be read: the message begins with the path of the member at fault.

struct BadInput {
    const char* input;
    const char* message;

    friend void PrintTo(const BadInput& self, std::ostream* out) { *out << self.message; }
};

class ConsoleBadInput : public Console, public ::testing::WithParamInterface<BadInput> {};

TEST_P(ConsoleBadInput, NamesTheMemberAndEndsWithStatus2) {
    const Ran ran = serve(GetParam().input);
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.err, HasSubstr(GetParam().message));
    EXPECT_THAT(Json::parse(ran.out).at("requestError"), HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, ConsoleBadInput,
    ::testing::Values(
        BadInput{"", "not JSON"}, BadInput{"{\"request\"", "not JSON"},
        BadInput{"{} {}", "not JSON"}, BadInput{"[]", "expected an object"},
        BadInput{"{}", "request: required"},
        BadInput{R"({"request": {"type": 1}, "x": 1})", "x: unknown member"},
        BadInput{R"({"request": {}})", "request.type: required"},
        BadInput{R"({"request": {"type": 1.5}})", "request.type: expected an integer"},
        BadInput{R"({"request": {"type": 2147483648}})", "request.type: expected an integer from"},
        BadInput{R"({"request": {"type": "RequestTypeNone"}})",
                 "request.type: unknown request type"},
        BadInput{R"({"request": {"type": 1, "files": ["a", "b", 3]}})",
                 "request.files[2]: expected a string"},
        BadInput{R"({"request": {"type": 1, "files": "a"}})", "request.files: expected an array"},
        BadInput{R"({"request": {"type": 1, "destination": 1}})",
                 "request.destination: expected a string or null"},
        BadInput{R"({"request": {"type": 1, "options": {"Message": "x"}}})",
                 "request.options.Message: unknown member"},
        BadInput{
            R"({"request": {"type": 1, "options": {"QuenSourceControlRequestOptionMessage": []}}})",
            "request.options.QuenSourceControlRequestOptionMessage: expected a string"},
        BadInput{R"({"request": {"type": 1, "sourceTree": {}}})",
                 "request.sourceTree.kind: required"},
        BadInput{R"({"request": {"type": 1, "sourceTree": {"kind": "tree"}}})",
                 "request.sourceTree.kind: expected \"repository\""},
        BadInput{R"({"request": {"type": 1, "sourceTree": {"kind": "other", "user": "x"}}})",
                 "request.sourceTree.user: unknown member"},
        BadInput{
            R"({"request": {"type": 1, "sourceTree": {"kind": "workingTree", "repository": {"kind": "workingTree"}}}})",
            "request.sourceTree.repository.kind: expected \"repository\""},
        BadInput{R"({"request": {"type": 1, "startingRevision": {"constant": "HEAD"}}})",
                 "request.startingRevision.constant: expected \"QuenSourceControl"},
        BadInput{R"({"request": {"type": 1, "startingRevision": 5}})",
                 "request.startingRevision: expected a string, an object or null"},
        BadInput{R"({"request": {"type": 1}, "logLevel": -1})",
                 "logLevel: expected an integer from"},
        BadInput{R"({"request": {"type": 1}, "dryRun": "yes"})", "dryRun: expected true or false"},
        BadInput{R"({"request": {"type": 1}, "replay": [{"stdoutBase64": "?"}]})",
                 "replay[0].stdoutBase64: expected base64"}));

TEST_F(Console, OtherFailuresEndWithStatus1AndAMessage) {
    const std::string nowhere = (sandbox.root() / "nowhere").string();
    for (const Sandbox::Words& words : {Sandbox::Words{"request", nowhere},
                                        {"request", sandbox.root().string()},
                                        {"request", "--nonsense"},
                                        {"request", "--log-level", "many"},
                                        {"request", "--plug-in", nowhere}}) {
        const Ran ran = sandbox.quen(words);
        EXPECT_EQ(ran.status, 1) << words.back();
        EXPECT_NE(ran.err, "") << words.back();
    }
}

TEST_F(Console, APlugInThatIsNoneIsToldApartFromAMissingOne) {
    sandbox.write("text.so", "not a module");
    EXPECT_THAT(sandbox.quen({"request", "--plug-in", "text.so"}).err,
                HasSubstr("cannot be loaded"));
    EXPECT_THAT(sandbox.quen({"request", "--plug-in", "none.so"}).err,
                HasSubstr("There is no plug-in at"));
}

} // namespace

} // namespace quen::test
