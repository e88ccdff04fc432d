#include "Tests/System/ShowingCase.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

class BrowsingTest : public testing::Test {
protected:
    BrowsingTest() { makeHistory(sandbox_); }

    Sandbox sandbox_;
};

std::string infoOf(const std::string& path, const std::string& place, const std::string& change) {
    return (path.empty() ? "" : "Path          " + path + "\n") +
           "URL           file://SANDBOX/repository/" + place +
           "\n"
           "Repository    file://SANDBOX/repository\n"
           "Branch        trunk\n"
           "Working copy  r4  SANDBOX/wc\n"
           "Last changed  " +
           change + "  AGE (DATE)\n";
}

TEST_F(BrowsingTest, InfoTellsWhereAnItemLiesAndItsLastChange) {
    expectEach(sandbox_,
               {{{"info"}, infoOf(".", "trunk", "r4  alice")},
                {{"info", "hello.c", "icon@2x.txt"},
                 infoOf("hello.c", "trunk/hello.c", "r4  alice") + "\n" +
                     infoOf("icon@2x.txt", "trunk/icon@2x.txt", "r3  bob")},
                {{"info", "with blank.txt", "\xC3\xBCmlaut.txt", "--", "-dash.txt"},
                 infoOf("with blank.txt", "trunk/with%20blank.txt", "r2  alice") + "\n" +
                     infoOf("\xC3\xBCmlaut.txt", "trunk/%C3%BCmlaut.txt", "r2  alice") + "\n" +
                     infoOf("./-dash.txt", "trunk/-dash.txt", "r2  alice")},
                {{"info", "new.c"}, "", 0, "quen info: \"new.c\" was never committed.\n"},
                {{"info", "new.c", "hello.c"},
                 infoOf("", "trunk/hello.c", "r4  alice"),
                 0,
                 "quen info: 1 of the 2 items was never committed.\n"},
                {{"info", "nowhere"}, "", 1, "quen info: \"nowhere\" does not exist.\n"},
                {{"info", "--json", "empty"},
                 "[{\"QuenSourceControlOperationRemoteOriginKey\":"
                 "\"file://SANDBOX/repository/trunk/empty\","
                 "\"QuenSourceControlOperationRepositoryRootKey\":\"file://SANDBOX/repository\","
                 "\"QuenSourceControlOperationRevisionKey\":\"2\","
                 "\"QuenSourceControlOperationAuthorKey\":\"alice\","
                 "\"QuenSourceControlOperationDateKey\":\"DATE\","
                 "\"kind\":\"file\",\"branch\":\"trunk\",\"path\":\"SANDBOX/wc/empty\","
                 "\"workingCopy\":\"SANDBOX/wc\",\"workingCopyRevision\":4,"
                 "\"url\":\"file://SANDBOX/repository/trunk/empty\","
                 "\"repositoryRoot\":\"file://SANDBOX/repository\","
                 "\"revision\":2,\"author\":\"alice\",\"date\":\"DATE\"}]\n"}});
}

/// A script must be able to tell which record belongs to which of its paths.
TEST_F(BrowsingTest, InfoForScriptsSaysWhatEachRecordIsAbout) {
    const auto pathsOf = [&](Sandbox::Words words) {
        words.insert(words.begin(), {"info", "--json"});
        const Ran ran = sandbox_.quen(words);
        std::string paths;
        for (const auto& record : nlohmann::json::parse(ran.out)) {
            paths += record.value("path", "none") + " " + record["kind"].get<std::string>() + " " +
                     record.value("branch", "none") + "\n";
        }
        return sandbox_.neutral(paths);
    };
    EXPECT_EQ(pathsOf({}), "SANDBOX/wc dir trunk\n");
    EXPECT_EQ(pathsOf({"src/../hello.c", "new.c", "icon@2x.txt", "src"}),
              "SANDBOX/wc/hello.c file trunk\nSANDBOX/wc/icon@2x.txt file trunk\n"
              "SANDBOX/wc/src dir trunk\n");
    EXPECT_EQ(pathsOf({"hello.c", "hello.c"}),
              "SANDBOX/wc/hello.c file trunk\nSANDBOX/wc/hello.c file trunk\n");
    EXPECT_EQ(pathsOf({"src", sandbox_.url("branches/feature/src"), sandbox_.url("tags")}),
              "SANDBOX/wc/src dir trunk\nnone dir feature\nnone dir none\n");
}

