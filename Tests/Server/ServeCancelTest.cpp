#include "Tests/Faults/FaultyClient.h"
#include "Tests/Server/MethodCases.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

/// Every method at once, cancelled at one moment.
class ServeCancel : public ::testing::Test {
protected:
    ServeCancel() {
        sandbox.write("a.c", "a\n");
        sandbox.svn({"add", "-q", "a.c"});
        sandbox.commit("A file");
        fs::create_directory(sandbox.root() / "temporary");
        for (std::size_t i = 0; i < std::max(first.size(), later.size()); ++i) {
            fs::create_directories(fs::path(copyOf(sandbox, i)).parent_path());
            fs::copy(sandbox.workingCopy(), copyOf(sandbox, i), fs::copy_options::recursive);
            sandbox.write(copyOf(sandbox, i) + "/new.c", "");
        }
        useRealClient();
        server.initialize(
            {{"options", {{"toolsDirectory", fs::path(client.path().str()).parent_path()}}}});
        std::vector<int> ids;
        for (std::size_t i = 0; i < first.size(); ++i) {
            ids.push_back(server.start("workingCopy/open", {{"path", copyOf(sandbox, i)}}));
        }
        for (const int id : ids) {
            EXPECT_EQ(server.answer(id).at("result").at("failure"), nullptr);
        }
        client.putBack();
        client.prepare(".status.output", "<status></status>");
        client.prepare(".info.output", "<info></info>");
    }
    ~ServeCancel() override {
        // What is done behind an answer may begin one more client, which replays and ends.
        client.misbehave("replay:0");
        waitForOwnWork();
        EXPECT_TRUE(becomesTrue([&] { return server.children().empty(); }));
        EXPECT_TRUE(client.leavesNoProcess());
        EXPECT_EQ(server.ask("server/statistics").at("requests"), 0);
    }

    void useRealClient() const {
        client.takeAway();
        fs::create_symlink("/usr/bin/svn", client.path().str());
    }

    /// Those whose client the fault strikes in one setting: a status would keep others from theirs.
    static std::vector<MethodCase> onesWith(const std::vector<MethodCase>& cases, bool areStatus) {
        std::vector<MethodCase> ones;
        std::copy_if(cases.begin(), cases.end(), std::back_inserter(ones),
                     [&](const MethodCase& each) { return (each.word == "status") == areStatus; });
        return ones;
    }
    std::vector<std::vector<MethodCase>> groups() const {
        return {onesWith(first, true), onesWith(first, false), later};
    }

    /// What is done behind the answers; its clients replay meanwhile.
    void waitForOwnWork() {
        EXPECT_TRUE(
            becomesTrue([&] { return server.ask("server/statistics").at("ownWork") == 0; }));
    }

    /// The runs that are meant do this, all others replay what was prepared.
    void misbehave(const std::vector<MethodCase>& cases, const std::string& fault) const {
        std::set<std::string> words;
        for (const MethodCase& each : cases) {
            words.insert(each.word);
        }
        std::string lines;
        for (const std::string& word : words) {
            lines += word + "=" + fault + "\n";
        }
        client.misbehave(lines + "replay:0");
    }

    std::vector<int> startAll(const std::vector<MethodCase>& cases) {
        std::vector<int> ids;
        for (const MethodCase& each : cases) {
            ids.push_back(server.start(each.method, each.params));
        }
        return ids;
    }

    /// Starts all of each group, waits until each client has told, cancels all.
    void expectCancelledOnceTold(const std::string& fault) {
        for (const std::vector<MethodCase>& cases : groups()) {
            waitForOwnWork();
            misbehave(cases, fault);
            const std::vector<int> ids = startAll(cases);
            ASSERT_TRUE(client.waitUntilTold(cases.size())) << fault;
            client.misbehave("replay:0");
            for (const int id : ids) {
                server.notify("$/cancelRequest", {{"id", id}});
            }
            for (std::size_t i = 0; i < cases.size(); ++i) {
                const Json answer = server.answer(ids[i]);
                ASSERT_TRUE(answer.contains("error")) << fault << cases[i].name << answer;
                EXPECT_EQ(answer.at("error").at("code"), -32800) << fault << cases[i].name;
                EXPECT_EQ(answer.at("error").at("data"),
                          Json({{"mayHaveLeftLock", cases[i].locks}}))
                    << fault << cases[i].name;
            }
        }
    }

    Sandbox sandbox;
    std::vector<MethodCase> first = firstRuns(sandbox);
    std::vector<MethodCase> later = laterRuns(sandbox);
    FaultyClient client;
    RunningServer server{sandbox, {}, {"TMPDIR=" + (sandbox.root() / "temporary").string()}};
};

