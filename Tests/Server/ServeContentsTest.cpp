#include "Tests/Server/ServedFiles.h"
#include "Tools/Console/Base64.h"

#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class ServeContents : public ServedFiles {
protected:
    ServeContents() {
        sandbox.write("a.c", "one\ntwo\n");
        sandbox.svn({"add", "-q", "a.c"});
        sandbox.commit("The beginning");
        sandbox.write("a.c", "one\nTWO\n");
        sandbox.commit("The second line\n\nin capitals", "bob");
        server.initialize();
    }

    std::string content(const Json& params) {
        const Json answer = server.ask("file/content", params);
        const auto bytes = answer.value("base64", Json()).is_string()
                               ? tools::bytesFromBase64(answer.at("base64").get<std::string>())
                               : std::nullopt;
        return bytes.value_or("none: " + answer.dump());
    }
};

TEST_F(ServeContents, ContentIsByteForByte) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    sandbox.write("bytes@2", bytes);
    sandbox.svn({"add", "-q", "bytes@2@"});
    sandbox.commit("Bytes");
    sandbox.write("bytes@2", "changed");
    EXPECT_EQ(content({{"path", path("bytes@2")}, {"revision", "BASE"}}), bytes);
    EXPECT_EQ(content({{"path", path("bytes@2")}, {"revision", "HEAD"}}), bytes);
    EXPECT_EQ(content({{"url", sandbox.url("trunk/bytes@2")}, {"revision", 4}}), bytes);
    EXPECT_EQ(content({{"path", path("a.c")}, {"revision", 2}}), "one\ntwo\n");
    EXPECT_EQ(content({{"url", sandbox.url("trunk/a.c")}, {"revision", 2}}), "one\ntwo\n");
    EXPECT_EQ(content({{"url", sandbox.url("trunk/a.c")}, {"revision", "HEAD"}}), "one\nTWO\n");
}

TEST_F(ServeContents, ABlameIsReadOnceUntilTheTextChanges) {
    const auto blames = [&] {
        return server.ask("server/statistics").at("clientRuns").value("blame", 0);
    };
    const std::vector<Json> places{{{"path", path("a.c")}},
                                   {{"path", path("a.c")}, {"revision", 2}},
                                   {{"path", path("a.c")}, {"revision", "BASE"}},
                                   {{"url", sandbox.url("trunk/a.c")}, {"revision", 3}}};
    std::vector<Json> first;
    for (const Json& place : places) {
        first.push_back(server.ask("file/blame", place));
    }
    EXPECT_EQ(blames(), 4);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(server.ask("file/blame", places[i]), first[i]);
    }
    EXPECT_EQ(blames(), 4);
    EXPECT_GT(server.ask("server/statistics").at("cacheBytes"), 100);
    EXPECT_EQ(server.ask("server/statistics").at("cacheBound"), 64 << 20);

    Json parts = places.front();
    parts["partialResultToken"] = "lines";
    EXPECT_EQ(server.ask("file/blame", parts).at("lines"), Json::array());
    const auto told = server.client().waitFor(
        [](const Json& message) { return message.value("method", "") == "$/progress"; });
    ASSERT_TRUE(told);
    EXPECT_EQ(told->at("params").at("value").size(), 2U);
    EXPECT_EQ(told->at("params").at("value")[1], first[0].at("revisions")[1]);
    EXPECT_EQ(blames(), 4);

    sandbox.write("a.c", "one\nTWO\nthree\n");
    EXPECT_EQ(server.ask("file/blame", places.front()).at("lines"), Json::parse("[0, 1, -1]"));
    server.ask("file/blame", {{"path", path("a.c")}, {"revision", "HEAD"}});
    server.ask("file/blame", {{"path", path("a.c")}, {"revision", "HEAD"}});
    EXPECT_EQ(blames(), 7);
}

TEST_F(ServeContents, WhatNeverChangesIsReadOnce) {
    const auto exports = [&] {
        return server.ask("server/statistics").at("clientRuns").value("export", 0);
    };
    for (int i = 0; i < 3; ++i) {
        content({{"path", path("a.c")}, {"revision", "BASE"}});
        content({{"url", sandbox.url("trunk/a.c")}, {"revision", 2}});
    }
    EXPECT_EQ(exports(), 2);
    sandbox.write("a.c", "three\n");
    sandbox.commit("Third");
    EXPECT_EQ(content({{"path", path("a.c")}, {"revision", "BASE"}}), "three\n");
    EXPECT_GT(server.ask("server/statistics").at("cacheBytes"), 0);
}

