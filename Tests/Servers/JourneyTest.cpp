#include "Tests/Servers/Journey.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <iostream>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

constexpr const char* helloC =
    "#include <stdio.h>\n\nvoid greet(void) {\n    puts(\"Hello\");\n}\n";
constexpr const char* morningC =
    "#include <stdio.h>\n\nvoid greet(void) {\n    puts(\"Good morning\");\n}\n";

Json says(const std::string& message) {
    return {{"QuenSourceControlRequestOptionMessage", message}};
}

/// One project's life on one server: every type of request, and after each step a look at what it
/// has done.
class JourneyTest : public ::testing::TestWithParam<ServerKind> {
protected:
    JourneyTest() : journey_(GetParam()) {}

    void walk();

private:
    void begin();
    void edit();
    void lookAround();
    void lookBack();
    void branch();
    void conflict();
    void merge();
    void rearrange();
    void meetTheColleague();

    Json here(RequestType type, const Json& request) {
        return journey_.ask(type, journey_.workingTree(), request);
    }
    Json there(RequestType type, const Json& request) {
        return journey_.ask(type, journey_.repository(), request);
    }
    /// Commits from the working copy; the revision must be the next one, and by the right author.
    void commit(const Json& files, const std::string& message) {
        const std::string next = std::to_string(std::stoi(youngest()) + 1);
        const Json result = here(RequestTypeCommit, {{"files", files}, {"options", says(message)}});
        EXPECT_EQ(Journey::column(result, "Revision"), Json::array({next}));
        EXPECT_EQ(youngest(), next);
        EXPECT_EQ(look("author"), journey_.server().author() + "\n");
        EXPECT_EQ(look("log"), message + "\n");
    }
    void switchTo(const std::string& path) {
        here(RequestTypeSwitch, {{"files", {"."}}, {"destination", journey_.server().url(path)}});
        EXPECT_EQ(inWorkingCopy({"info", "--show-item", "relative-url"}), "^/" + path + "\n");
    }

    void write(const std::string& name, std::string_view text) const {
        sandbox().write(journey_.workingCopy() / name, text);
    }
    std::string read(const std::string& name) const {
        return sandbox().read(journey_.workingCopy() / name);
    }

    // What is there, past the server: the repository's files, and the working copy's.
    std::string look(const std::string& question) const {
        return sandbox().run({"svnlook", question, "repository"}, sandbox().root()).out;
    }
    std::string youngest() const {
        const std::string text = look("youngest");
        return text.substr(0, text.find('\n'));
    }
    std::string listed(const std::string& path) const {
        return sandbox().svn({"list", "-R", sandbox().url(path)});
    }
    std::string committed(const std::string& path) const {
        return sandbox().svn({"cat", sandbox().url(path)});
    }
    std::string inWorkingCopy(Sandbox::Words words) const {
        words.push_back(journey_.workingCopy().string());
        return sandbox().svn(words);
    }
    /// The status of each path that has one, as numbers by name.
    Json statusOf(const Json& files, RequestType type = RequestTypeStatus,
                  const std::string& key = "WCStatus") {
        Json numbers = Json::object();
        for (const Json& record : here(type, {{"files", files}})) {
            const Json value = Journey::column(Json::array({record}), key).front();
            if (value != 0) {
                numbers[Journey::column(Json::array({record}), "Path").front().get<std::string>()] =
                    value;
            }
        }
        return numbers;
    }

    const Sandbox& sandbox() const { return journey_.sandbox(); }
    std::string url(const std::string& path) const { return journey_.server().url(path); }

protected:
    Journey journey_;
};

/// Each stage stands on the ones before.
void JourneyTest::walk() {
    for (const auto stage :
         {&JourneyTest::begin, &JourneyTest::edit, &JourneyTest::lookAround, &JourneyTest::lookBack,
          &JourneyTest::branch, &JourneyTest::conflict, &JourneyTest::merge,
          &JourneyTest::rearrange, &JourneyTest::meetTheColleague}) {
        (this->*stage)();
        if (HasFailure()) {
            return;
        }
    }
}

void JourneyTest::begin() {
    sandbox().write(journey_.place("seed/greet.c"), helloC);
    sandbox().write(journey_.place("seed/greet.h"), "void greet(void);\n");
    sandbox().write(journey_.place("seed/main.c"), "int main(void) {}\n");
    Json options = says("Import");
    options["QuenSourceControlRequestOptionSourceLocation"] = url("trunk");
    there(RequestTypeImport, {{"files", {journey_.place("seed").string()}}, {"options", options}});
    EXPECT_EQ(listed("trunk"), "greet.c\ngreet.h\nmain.c\n");
    EXPECT_EQ(committed("trunk/greet.c"), helloC);

    const Json list = there(RequestTypeList, {{"files", {url("trunk")}}});
    EXPECT_EQ(Journey::column(list, "Name"), Json::array({"greet.c", "greet.h", "main.c"}));

    there(RequestTypeMakeDirectory,
          {{"destination", url("tags/first one")}, {"options", says("A place")}});
    EXPECT_EQ(listed("tags"), "first one/\n");

    for (const std::string name : {"colleague", "project"}) {
        there(RequestTypeCheckout,
              {{"files", {url("trunk")}}, {"destination", journey_.place(name).string()}});
        EXPECT_EQ(sandbox().read(journey_.place(name) / "greet.c"), helloC);
    }
}

