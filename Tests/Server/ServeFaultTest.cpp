#include "Tests/Faults/FaultyClient.h"
#include "Tests/Server/MethodCases.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <set>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

/// Every method at once, with a client that misbehaves in one way after the other.
class ServeFault : public ::testing::Test {
protected:
    explicit ServeFault(const Json& options = Json::object()) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            fs::create_directories(fs::path(copyOf(sandbox, i)).parent_path());
            fs::copy(sandbox.workingCopy(), copyOf(sandbox, i), fs::copy_options::recursive);
            sandbox.write(copyOf(sandbox, i) + "/new.c", "");
        }
        Json all = options;
        all["toolsDirectory"] = fs::path(client.path().str()).parent_path();
        server.initialize({{"options", all}});
    }
    ~ServeFault() override {
        client.endLeftProcesses();
        EXPECT_TRUE(becomesTrue([&] { return server.children().empty(); }));
        EXPECT_EQ(server.ask("server/statistics").at("requests"), 0);
    }

    /// Every method answers with this failure; `any` for those that may come to an end.
    void expectAll(const std::string& name, const Json& failure) {
        std::vector<int> ids;
        for (const MethodCase& each : cases) {
            ids.push_back(server.start(each.method, each.params));
        }
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const std::string what = name + ", " + cases[i].name;
            const Json answer = server.answer(ids[i]);
            ASSERT_TRUE(answer.contains("result")) << what << answer;
            const Json& result = answer.at("result");
            ASSERT_TRUE(result.contains("error") && result.contains("failure")) << what;
            EXPECT_EQ(result.at("error").is_null(), result.at("failure").is_null()) << what;
            if (failure != "any") {
                EXPECT_EQ(result.at("failure"), failure) << what << answer;
            }
            if (cases[i].method != "provider/perform" && result.at("error").is_object()) {
                expectFacts(result.at("error"), what);
            }
        }
    }
    static void expectFacts(const Json& error, const std::string& what) {
        for (const char* member :
             {"domain", "code", "description", "suggestion", "codes", "causes", "clientText"}) {
            EXPECT_TRUE(error.contains(member)) << what << member;
        }
        EXPECT_TRUE(error.at("description").is_string()) << what << error;
    }

    Sandbox sandbox;
    std::vector<MethodCase> cases = firstRuns(sandbox);
    FaultyClient client;
    RunningServer server{sandbox};
};

TEST_F(ServeFault, NoMethodIsForgotten) {
    RunningServer another(sandbox);
    std::set<std::string> left;
    const Json told = another.initialize();
    for (const Json& method : told.at("capabilities").at("methods")) {
        left.insert(method.get<std::string>());
    }
    for (const MethodCase& each : cases) {
        left.erase(each.method);
    }
    // These run no client, but for the last: a working copy is opened by all the others.
    for (const char* other : {"initialize", "shutdown", "provider/describe", "server/statistics",
                              "workingCopy/close", "change/undo", "workingCopy/open"}) {
        left.erase(other);
    }
    EXPECT_THAT(left, ::testing::IsEmpty());
}

TEST_F(ServeFault, ClientsThatCannotBeStarted) {
    client.takeAway();
    expectAll("missing", "couldNotStart");
    client.replaceByDeadLink();
    expectAll("a dead link", "couldNotStart");
    client.replaceByDirectory();
    expectAll("a directory", "couldNotStart");
    client.replaceByText();
    expectAll("no program", "couldNotStart");
}

TEST_F(ServeFault, ClientsThatFailOrDie) {
    for (const auto& [fault, failure] :
         std::vector<std::pair<const char*, const char*>>{{"exit:1", "other"},
                                                          {"say:7", "other"},
                                                          {"die-before:9", "killed"},
                                                          {"die-middle:11", "killed"},
                                                          {"die-after:15", "killed"}}) {
        client.misbehave(fault);
        expectAll(fault, failure);
    }
}

TEST_F(ServeFault, ClientsThatTalkNonsense) {
    const std::size_t descriptors = server.descriptors();
    for (const char* fault : {"say:0", "exit:0", "drip", "garbage", "half-character", "zero-bytes",
                              "close-output:0", "grandchild:0", "read-input"}) {
        client.misbehave(fault);
        expectAll(fault, "any");
        client.endLeftProcesses();
    }
    EXPECT_LE(server.descriptors(), descriptors + cases.size()) << "a watch a working copy at most";
}

class ServeFaultLimits : public ServeFault {
protected:
    ServeFaultLimits() : ServeFault({{"idleLimit", 300}}) {}
};

TEST_F(ServeFaultLimits, ClientsThatFallSilent) {
    client.misbehave("hang");
    expectAll("hang", "fellSilent");
}

class ServeFaultTime : public ServeFault {
protected:
    ServeFaultTime() : ServeFault({{"totalLimit", 500}}) {}
};

TEST_F(ServeFaultTime, ClientsThatTakeTooLong) {
    client.misbehave("chatter");
    expectAll("chatter", "timedOut");
}

} // namespace

} // namespace quen::test
