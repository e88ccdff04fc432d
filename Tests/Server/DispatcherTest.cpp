#include "Tests/Server/FakeClient.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Server/Dispatch/Dispatcher.h"

#include <condition_variable>
#include <gmock/gmock.h>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Holds calls up until it is opened.
class Gate {
public:
    /// False where `stop` comes first.
    bool pass(const std::stop_token& stop) {
        std::unique_lock lock(mutex_);
        ++arrived_;
        changed_.notify_all();
        return changed_.wait(lock, stop, [this] { return isOpen_; });
    }
    void open() {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
        changed_.notify_all();
    }
    bool waitUntilArrived(int count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, 10s, [&] { return arrived_ >= count; });
    }

private:
    std::mutex mutex_;
    std::condition_variable_any changed_;
    int arrived_ = 0;
    bool isOpen_ = false;
};

struct Step {
    std::string root;
    std::string name;
};

Step decodeStep(const JsonInput& input) {
    input.requireObject({"root", "name"});
    return {input.has("root") ? input.member("root").string() : "", input.member("name").string()};
}

class Dispatching : public ::testing::Test {
protected:
    Dispatching() {
        const auto wait = [this](Call& call, const Step& step) {
            call.progress().report(step.name, 1);
            if (!gate.pass(call.stop())) {
                throw requestCancelled(true);
            }
            const std::lock_guard lock(mutex);
            done.push_back(step.name);
            return Json(step.name);
        };
        const auto echo = [](Call&, const Step& step) { return Json(step.name); };
        const auto fail = [](Call&, const Step&) -> Json { throw std::runtime_error("of itself"); };
        dispatcher.add(query<Step>("wait", decodeStep, wait));
        dispatcher.add(change<Step>("change", decodeStep, wait));
        dispatcher.add(query<Step>("echo", decodeStep, echo));
        dispatcher.add(query<Step>("throw", decodeStep, fail));
    }

    void ask(int id, const std::string& method, const Json& params) {
        dispatcher.serve(readMessage(
            Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump()));
    }
    void askForChange(int id, const std::string& root, const std::string& name) {
        ask(id, "change", {{"root", root}, {"name", name}});
    }

    FakeClient client;
    Gate gate;
    std::mutex mutex;
    std::vector<std::string> done;
    Dispatcher dispatcher{client};
};

TEST_F(Dispatching, AHundredAreServedAtOnce) {
    for (int id = 0; id < 100; ++id) {
        ask(id, "wait", {{"name", std::to_string(id)}});
    }
    EXPECT_TRUE(gate.waitUntilArrived(100));
    ask(100, "echo", {{"name", "beside"}});
    EXPECT_EQ(client.answer(100).at("result"), "beside");
    gate.open();
    for (int id = 0; id < 100; ++id) {
        EXPECT_EQ(client.answer(id).at("result"), std::to_string(id));
    }
}

TEST_F(Dispatching, ChangesOfOneWorkingCopyFollowEachOtherAndOthersGoOnBeside) {
    askForChange(1, "/a", "a1");
    askForChange(2, "/a", "a2");
    askForChange(3, "/b", "b1");
    askForChange(4, "/a", "a3");
    EXPECT_TRUE(gate.waitUntilArrived(2));
    ask(5, "echo", {{"root", "/a"}, {"name", "query"}});
    EXPECT_EQ(client.answer(5).at("result"), "query");
    EXPECT_EQ(dispatcher.callsInFlight(), 4U);
    gate.open();
    EXPECT_TRUE(dispatcher.waitUntilIdle(10s));
    std::erase(done, "b1");
    EXPECT_THAT(done, ElementsAre("a1", "a2", "a3"));
}

TEST_F(Dispatching, ACancelEndsWhatIsServed) {
    ask(1, "wait", {{"name", "x"}});
    EXPECT_TRUE(gate.waitUntilArrived(1));
    dispatcher.cancel(1);
    EXPECT_EQ(client.answer(1).at("error"),
              Json::parse(R"({"code": -32800, "message": "The request was cancelled.",
                              "data": {"mayHaveLeftLock": true}})"));
}

