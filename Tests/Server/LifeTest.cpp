#include "Tests/Server/FakeClient.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Server/Server.h"

#include <gmock/gmock.h>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using ::testing::HasSubstr;
using Received = Server::Received;

class Life : public ::testing::Test {
protected:
    Life() {
        const auto nothing = [](const JsonInput&) { return 0; };
        server.dispatcher().add(
            query<int>("ping", nothing, [](Call&, int) { return Json("pong"); }));
        server.dispatcher().add(query<int>("ask", nothing, [this](Call& call, int) {
            const auto answer = server.questions().ask("what", {{"x", 1}}, call.stop());
            return answer.value_or("nothing");
        }));
    }

    Received tell(const std::string& method, const Json& params = Json::object()) {
        return server.receive(
            Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}.dump());
    }
    void send(int id, const std::string& method, const Json& params = Json::object()) {
        EXPECT_EQ(server.receive(
                      Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}
                          .dump()),
                  Received::served);
    }
    Json ask(int id, const std::string& method, const Json& params = Json::object()) {
        send(id, method, params);
        return client.answer(id);
    }
    int codeOf(int id, const std::string& method, const Json& params = Json::object()) {
        return ask(id, method, params).value("error", Json::object()).value("code", 0);
    }
    /// The server's question of that number; null when none came.
    Json question(int number) const {
        return client
            .waitFor([number](const Json& message) {
                return message.value("method", "") == "what" && message.at("id") == number;
            })
            .value_or(nullptr);
    }

    FakeClient client;
    Server server{client};
};

TEST_F(Life, GoesThroughItsStages) {
    EXPECT_EQ(codeOf(1, "ping"), ServerNotInitialized);
    EXPECT_EQ(codeOf(2, "none"), ServerNotInitialized);
    EXPECT_EQ(codeOf(3, "shutdown"), ServerNotInitialized);
    EXPECT_EQ(server.exitStatus(), 1);
    EXPECT_EQ(codeOf(4, "initialize", {{"processId", nullptr}}), 0);
    EXPECT_EQ(codeOf(5, "initialize"), InvalidRequest);
    EXPECT_EQ(tell("initialized"), Received::served);
    EXPECT_EQ(ask(6, "ping").at("result"), "pong");
    EXPECT_EQ(codeOf(7, "none"), MethodNotFound);
    EXPECT_EQ(server.exitStatus(), 1);
    EXPECT_EQ(ask(8, "shutdown").at("result"), nullptr);
    EXPECT_EQ(codeOf(9, "ping"), InvalidRequest);
    EXPECT_EQ(codeOf(10, "initialize"), InvalidRequest);
    EXPECT_EQ(codeOf(11, "shutdown"), InvalidRequest);
    EXPECT_EQ(tell("exit"), Received::exit);
    EXPECT_EQ(server.exitStatus(), 0);
}

TEST_F(Life, ExitAloneEndsItWithStatus1) {
    EXPECT_EQ(tell("initialized"), Received::served);
    EXPECT_EQ(tell("exit"), Received::exit);
    EXPECT_EQ(server.exitStatus(), 1);
    EXPECT_TRUE(client.messages().empty());
}

TEST_F(Life, NotificationsAreNeverAnswered) {
    ask(1, "initialize");
    for (const char* name : {"none", "$/none", "$/cancelRequest", "$/setTrace"}) {
        EXPECT_EQ(tell(name, {{"x", 1}}), Received::served) << name;
    }
    EXPECT_EQ(server.receive(R"({"jsonrpc":"2.0","method":"none","params":3})"), Received::served);
    EXPECT_EQ(client.messages().size(), 1U);
}

TEST_F(Life, TextsThatAreNotMessagesAreAnsweredWithoutAnId) {
    EXPECT_EQ(server.receive("{"), Received::notJson);
    EXPECT_EQ(server.receive("[]"), Received::served);
    ASSERT_EQ(client.messages().size(), 2U);
    EXPECT_EQ(client.messages()[0].at("id"), nullptr);
    EXPECT_EQ(client.messages()[0].at("error").at("code"), ParseError);
    EXPECT_EQ(client.messages()[1].at("id"), nullptr);
    EXPECT_EQ(client.messages()[1].at("error").at("code"), InvalidRequest);
}

TEST_F(Life, QuestionsAreAnsweredByTheClient) {
    ask(1, "initialize");
    const std::vector<std::pair<std::string, std::string>> answers{
        {R"("result":{"y":2})", R"({"y":2})"},
        {R"("result":null)", "null"},
        {R"("error":{"code":-32601,"message":"none"})", R"("nothing")"}};
    for (int number = 1; number <= 3; ++number) {
        send(100 + number, "ask");
        EXPECT_EQ(question(number).value("params", Json()).dump(), R"({"x":1})");
        const auto& [answer, result] = answers[static_cast<std::size_t>(number) - 1];
        server.receive(R"({"jsonrpc":"2.0","id":)" + std::to_string(number) + "," + answer + "}");
        EXPECT_EQ(client.answer(100 + number).at("result").dump(), result);
    }
}

TEST_F(Life, AQuestionEndsWithItsRequest) {
    ask(1, "initialize");
    send(2, "ask");
    ASSERT_FALSE(question(1).is_null());
    tell("$/cancelRequest", {{"id", 2}});
    EXPECT_EQ(client.answer(2).at("result"), "nothing");
}

struct BadClient {
    Json params;
    const char* message;

    friend void PrintTo(const BadClient& self, std::ostream* out) { *out << self.message; }
};

class BadClients : public Life, public ::testing::WithParamInterface<BadClient> {};

TEST_P(BadClients, AreRefusedAndMayTryAgain) {
    const Json error = ask(1, "initialize", GetParam().params).value("error", Json::object());
    EXPECT_EQ(error.value("code", 0), InvalidParams);
    EXPECT_THAT(error.value("message", ""), HasSubstr(GetParam().message));
    EXPECT_EQ(codeOf(2, "initialize"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadClients,
    ::testing::Values(
        BadClient{{{"rootUri", "x"}}, "params.rootUri: unknown member"},
        BadClient{{{"processId", "1"}}, "params.processId: expected an integer"},
        BadClient{{{"processId", -1}}, "params.processId: expected an integer from"},
        BadClient{{{"roots", "/a"}}, "params.roots: expected an array"},
        BadClient{{{"roots", {"/a", 3}}}, "params.roots[1]: expected a string"},
        BadClient{{{"roots", {"a"}}}, "params.roots[0]: expected an absolute path"},
        BadClient{{{"clientInfo", {{"name", 1}}}}, "params.clientInfo.name: expected a string"},
        BadClient{{{"options", {{"x", 1}}}}, "params.options.x: unknown member"},
        BadClient{{{"options", {{"totalLimit", 0}}}}, "params.options.totalLimit: expected"},
        BadClient{{{"options", {{"logLevel", "4"}}}}, "params.options.logLevel: expected"}));

} // namespace

} // namespace quen::test