TEST_F(BrowsingTest, ListsInDetailDeepAndAsOfARevision) {
    EXPECT_EQ(sandbox_.quen({"list", "-R", "src"}).out, "main.c\n");
    EXPECT_EQ(sandbox_.quen({"list", "-r", "2", "src"}).out, "main.c\n");
    EXPECT_EQ(sandbox_.quen({"list", "-R", sandbox_.url("branches/feature")}).status, 0);
    expectEach(sandbox_,
               {{{"list", "-v", "src"}, "     r2  alice       AGE            2  main.c\n"},
                {{"list", "--jsonl", "src"},
                 "{\"name\":\"main.c\",\"kind\":\"file\",\"size\":2,\"revision\":2,"
                 "\"author\":\"alice\",\"date\":\"DATE\"}\n"}});
}

TEST_F(BrowsingTest, TagsAreMadeAndListed) {
    const std::string tags = "file://SANDBOX/repository/tags";
    expectEach(sandbox_,
               {{{"tags"}, "", 0, "quen tags: There are no tags in " + tags + ".\n"},
                {{"tags", "--json"}, "[]\n"},
                {{"tag", "v1", "-m", "First", "--username", "bob"}, "Committed revision 6.\n"},
                {{"tag", "v2", "-m", "Second", "--username", "bob", "--from", "feature"},
                 "Committed revision 7.\n"},
                {{"tags"}, "v2  r7  bob  AGE\nv1  r6  bob  AGE\n"},
                {{"tag", "v1", "-m", "Again"},
                 "",
                 1,
                 "quen tag: Tag \"v1\" already exists (last changed in r6 by bob). Choose another "
                 "name.\n"},
                {{"tag", "v1/..", "-m", "Out"},
                 "",
                 1,
                 "quen tag: \"v1/..\" cannot be the name of a tag: its parts must not be empty, "
                 ". or ..\n"}});
    EXPECT_THAT(sandbox_.quen({"info", sandbox_.url("tags/v1")}).out,
                HasSubstr("Branch        tag v1\n"));
}

TEST_F(BrowsingTest, ACommandThatDoesNotExistIsAnsweredWithTheNearest) {
    expectEach(sandbox_,
               {{{"stauts"},
                 "",
                 2,
                 "quen: \"stauts\" is not a command. Did you mean \"status\"? `quen help` "
                 "lists all commands.\n"},
                {{"frobnicate"},
                 "",
                 2,
                 "quen: \"frobnicate\" is not a command. `quen help` lists all "
                 "commands.\n"}});
}

TEST_F(BrowsingTest, InfoChecksWithoutAWord) {
    expectEach(sandbox_, {{{"info", "--check", "hello.c", "new.c"}, ""},
                          {{"info", "--check", sandbox_.url("tags")}, ""}});
    EXPECT_EQ(sandbox_.quen({"info", "--check", "nowhere"}).status, 1);
    EXPECT_EQ(sandbox_.quen({"info", "--check", sandbox_.url("nowhere")}).status, 1);
}