TEST_F(ServeContents, WhatIsNotThereIsAnOutcome) {
    const Json answer =
        server.ask("file/content", {{"path", path("none.c")}, {"revision", "BASE"}});
    EXPECT_EQ(answer.at("base64"), nullptr);
    EXPECT_EQ(answer.at("failure"), "other");
    EXPECT_FALSE(answer.at("error").at("codes").empty()) << answer;
    EXPECT_THAT(answer.at("error").at("clientText").get<std::string>(), HasSubstr("svn: E"));
    const Json offline = server.ask("repository/list", {{"url", "svn://127.0.0.1:9/none"}});
    EXPECT_EQ(offline.at("failure"), "offline") << offline;
}

TEST_F(ServeContents, BlameIsOfTheTextOnDisk) {
    sandbox.write("a.c", "one\nTWO\nthree\n");
    const Json blame = server.ask("file/blame", {{"path", path("a.c")}});
    EXPECT_EQ(blame.at("lines"), Json::parse("[0, 1, -1]"));
    ASSERT_EQ(blame.at("revisions").size(), 2U);
    EXPECT_EQ(blame.at("revisions")[0].at("revision"), 2);
    EXPECT_EQ(blame.at("revisions")[1].at("author"), "bob");
    EXPECT_THAT(blame.at("revisions")[1].at("date").get<std::string>(), ::testing::EndsWith("Z"));
    EXPECT_EQ(server.ask("file/blame", {{"path", path("a.c")}, {"revision", 2}}).at("lines"),
              Json::parse("[0, 0]"));
    EXPECT_EQ(server.ask("file/blame", {{"path", path("a.c")}, {"revision", "BASE"}}).at("lines"),
              Json::parse("[0, 1]"));
}

TEST_F(ServeContents, HistoryComesInPages) {
    const Json first =
        server.ask("history/log", {{"url", sandbox.url("trunk")}, {"limit", 2}, {"files", true}});
    ASSERT_EQ(first.at("entries").size(), 2U) << first;
    EXPECT_EQ(first.at("entries")[0].at("revision"), 3);
    EXPECT_EQ(first.at("entries")[0].at("author"), "bob");
    EXPECT_EQ(first.at("entries")[0].at("message"), "The second line\n\nin capitals");
    EXPECT_EQ(first.at("entries")[0].at("files"),
              Json::parse(R"([{"path": "/trunk/a.c", "action": "modified"}])"));
    EXPECT_EQ(first.at("next"), 1);
    const Json last =
        server.ask("history/log", {{"url", sandbox.url("trunk")}, {"limit", 2}, {"from", 1}});
    EXPECT_EQ(last.at("entries").size(), 1U);
    EXPECT_EQ(last.at("next"), nullptr);
    EXPECT_EQ(server.ask("history/log", {{"url", sandbox.url("trunk")}, {"limit", 3}}).at("next"),
              nullptr);
}

TEST_F(ServeContents, HistoryIsStreamed) {
    const int id = server.start(
        "history/log",
        {{"path", sandbox.workingCopy().string()}, {"limit", 10}, {"partialResultToken", 7}});
    EXPECT_EQ(server.answer(id).at("result").at("entries"), Json::array());
    std::size_t entries = 0;
    for (const Json& message : server.client().messages()) {
        if (message.value("method", "") == "$/progress") {
            EXPECT_EQ(message.at("params").at("token"), 7);
            entries += message.at("params").at("value").size();
        }
    }
    EXPECT_EQ(entries, 3U);
}

/// XML cannot hold them, so a strict reader ends there; the editor shows the rest all the same.
TEST_F(ServeContents, ControlCharactersOfAnAuthorEndNoHistory) {
    const std::string author("b\001b");
    sandbox.write("author", author);
    const Ran changed =
        sandbox.run({"svnadmin", "setrevprop", (sandbox.root() / "repository").string(), "-r", "2",
                     "svn:author", path("author")},
                    sandbox.root());
    ASSERT_EQ(changed.status, 0) << changed.err;
    const Json log = server.ask("history/log", {{"url", sandbox.url("trunk")}, {"limit", 9}});
    ASSERT_EQ(log.at("entries").size(), 3U) << log;
    // The client writes them in its own way in a log, and as they are in a blame.
    EXPECT_EQ(log.at("entries")[1].at("author"), R"(b?\001b)");
    const Json blame =
        server.ask("file/blame", {{"url", sandbox.url("trunk/a.c")}, {"revision", 3}});
    EXPECT_EQ(blame.at("lines").size(), 2U) << blame;
    EXPECT_EQ(blame.at("revisions")[0].at("author"), author);
}