TEST_F(ServeCancel, OnceTheClientHasBegun) {
    expectCancelledOnceTold("hang");
    expectCancelledOnceTold("chatter");
    expectCancelledOnceTold("hang-closed");
    expectCancelledOnceTold("last-words:0");
}

TEST_F(ServeCancel, OfClientsThatDoNotListen) {
    expectCancelledOnceTold("hang-deaf");
}

TEST_F(ServeCancel, RightBehindTheRequest) {
    for (const std::vector<MethodCase>& cases : groups()) {
        waitForOwnWork();
        misbehave(cases, "hang");
        std::vector<int> ids;
        for (const MethodCase& each : cases) {
            ids.push_back(server.start(each.method, each.params));
            server.notify("$/cancelRequest", {{"id", ids.back()}});
        }
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const Json answer = server.answer(ids[i]);
            ASSERT_TRUE(answer.contains("error")) << cases[i].name << answer;
            EXPECT_EQ(answer.at("error").at("code"), -32800) << cases[i].name;
        }
        client.misbehave("replay:0");
    }
}

/// Changes of one working copy wait for each other; whoever waits is answered at once.
TEST_F(ServeCancel, WhileWaitingForItsTurn) {
    client.misbehave("add=hang\nreplay:0");
    const std::string copy = copyOf(sandbox, 0);
    const int blocking = server.start("change/add", {{"paths", {copy + "/new.c"}}});
    ASSERT_TRUE(client.waitUntilTold(1));
    client.takeAway(); // nothing more may be started
    std::vector<int> ids;
    for (std::size_t i = 0; i < 5; ++i) {
        ids.push_back(server.start("change/add", {{"paths", {copy + "/new.c"}}}));
        ids.push_back(server.start("workingCopy/update", {{"paths", {copy}}}));
        ids.push_back(server.start("change/revert", {{"paths", {copy}}}));
        ids.push_back(server.start(
            "provider/perform",
            {{"request", {{"type", "RequestTypeAdd"}, {"files", {copy + "/new.c"}}}}}));
    }
    for (const int id : ids) {
        server.notify("$/cancelRequest", {{"id", id}});
        EXPECT_EQ(server.answer(id).at("error").at("data"), Json({{"mayHaveLeftLock", false}}));
    }
    client.putBack();
    server.notify("$/cancelRequest", {{"id", blocking}});
    EXPECT_EQ(server.answer(blocking).at("error").at("code"), -32800);
}

TEST_F(ServeCancel, AfterTheEndNothingIsAnsweredTwice) {
    client.misbehave("exit:7");
    const std::vector<int> ids = startAll(first);
    for (const int id : ids) {
        EXPECT_TRUE(server.answer(id).contains("result")) << server.answer(id);
    }
    for (const int id : ids) {
        server.notify("$/cancelRequest", {{"id", id}});
    }
    server.ask("server/statistics");
    std::multiset<int> answered;
    for (const Json& message : server.client().messages()) {
        if (!message.contains("method")) {
            answered.insert(message.at("id").get<int>());
        }
    }
    for (const int id : ids) {
        EXPECT_EQ(answered.count(id), 1U);
    }
}

/// Either the one outcome or the other, at whatever moment the cancel falls into the run.
TEST_F(ServeCancel, AtAnyMoment) {
    client.misbehave("say:7");
    std::minstd_rand random(
        1); // NOLINT(cert-msc51-cpp): the same moments each time, as far as can be
    int cancelledOnes = 0;
    for (int round = 0; round < 3; ++round) {
        const std::vector<int> ids = startAll(first);
        for (const int id : ids) {
            const auto end =
                std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 3000);
            while (std::chrono::steady_clock::now() < end) {
                std::this_thread::yield();
            }
            server.notify("$/cancelRequest", {{"id", id}});
        }
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const Json answer = server.answer(ids[i]);
            ASSERT_FALSE(answer.is_null()) << first[i].name;
            const bool wasCancelled = answer.contains("error");
            cancelledOnes += wasCancelled ? 1 : 0;
            if (wasCancelled) {
                EXPECT_EQ(answer.at("error").at("code"), -32800) << first[i].name << answer;
            } else {
                EXPECT_EQ(answer.at("result").at("failure"), "other") << first[i].name << answer;
            }
        }
    }
    std::cout << "  " << cancelledOnes << " of them ended as cancelled\n";
}

} // namespace

} // namespace quen::test