TEST_F(BrowsingTest, ListNamesWhatADirectoryHolds) {
    expectEach(
        sandbox_,
        {{{"list"},
          "-dash.txt\nblob\nempty\nhello.c\nicon@2x.txt\nsrc/\nwith "
          "blank.txt\n\xC3\xBCmlaut.txt\n"},
         {{"list", "src"}, "main.c\n"},
         {{"list", "icon@2x.txt"}, "icon@2x.txt\n"},
         {{"list", "--", "-dash.txt"}, "-dash.txt\n"},
         {{"list", sandbox_.url()}, "branches/\ntags/\ntrunk/\n"},
         {{"list", sandbox_.url("tags")}, ""},
         {{"list", "--json", "src"},
          "[{\"QuenSourceControlOperationIsLeafKey\":true,"
          "\"QuenSourceControlOperationNameKey\":\"main.c\","
          "\"name\":\"main.c\",\"kind\":\"file\",\"size\":2,\"revision\":2,"
          "\"author\":\"alice\",\"date\":\"DATE\"}]\n"},
         {{"list", "new.c"}, "", 1, "quen list: Path \"new.c\" has no committed revision\n"}});
}

TEST_F(BrowsingTest, BranchTellsTrunkAndBranchesByTheUsualLayout) {
    const std::string noBranch =
        "quen branch: \"file://SANDBOX/repository/tags\" is not on a branch: it is neither below "
        "file://SANDBOX/repository/trunk nor below file://SANDBOX/repository/branches. Use --trunk "
        "and "
        "--branches to say where they are.\n";
    expectEach(sandbox_, {{{"branch"}, "trunk\n"},
                          {{"branch", "src/main.c"}, "trunk\n"},
                          {{"branch", "icon@2x.txt"}, "trunk\n"},
                          {{"branch", "new.c"}, "trunk\n"},
                          {{"branch", sandbox_.url("branches/feature/src")}, "feature\n"},
                          {{"branch", sandbox_.url("tags")}, "", 0, noBranch},
                          {{"branch", "--json"},
                           "[{\"QuenSourceControlOperationNameKey\":"
                           "\"QuenSourceControlTrunkBranchName\",\"name\":\"trunk\"}]\n"},
                          {{"branch", "--json", sandbox_.url("tags")}, "[]\n"}});
}

TEST_F(BrowsingTest, BranchFollowsWhatIsSaidOfTheLayout) {
    expectEach(sandbox_,
               {{{"branch", "--branches", "^/", "--trunk", "^/main"}, "trunk\n"},
                {{"branch", "--trunk", sandbox_.url("branches/feature"), "--branches",
                  sandbox_.url("branches"), sandbox_.url("branches/feature")},
                 "trunk\n"},
                {{"branch", "--trunk", "^/a b"},
                 "",
                 1,
                 "quen branch: \"^/a b\" is not a URL. Write it whole or as ^/NAME, with %20 for a "
                 "blank and likewise for what is not ASCII.\n"}});
    sandbox_.write(".quen", "trunk = ^/tags\nbranches = ^/branches/\n");
    expectEach(sandbox_, {{{"branch", "--trunk", "^/trunk"}, "trunk\n"}});
    EXPECT_THAT(sandbox_.quen({"branch"}).err, HasSubstr("is neither below"));
}

TEST_F(BrowsingTest, BranchesListsThemWithTheirLastChange) {
    const std::string here = "* trunk    r4  alice  AGE\n  feature  r5  bob    AGE\n";
    expectEach(sandbox_,
               {{{"branches"}, here},
                {{"branches", "src"}, here},
                {{"branches", sandbox_.url("branches/feature/src")},
                 "  trunk    r4  alice  AGE\n* feature  r5  bob    AGE\n"},
                {{"branches", sandbox_.url("tags")},
                 "  trunk    r4  alice  AGE\n  feature  r5  bob    AGE\n"},
                {{"branches", "--branches", "^/"},
                 "* trunk     r4  alice  AGE\n  branches  r5  bob    AGE\n"
                 "  tags      r1  alice  AGE\n"},
                {{"branches", "--branches", sandbox_.url("tags")},
                 "* trunk  r4  alice  AGE\n",
                 0,
                 "quen branches: There are no branches in file://SANDBOX/repository/tags.\n"},
                {{"branches", "--json"},
                 "[{\"QuenSourceControlOperationIsLeafKey\":false,"
                 "\"QuenSourceControlOperationNameKey\":\"feature\","
                 "\"name\":\"feature\",\"kind\":\"dir\"}]\n"}});
}