void JourneyTest::edit() {
    write("greet.c", morningC);
    write("icon@2x.txt", "(an icon)\n");
    write("build.log", "built\n");
    here(RequestTypeAdd, {{"files", {"icon@2x.txt"}}});
    here(RequestTypeMakeDirectory, {{"destination", "docs"}});
    here(RequestTypeIgnore, {{"files", {"build.log"}}});
    EXPECT_EQ(statusOf({"."}),
              Json::object(
                  {{".", 8}, {"build.log", 128}, {"docs", 1}, {"greet.c", 4}, {"icon@2x.txt", 1}}));
    const Json diff = here(RequestTypeDiff, Json::object());
    EXPECT_THAT(Journey::column(diff, "Content").at(0).get<std::string>(),
                HasSubstr("-    puts(\"Hello\");\n+    puts(\"Good morning\");\n"));

    commit({"."}, "Greet by the time of day");
    EXPECT_EQ(committed("trunk/greet.c"), morningC);
    EXPECT_EQ(committed("trunk/icon@2x.txt@"), "(an icon)\n");

    here(RequestTypeUpdate, {{"files", {"."}}});
    EXPECT_EQ(inWorkingCopy({"info", "--show-item", "revision"}), youngest() + "\n");
    here(RequestTypeUnignore, {{"files", {"build.log"}}});
    EXPECT_EQ(statusOf({"build.log"}), Json::object({{"build.log", 256}}));
    here(RequestTypeRevert, {{"files", {"."}}});
    EXPECT_EQ(statusOf({"."}), Json::object({{"build.log", 128}}));
}

void JourneyTest::lookAround() {
    const Json info = here(RequestTypeInfo, {{"files", {"."}}});
    EXPECT_EQ(Journey::column(info, "RemoteOrigin"), Json::array({url("trunk")}));
    EXPECT_EQ(Journey::column(info, "RepositoryRoot"), Json::array({url("")}));
    EXPECT_EQ(Journey::column(info, "Revision"), Json::array({youngest()}));
    const Json remote = there(RequestTypeInfo, {{"files", {url("trunk/greet.c")}}});
    EXPECT_EQ(Journey::column(remote, "Revision"), Json::array({youngest()}));
    for (const RequestType type : {RequestTypeInfoCheck, RequestTypeInfoCheckAlternate}) {
        EXPECT_EQ(here(type, {{"files", {"greet.c"}}}), Json());
    }
    const Json current = here(RequestTypeCurrentBranch, Json::object());
    EXPECT_EQ(Journey::column(current, "Name"), Json::array({"QuenSourceControlTrunkBranchName"}));
}

void JourneyTest::lookBack() {
    const Json author =
        journey_.server().author().empty() ? Json() : Json(journey_.server().author());
    const Json log =
        there(RequestTypeLog, {{"files", {url("trunk")}},
                               {"options",
                                {{"QuenSourceControlRequestOptionLogOutputFilesChanged", true},
                                 {"QuenSourceControlRequestOptionLogOutputLimit", 2}}}});
    EXPECT_EQ(Journey::column(log, "Message"), Json::array({"Greet by the time of day", "Import"}));
    EXPECT_EQ(Journey::column(log, "Author"), Json::array({author, author}));
    EXPECT_EQ(Journey::column(log, "Files").at(0).value("/trunk/greet.c", 0), 12);
    const Json all = here(RequestTypeLogAll, Json::object());
    EXPECT_EQ(Journey::column(all, "Revision"), Json::array({"4", "2", "1"}));

    const Json blame = here(RequestTypeBlame, {{"files", {"greet.c"}}});
    EXPECT_EQ(Journey::column(blame, "Revision"), Json::array({"2", "2", "2", "4", "2"}));
    EXPECT_EQ(Journey::column(blame, "Author"),
              Json::array({author, author, author, author, author}));

    // The file goes with the console; another command shows what such a request fetches.
    const Json exported =
        here(RequestTypeExportFile, {{"files", {"greet.c"}}, {"startingRevision", "2"}});
    EXPECT_EQ(exported.size(), 1U);
    EXPECT_EQ(sandbox()
                  .run({Sandbox::program(), "cat", "-r", "2", "greet.c"}, journey_.workingCopy(),
                       journey_.server().variables())
                  .out,
              helloC);
    const Json diff =
        here(RequestTypeDiff,
             {{"files", {"greet.c"}}, {"startingRevision", "2"}, {"endingRevision", "4"}});
    EXPECT_THAT(Journey::column(diff, "Content").at(0).get<std::string>(),
                HasSubstr("+    puts(\"Good morning\");\n"));
}

