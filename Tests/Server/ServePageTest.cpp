#include "Tests/Server/RunningServer.h"

#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <sstream>

namespace quen::test {

namespace {

/// What Documentation/server.md says, held against what the server does.
class ServePage : public ::testing::Test {
protected:
    ServePage() {
        sandbox.write("a.c", "a\n");
        sandbox.svn({"add", "-q", "a.c"});
        sandbox.commit("A file");
        sandbox.write("a.c", "changed\n");
    }

    /// The page's example with the sandbox in the place of somebody's home.
    std::string here(const std::string& line) const {
        return std::regex_replace(line, std::regex("/home/ann"), sandbox.root().string());
    }
    /// Without what differs from run to run.
    static std::string comparable(const std::string& json) {
        static const std::regex uuid("[0-9a-f]{8}-[0-9a-f-]{27}");
        static const std::regex date("20[0-9-]*T[0-9:.]*Z");
        static const std::regex author(R"("author":"[^"]*")");
        return std::regex_replace(
            std::regex_replace(std::regex_replace(json, uuid, "UUID"), date, "DATE"), author,
            R"("author":"AUTHOR")");
    }

    Sandbox sandbox;
    std::string page = sandbox.read(QUEN_TEST_PAGE);
};

TEST_F(ServePage, NamesEveryMethodAndNoOther) {
    std::set<std::string> named;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        static const std::regex name("`([a-zA-Z]+/[a-zA-Z]+)`");
        const std::string cell = line.substr(0, line.find(" | "));
        if (line.starts_with("| ")) {
            for (std::sregex_iterator at(cell.begin(), cell.end(), name), end; at != end; ++at) {
                named.insert((*at)[1]);
            }
        }
    }
    RunningServer server(sandbox);
    std::set<std::string> served;
    const Json told = server.initialize();
    for (const Json& method : told.at("capabilities").at("methods")) {
        served.insert(method.get<std::string>());
    }
    for (const char* own : {"initialize", "shutdown"}) {
        EXPECT_THAT(page, ::testing::HasSubstr(std::string("`") + own));
        served.erase(own);
    }
    for (const char* other :
         {"workingCopy/didChange", "workingCopy/changed", "workingCopy/didOpen",
          "workingCopy/didClose", "credentials/get", "certificate/confirm", "ssh/ask"}) {
        EXPECT_EQ(named.erase(other), 1U) << other;
    }
    EXPECT_EQ(named, served);
}

TEST_F(ServePage, ItsFramesHaveTheLengthThatTheySay) {
    static const std::regex frame("Content-Length: ([0-9]+)\n\n([^\n]*)\n");
    std::size_t count = 0;
    for (std::sregex_iterator at(page.begin(), page.end(), frame), end; at != end; ++at, ++count) {
        EXPECT_EQ(std::stoul((*at)[1]), (*at)[2].str().size());
        RunningServer server(sandbox);
        server.sendRaw(tools::server::framed((*at)[2].str()));
        EXPECT_TRUE(server.answer(1).contains("result"));
    }
    EXPECT_EQ(count, 1U);
}

TEST_F(ServePage, ItsConversationGoesAsItSays) {
    RunningServer server(sandbox);
    server.initialize();
    std::istringstream lines(page);
    std::size_t answers = 0;
    Json told;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("--> ")) {
            const Json request = Json::parse(here(line.substr(4)));
            told = server.answer(
                server.start(request.at("method").get<std::string>(), request.at("params")));
            told.erase("id");
            told.erase("jsonrpc");
        } else if (line.starts_with("<-- ")) {
            ++answers;
            EXPECT_EQ(comparable(told.dump()),
                      comparable(Json::parse(here(line.substr(4))).dump()));
        }
    }
    EXPECT_GE(answers, 10U);
}

} // namespace

} // namespace quen::test
