#include "Tests/Server/ServedFiles.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

/// What the process may have grown by; the sanitizers keep freed memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t allowedKilobytes = 512 * 1024;
#else
constexpr std::size_t allowedKilobytes = 8 * 1024;
#endif

class ServeLoad : public ServedFiles {
protected:
    /// Sends requests and waits for all answers.
    void askMany(int count, const std::function<int(int)>& start) {
        std::vector<int> ids;
        for (int i = 0; i < count; ++i) {
            ids.push_back(start(i));
        }
        for (const int id : ids) {
            ASSERT_FALSE(server.answer(id).is_null()) << id;
        }
    }
    int startOfAnyKind(int i) {
        switch (i % 7) {
        case 0: return server.start("workingCopy/status", {{"workingCopy", root()}});
        case 1: return server.start("none");
        case 2: return server.start("server/statistics");
        case 3:
            return server.start("provider/perform", {{"request", {{"type", 15}, {"files", {"a"}}}},
                                                     {"replay", {{{"stdout", "<status/>"}}}}});
        case 4: return server.start("workingCopy/open", {{"path", root()}, {"workDoneToken", i}});
        case 5:
            return server.start("file/content", {{"path", root() + "/a.c"}, {"revision", "BASE"}});
        default: return server.start("change/add", {{"paths", 3}});
        }
    }
};

TEST_F(ServeLoad, TenThousandRequestsLeaveMemoryAndDescriptorsAsTheyWere) {
    sandbox.write("a.c", "a\n");
    sandbox.svn({"add", "-q", "a.c"});
    sandbox.commit("A file");
    server.initialize();
    server.ask("workingCopy/open", {{"path", root()}});
    askMany(2000, [&](int i) { return startOfAnyKind(i); });
    const std::size_t memory = server.residentKilobytes();
    const std::size_t descriptors = server.descriptors();
    for (int round = 0; round < 4; ++round) {
        askMany(2000, [&](int i) { return startOfAnyKind(i); });
    }
    EXPECT_LT(server.residentKilobytes(), memory + allowedKilobytes);
    EXPECT_EQ(server.descriptors(), descriptors);
    EXPECT_TRUE(server.children().empty());
}

TEST_F(ServeLoad, AClientThatReadsSlowlyCostsNoMemory) {
    for (int i = 0; i < 2000; ++i) {
        sandbox.write("many/a-name-that-takes-some-room-on-its-way-" + std::to_string(i), "");
    }
    sandbox.svn({"add", "-q", "many"});
    server.initialize();
    server.ask("workingCopy/open", {{"path", root()}});
    askMany(10, [&](int) { return server.start("workingCopy/status", {{"workingCopy", root()}}); });
    const std::size_t memory = server.residentKilobytes();
    server.setReading(false);
    std::vector<int> ids;
    // About 250 kB each.
    for (int i = 0; i < 120; ++i) {
        ids.push_back(server.start("workingCopy/status", {{"workingCopy", root()}}));
    }
    EXPECT_TRUE(becomesTrue([&] { return server.residentKilobytes() > memory + 4096; }));
    EXPECT_LT(server.residentKilobytes(), memory + 120 * 1024 + allowedKilobytes);
    server.setReading(true);
    for (const int id : ids) {
        ASSERT_EQ(server.answer(id).at("result").at("items").size(), 2001U);
    }
}

TEST_F(ServeLoad, TenWorkingCopiesAtOnce) {
    std::vector<std::string> copies;
    for (int i = 0; i < 10; ++i) {
        copies.push_back((sandbox.root() / ("wc" + std::to_string(i))).string());
        sandbox.svn({"checkout", "-q", sandbox.url("trunk"), copies.back()});
    }
    server.initialize();
    askMany(10, [&](int i) {
        return server.start("workingCopy/open", {{"path", copies[static_cast<std::size_t>(i)]}});
    });
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 10);
    for (const std::string& copy : copies) {
        sandbox.write(copy + "/f.c", "");
    }
    askMany(10, [&](int i) {
        return server.start("change/add",
                            {{"paths", {copies[static_cast<std::size_t>(i)] + "/f.c"}}});
    });
    for (const std::string& copy : copies) {
        EXPECT_EQ(server.ask("workingCopy/status", {{"workingCopy", copy}}).at("counts"),
                  Json::parse(R"({"added": 1})"));
    }
}

} // namespace

} // namespace quen::test