TEST_F(BrowsingTest, ASettingsFileAtFaultIsNamedWithItsLine) {
    sandbox_.write(".quen", "# where it is\ntrnk = ^/trunk\n");
    const std::string problem = ": SANDBOX/wc/.quen:2: \"trnk\" is not a setting; there are trunk, "
                                "branches and username.\n";
    expectEach(sandbox_, {{{"branch"}, "", 1, "quen branch" + problem},
                          {{"status"}, "", 1, "quen status" + problem}});
}

TEST_F(BrowsingTest, CatPrintsWhatTheRepositoryHolds) {
    using namespace std::string_literals;
    sandbox_.write("hello.c", "changed here\n");
    expectEach(sandbox_,
               {{{"cat", "hello.c"}, "one\nTWO\nthree\n"},
                {{"cat", "-r", "2", "hello.c"}, "one\ntwo\nthree\n"},
                {{"cat", "-r", "base", "hello.c"}, "one\nTWO\nthree\n"},
                {{"cat", "-r", "HEAD", "with blank.txt"}, "blank\n"},
                {{"cat", "icon@2x.txt"}, "x\ny\n"},
                {{"cat", "-r", "2", "--peg", "icon@2x.txt"}, "x\n"},
                {{"cat", "\xC3\xBCmlaut.txt"}, "u\n"},
                {{"cat", "--", "-dash.txt"}, "d\n"},
                {{"cat", "empty"}, ""},
                {{"cat", "blob"}, "\0\xFF"s},
                {{"cat", sandbox_.url("trunk/hello.c")}, "one\nTWO\nthree\n"},
                {{"cat", "-r", "2", "--peg", sandbox_.url("trunk/greet.c")}, "one\ntwo\nthree\n"},
                {{"cat", "--json", "hello.c"},
                 "[{\"QuenSourceControlOperationContentKey\":\"one\\nTWO\\nthree\\n\","
                 "\"content\":\"one\\nTWO\\nthree\\n\"}]\n"}});
}