TEST_F(ServeContents, HistoryIsSearched) {
    const auto found = [&](const Json& what) {
        Json params{{"url", sandbox.url("trunk")}, {"limit", 10}};
        params.update(what);
        Json revisions = Json::array();
        const Json answer = server.ask("history/search", params);
        for (const Json& entry : answer.value("entries", Json::array())) {
            revisions.push_back(entry.at("revision"));
        }
        return revisions.dump();
    };
    EXPECT_EQ(found({{"author", "bob"}}), "[3]");
    EXPECT_EQ(found({{"text", "CAPITALS"}}), "[3]");
    EXPECT_EQ(found({{"text", "the"}}), "[3,2,1]");
    EXPECT_EQ(found({{"text", "the"}, {"limit", 2}}), "[3,2]");
    EXPECT_EQ(found({{"since", "2999"}}), "[]");
    EXPECT_EQ(found({{"until", "1999"}}), "[]");
}

TEST_F(ServeContents, AHistoryOfWhatIsGoneIsFoundByItsRevision) {
    sandbox.svn({"rm", "-q", "a.c"});
    sandbox.commit("Away");
    const Json log =
        server.ask("history/log", {{"url", sandbox.url("trunk/a.c")}, {"limit", 5}, {"from", 3}});
    EXPECT_EQ(log.at("entries").size(), 2U) << log;
}

TEST_F(ServeContents, DifferencesHaveItemsOrText) {
    const Json summary =
        server.ask("diff/summary", {{"from", {{"url", sandbox.url("trunk")}, {"revision", 2}}},
                                    {"to", {{"url", sandbox.url("trunk")}, {"revision", 3}}}});
    ASSERT_EQ(summary.at("items").size(), 1U) << summary;
    EXPECT_EQ(summary.at("items")[0].at("status"), "modified");
    EXPECT_THAT(summary.at("items")[0].at("path").get<std::string>(), HasSubstr("a.c"));
    sandbox.write("a.c", "disk\n");
    const auto text = [&](const Json& params) {
        return tools::bytesFromBase64(server.ask("diff/text", params).value("base64", "?"))
            .value_or("none");
    };
    EXPECT_THAT(text({{"paths", {path("a.c")}}}), HasSubstr("+disk"));
    EXPECT_THAT(text({{"paths", {path("a.c")}}, {"from", 2}}), HasSubstr("-two"));
    EXPECT_THAT(text({{"paths", {path("a.c")}}, {"from", 2}, {"to", 3}}), HasSubstr("+TWO"));
    EXPECT_THAT(text({{"url", sandbox.url("trunk/a.c")}, {"from", 2}, {"to", 3}}),
                HasSubstr("+TWO"));
}

TEST_F(ServeContents, TheRepositoryIsListedExportedAndImported) {
    const Json list = server.ask("repository/list", {{"url", sandbox.url("trunk")}});
    ASSERT_EQ(list.at("entries").size(), 1U) << list;
    EXPECT_EQ(list.at("entries")[0].at("name"), "a.c");
    EXPECT_EQ(list.at("entries")[0].at("kind"), "file");
    EXPECT_EQ(list.at("entries")[0].at("revision"), 3);
    EXPECT_EQ(list.at("entries")[0].at("url"), sandbox.url("trunk/a.c"));
    const std::string to = (sandbox.root() / "exported").string();
    const Json done = server.ask("repository/export", {{"url", sandbox.url("trunk")}, {"to", to}});
    EXPECT_EQ(done.at("path"), to) << done;
    EXPECT_EQ(sandbox.read(to + "/a.c"), "one\nTWO\n");
    EXPECT_THAT(server.ask("repository/export", {{"url", sandbox.url("trunk")}, {"to", to}})
                    .at("message")
                    .get<std::string>(),
                HasSubstr("params.to: there is something"));
    const Json imported = server.ask(
        "repository/import", {{"path", to}, {"url", sandbox.url("vendor")}, {"message", "x"}});
    EXPECT_EQ(imported.at("revision"), 4) << imported;
}

} // namespace

} // namespace quen::test