void JourneyTest::branch() {
    there(RequestTypeRemoteCopy, {{"destination", "polite"}, {"options", says("A branch")}});
    EXPECT_EQ(committed("branches/polite/greet.c"), morningC);
    const Json branches = there(RequestTypeListBranches, Json::object());
    EXPECT_EQ(Journey::column(branches, "Name"), Json::array({"polite"}));

    switchTo("branches/polite");
    const Json current = here(RequestTypeCurrentBranch, Json::object());
    EXPECT_EQ(Journey::column(current, "Name"), Json::array({"polite"}));
    write("greet.h", "void greet(void); /* politely */\n");
    commit({"greet.h"}, "Promise manners");
    EXPECT_EQ(committed("branches/polite/greet.h"), "void greet(void); /* politely */\n");
    EXPECT_EQ(committed("trunk/greet.h"), "void greet(void);\n");

    const Json changes = there(
        RequestTypeDiff, {{"files", {url("trunk")}}, {"destination", url("branches/polite")}});
    EXPECT_EQ(Journey::column(changes, "WCStatus"), Json::array({4}));
}

void JourneyTest::conflict() {
    switchTo("trunk");
    write("greet.h", "void greet(void); /* loudly */\n");
    switchTo("branches/polite");
    EXPECT_EQ(statusOf({"greet.h"}), Json::object({{"greet.h", 16}}));
    write("greet.h", "void greet(void); /* politely, but audibly */\n");
    here(RequestTypeResolve, {{"files", {"greet.h"}}});
    EXPECT_EQ(statusOf({"greet.h"}), Json::object({{"greet.h", 4}}));
    commit({"greet.h"}, "Be heard as well");
}

void JourneyTest::merge() {
    switchTo("trunk");
    here(RequestTypeUpdate, {{"files", {"."}}});
    here(RequestTypeMerge, {{"files", {"."}}, {"destination", url("branches/polite")}});
    EXPECT_EQ(read("greet.h"), "void greet(void); /* politely, but audibly */\n");
    commit({"."}, "Merge");
    EXPECT_EQ(committed("trunk/greet.h"), "void greet(void); /* politely, but audibly */\n");
    there(RequestTypeRemoteRemove, {{"destination", "polite"}, {"options", says("Arrived")}});
    EXPECT_EQ(listed("branches"), "");
}

void JourneyTest::rearrange() {
    here(RequestTypeCopy, {{"files", {"greet.c"}}, {"destination", "copy.c"}});
    EXPECT_EQ(read("copy.c"), morningC);
    here(RequestTypeMove, {{"files", {(journey_.workingCopy() / "icon@2x.txt").string()}},
                           {"destination", (journey_.workingCopy() / "docs/icon.txt").string()}});
    EXPECT_EQ(read("docs/icon.txt"), "(an icon)\n");
    here(RequestTypeRemove, {{"files", {"main.c"}}});
    commit({"."}, "Tidy up");
    EXPECT_EQ(listed("trunk"), "copy.c\ndocs/\ndocs/icon.txt\ngreet.c\ngreet.h\n");
}

void JourneyTest::meetTheColleague() {
    const auto theirs = journey_.place("colleague");
    journey_.ask(RequestTypeUpdate, journey_.workingTree(theirs), {{"files", {theirs.string()}}});
    EXPECT_EQ(sandbox().read(theirs / "copy.c"), morningC);
    sandbox().write(theirs / "copy.c", helloC);
    journey_.ask(RequestTypeCommit, journey_.workingTree(theirs),
                 {{"files", {(theirs / "copy.c").string()}}, {"options", says("Shorter")}});

    EXPECT_EQ(statusOf({"."}, RequestTypeRemoteStatus, "RepositoryStatus"),
              Json::object({{"copy.c", 1024}}));
    here(RequestTypeUpdate, {{"files", {"."}}});
    EXPECT_EQ(read("copy.c"), helloC);
    EXPECT_EQ(statusOf({"."}, RequestTypeRemoteStatus, "RepositoryStatus"), Json::object());
}

TEST_P(JourneyTest, PassesEveryRequestType) {
    const auto start = std::chrono::steady_clock::now();
    walk();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    std::cout << GetParam() << ": " << journey_.passed().size() << " of "
              << Journey::servedTypes().size() << " request types passed, " << journey_.requests()
              << " requests in " << time.count() << " s\n";
    EXPECT_EQ(journey_.passed(), Journey::servedTypes());
}

INSTANTIATE_TEST_SUITE_P(On, JourneyTest,
                         ::testing::Values(ServerKind::files, ServerKind::svnserve,
                                           ServerKind::svnserveWithPassword, ServerKind::httpd,
                                           ServerKind::sshd),
                         ::testing::PrintToStringParamName());

} // namespace

} // namespace quen::test