TEST_F(BrowsingTest, CatRefusesWhatItCannotPrint) {
    expectEach(sandbox_,
               {{{"cat", "-r", "1", "hello.c"},
                 "",
                 1,
                 "quen cat: The revision 1 was not found for the file \"hello.c\".\n"
                 "quen cat: `quen log` of the file shows its revisions.\n"},
                {{"cat", sandbox_.url("trunk/greet.c")},
                 "",
                 1,
                 "quen cat: \"file://SANDBOX/repository/trunk/greet.c\" does not exist in the "
                 "repository.\n"
                 "quen cat: `quen list` of the directory above shows what is there.\n"},
                {{"cat", "src"},
                 "",
                 1,
                 "quen cat: \"src\" is not a file. `quen list` shows what a directory holds.\n"}});
    EXPECT_THAT(sandbox_.quen({"cat", "--json", "blob"}).err,
                HasSubstr(R"("message":"\"blob\" is not text, and JSON holds nothing else. )"
                          R"(Without --json it is printed as it is.",)"));
    EXPECT_EQ(sandbox_.quen({"cat", "-r", "1:2", "hello.c"}).status, 2);
}

TEST_F(BrowsingTest, CatDoesNotFollowALinkOfTheRepository) {
    std::filesystem::create_symlink("/etc/passwd", sandbox_.workingCopy() / "link");
    sandbox_.svn({"add", "-q", "link"});
    sandbox_.commit("A link that leads out");
    expectEach(sandbox_, {{{"cat", "link"}, "link /etc/passwd"}});
}

TEST_F(BrowsingTest, ExportWritesAFileToAnotherPlace) {
    sandbox_.write("hello.c", "changed here\n");
    std::filesystem::create_directory(sandbox_.root() / "out");
    expectEach(sandbox_,
               {{{"export", "hello.c", "../out/now.c"}, "Exported to ../out/now.c\n"},
                {{"export", "-r", "2", "hello.c", "../out"}, "Exported to ../out/hello.c\n"},
                {{"export", "icon@2x.txt", "../out"}, "Exported to ../out/icon@2x.txt\n"},
                {{"export", "blob", "../out"}, "Exported to ../out/blob\n"},
                {{"export", sandbox_.url("trunk/with%20blank.txt"), "../out/blank.txt"},
                 "Exported to ../out/blank.txt\n"},
                {{"export", "--json", "--", "-dash.txt", "../out"},
                 "[{\"QuenSourceControlOperationPathKey\":{\"MarlFilePath\":"
                 "\"SANDBOX/out/-dash.txt\"},\"path\":\"SANDBOX/out/-dash.txt\"}]\n"},
                {{"export", "hello.c", "../out/now.c"},
                 "",
                 1,
                 "quen export: \"../out/now.c\" already exists; use --force to overwrite it.\n"},
                {{"export", "--force", "-r", "BASE", "hello.c", "../out/now.c"},
                 "Exported to ../out/now.c\n"},
                {{"export", "hello.c", "../no/where"},
                 "",
                 1,
                 "quen export: \"../no/where\" cannot be written: No such file or directory.\n"}});
    EXPECT_EQ(sandbox_.read("../out/hello.c"), "one\ntwo\nthree\n");
    EXPECT_EQ(sandbox_.read("../out/now.c"), "one\nTWO\nthree\n");
    EXPECT_EQ(sandbox_.read("../out/icon@2x.txt"), "x\ny\n");
    EXPECT_EQ(sandbox_.read("../out/blob"), std::string("\0\xFF", 2));
    EXPECT_EQ(sandbox_.read("../out/blank.txt"), "blank\n");
}

TEST_F(BrowsingTest, OutsideAWorkingCopyItSaysSo) {
    const Ran ran = sandbox_.quen({"log"}, sandbox_.root());
    EXPECT_EQ(ran.err, "quen log: \".\" is not in a working copy.\n"
                       "quen log: Go into a working copy, or make one with: quen checkout URL\n");
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.status, 1);
}

TEST_F(BrowsingTest, TheUserOfTheSettingsFileReachesTheClient) {
    const std::string bin = (sandbox_.root() / "bin").string();
    sandbox_.write(bin + "/svn", "#!/bin/sh\n"
                                 "printf '%s ' \"$@\" > \"$HOME/arguments\"\n"
                                 "PATH=/usr/bin:/bin exec svn \"$@\"\n");
    std::filesystem::permissions(bin + "/svn", std::filesystem::perms::owner_all);
    const auto argumentsOf = [&](Sandbox::Words words) {
        words.insert(words.begin(), Sandbox::program());
        const Ran ran =
            sandbox_.run(words, sandbox_.workingCopy(), {"PATH=" + bin + ":/usr/bin:/bin"});
        EXPECT_EQ(ran.status, 0) << ran.err;
        return sandbox_.read(sandbox_.root() / "home/arguments");
    };
    EXPECT_EQ(argumentsOf({"list", "src"}), "list --xml src ");
    sandbox_.write(".quen", "username = carol\n");
    EXPECT_EQ(argumentsOf({"list", "src"}), "--username carol list --xml src ");
    const std::string place = (sandbox_.workingCopy() / "src").string();
    EXPECT_EQ(argumentsOf({"list", "-R", "src"}), "--username carol list --xml -R " + place + " ");
    EXPECT_EQ(argumentsOf({"list", "src", "--username", "dave"}),
              "--username dave list --xml src ");
}

} // namespace

} // namespace quen::test
