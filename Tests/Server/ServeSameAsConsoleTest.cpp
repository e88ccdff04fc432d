#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Server/RunningServer.h"
#include "Tests/Support/Reports.h"

#include <gmock/gmock.h>
#include <map>
#include <sstream>

namespace quen::test {

namespace {

/// A right report for the types that read one; a text that is none for the others.
std::string reportFor(int type) {
    static const std::map<int, const char*> reports{{RequestTypeStatus, "status/working-copy.xml"},
                                                    {RequestTypeRemoteStatus, "status/remote.xml"},
                                                    {RequestTypeList, "list/directory.xml"},
                                                    {RequestTypeListBranches, "list/branches.xml"},
                                                    {RequestTypeLog, "log/with-files.xml"},
                                                    {RequestTypeLogAll, "log/file.xml"},
                                                    {RequestTypeInfo, "info/items.xml"},
                                                    {RequestTypeCurrentBranch, "info/branch.xml"},
                                                    {RequestTypeBlame, "blame/file.xml"},
                                                    {RequestTypeDiff, "diff/summary.xml"},
                                                    {RequestTypeCommit, "commit/changes.txt"},
                                                    {RequestTypeIgnore, "propget/single.xml"},
                                                    {RequestTypeUnignore, "propget/none.xml"}};
    const auto found = reports.find(type);
    return found == reports.end() ? "text\n" : testData(std::string("Reports/") + found->second);
}

/// More runs than any type makes.
Json replayed(const Json& run) {
    return Json::array({run, run, run, run});
}

Json repository() {
    const std::string root = "http://host/repository";
    return {{"kind", "repository"},
            {"name", "tree"},
            {"location", root},
            {"user", "alice"},
            {"trunkLocation", root + "/trunk"},
            {"branchesLocation", root + "/branches"}};
}

Json completeRequest(int type) {
    return {{"type", type},
            {"sourceTree", repository()},
            {"repositoryToAuthenticate", repository()},
            {"destination", "http://host/repository/b@2.c"},
            {"files", {"http://host/repository/a.c"}},
            {"startingRevision", "1"},
            {"endingRevision", {{"copyOf", "QuenSourceControlHEADRevisionName"}}},
            {"options", {{"QuenSourceControlRequestOptionMessage", "Why"}}}};
}

/// Every type, served or not: with everything and with nothing, ended in each way.
std::vector<Json> inputs() {
    std::vector<Json> all;
    for (int type = 0; type <= RequestTypeEnd; ++type) {
        for (const Json& request : {completeRequest(type), Json{{"type", type}},
                                    Json{{"type", type}, {"files", {"a.c", "b@2.c", ""}}}}) {
            all.push_back({{"request", request}, {"dryRun", true}, {"logLevel", 9}});
            for (const Json& run :
                 {Json{{"stdout", reportFor(type)}},
                  Json{{"stdout", "<half"}, {"stderr", "svn: E155004: locked"}, {"exitStatus", 1}},
                  Json{{"stderr", "svn: E170013: no\nsvn: E215004: no"}, {"exitStatus", 1}},
                  Json::object()}) {
                all.push_back({{"request", request}, {"replay", replayed(run)}, {"logLevel", 4}});
            }
        }
    }
    for (const char* bad : {R"({})", R"({"request": {"type": 1}, "x": 1})", R"({"request": {}})",
                            R"({"request": {"type": 1.5}})", R"({"request": {"type": "Nothing"}})",
                            R"({"request": {"type": 1, "files": ["a", "b", 3]}})",
                            R"({"request": {"type": 1, "sourceTree": {"kind": "tree"}}})",
                            R"({"request": {"type": 1, "startingRevision": 5}})",
                            R"({"request": {"type": 15, "files": ["a"]}, "replay": []})",
                            R"({"request": {"type": 1}, "replay": [{"stdoutBase64": "?"}]})"}) {
        all.push_back(Json::parse(bad));
    }
    return all;
}

/// What differs from run to run: times in the log, and fresh names.
Json comparable(Json answer) {
    answer.erase("failure");
    if (answer.contains("log")) {
        for (Json& line : answer["log"]) {
            std::string& text = line["text"].get_ref<std::string&>();
            text.erase(text.find_last_not_of("0123456789.") + 1);
        }
    }
    std::string text = answer.dump();
    for (auto at = text.find("/quen-"); at != std::string::npos; at = text.find("/quen-", at + 1)) {
        text.replace(at, 12, "/quen-FRESH_");
    }
    return Json::parse(text);
}

TEST(ServeSameAsConsole, WhateverTheRequestIs) {
    const Sandbox sandbox;
    RunningServer server(sandbox);
    server.initialize();
    const std::vector<Json> all = inputs();
    std::string lines;
    std::vector<int> ids;
    for (const Json& input : all) {
        lines += input.dump() + "\n";
        ids.push_back(server.start("provider/perform", input));
    }
    sandbox.write("input.json", lines);
    std::istringstream answers(sandbox.quen({"request", "--lines", "input.json"}).out);
    std::size_t refused = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::string line;
        ASSERT_TRUE(std::getline(answers, line)) << i;
        const Json console = Json::parse(line);
        const Json served = server.answer(ids[i]);
        if (console.contains("requestError")) {
            ++refused;
            const Json error = served.value("error", Json::object());
            EXPECT_EQ(error.value("code", 0), -32602) << all[i] << served;
            EXPECT_THAT(error.value("message", ""),
                        ::testing::HasSubstr(console.at("requestError").get<std::string>()))
                << all[i];
        } else {
            ASSERT_TRUE(served.contains("result")) << all[i] << served;
            EXPECT_TRUE(served.at("result").contains("failure")) << all[i];
            EXPECT_EQ(comparable(served.at("result")), comparable(console)) << all[i];
        }
    }
    EXPECT_GE(refused, 10U);
    EXPECT_LT(refused, all.size() / 4);
    std::cout << "  " << all.size() << " requests, " << refused << " of them refused\n";
}

} // namespace

} // namespace quen::test