TEST_F(Dispatching, ACancelAnswersWhatWaitsAtOnceAndItIsNeverDone) {
    askForChange(1, "/a", "first");
    askForChange(2, "/a", "second");
    EXPECT_TRUE(gate.waitUntilArrived(1));
    dispatcher.cancel(2);
    EXPECT_EQ(client.answer(2).at("error").at("data").dump(), R"({"mayHaveLeftLock":false})");
    gate.open();
    EXPECT_TRUE(dispatcher.waitUntilIdle(10s));
    EXPECT_THAT(done, ElementsAre("first"));
    EXPECT_EQ(client.messages().size(), 2U);
}

TEST_F(Dispatching, ACancelOfWhatIsNotThereIsPassedOver) {
    dispatcher.cancel(7);
    dispatcher.cancel("seven");
    dispatcher.cancel(nullptr);
    EXPECT_TRUE(client.messages().empty());
}

TEST_F(Dispatching, TheEndCancelsEverything) {
    askForChange(1, "/a", "first");
    askForChange(2, "/a", "second");
    ask(3, "wait", {{"name", "x"}});
    EXPECT_TRUE(gate.waitUntilArrived(2));
    EXPECT_TRUE(dispatcher.end(10s));
    for (int id = 1; id <= 3; ++id) {
        EXPECT_EQ(client.answer(id).at("error").at("code"), RequestCancelled);
    }
    EXPECT_TRUE(done.empty());
}

TEST_F(Dispatching, AnIdInUseIsRefusedAndUsableAfterTheAnswer) {
    ask(1, "wait", {{"name", "x"}});
    ask(1, "echo", {{"name", "y"}});
    EXPECT_EQ(client.answer(1).at("error").at("code"), InvalidRequest);
    gate.open();
    EXPECT_TRUE(dispatcher.waitUntilIdle(10s));
    ask(1, "echo", {{"name", "z"}});
    EXPECT_TRUE(
        client.waitFor([](const Json& message) { return message.value("result", Json()) == "z"; }));
}

TEST_F(Dispatching, ProgressBeginsAndEndsBeforeTheAnswerAndKeepsItsDistance) {
    gate.open();
    ask(1, "wait", {{"name", "x"}, {"workDoneToken", "t"}});
    ASSERT_EQ(client.answer(1).at("result"), "x");
    std::vector<Json> kinds;
    for (const Json& message : client.messages()) {
        if (message.value("method", "") == "$/progress") {
            EXPECT_EQ(message.at("params").at("token"), "t");
            kinds.push_back(message.at("params").at("value").at("kind"));
        }
    }
    // The report comes too soon after the beginning.
    EXPECT_THAT(kinds, ElementsAre("begin", "end"));
    EXPECT_EQ(client.messages().back().value("id", 0), 1);
}

struct Fault {
    const char* method;
    Json params;
    int code;
    const char* message;

    friend void PrintTo(const Fault& self, std::ostream* out) { *out << self.message; }
};

class Faults : public Dispatching, public ::testing::WithParamInterface<Fault> {};

TEST_P(Faults, AreAnswered) {
    ask(1, GetParam().method, GetParam().params);
    const Json answer = client.answer(1);
    ASSERT_TRUE(answer.contains("error")) << answer;
    EXPECT_EQ(answer.at("error").at("code"), GetParam().code);
    EXPECT_THAT(answer.at("error").at("message").get<std::string>(), HasSubstr(GetParam().message));
    EXPECT_EQ(dispatcher.callsInFlight(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    All, Faults,
    ::testing::Values(
        Fault{"none", Json::object(), MethodNotFound, "\"none\" is not a method"},
        Fault{"$/none", Json::object(), MethodNotFound, "\"$/none\" is not a method"},
        Fault{"echo", Json::object(), InvalidParams, "params.name: required"},
        Fault{"echo", {{"name", 1}}, InvalidParams, "params.name: expected a string"},
        Fault{"echo", {{"name", "x"}, {"o", 1}}, InvalidParams, "params.o: unknown member"},
        Fault{"echo",
              {{"name", "x"}, {"partialResultToken", 1}},
              InvalidParams,
              "params.partialResultToken: unknown member"},
        Fault{"echo",
              {{"name", "x"}, {"workDoneToken", true}},
              InvalidParams,
              "params.workDoneToken: expected"},
        Fault{"throw", {{"name", "x"}}, InternalError, "The server failed: of itself"}));

} // namespace

} // namespace quen::test
