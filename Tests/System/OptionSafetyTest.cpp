#include "Tests/System/Sandbox.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <set>
#include <sstream>

namespace quen::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Runs = std::vector<Sandbox::Words>;

/// To the client an option that makes a file's content a property, or that sets anything at all.
constexpr const char* fileOption = "-Fa.c";
constexpr const char* settingOption = "--config-option=config:helpers:diff-cmd=false";

/// What the lists of the plug-in and of the host's plans hold, those with a value first.
const std::set<std::string> optionsWithValue = {"--accept", "--depth", "--limit", "--username",
                                                "-c",       "-m",      "-r"};
const std::set<std::string> plainOptions = {"--force",
                                            "--ignore-externals",
                                            "--internal-diff",
                                            "--no-ignore",
                                            "--parents",
                                            "--stop-on-copy",
                                            "--summarize",
                                            "--xml",
                                            "-g",
                                            "-q",
                                            "-R",
                                            "-u",
                                            "-v"};

/// The arguments that the client would read as options, but for the plug-in's own.
Sandbox::Words strayOptions(const Sandbox::Words& arguments) {
    Sandbox::Words stray;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (optionsWithValue.contains(arguments[i])) {
            ++i;
        } else if (arguments[i].starts_with('-') && !plainOptions.contains(arguments[i])) {
            stray.push_back(arguments[i]);
        }
    }
    return stray;
}

/// quen with a client that writes down its arguments before it does its work.
class OptionSafety : public ::testing::Test {
protected:
    OptionSafety() {
        sandbox_.write(sandbox_.root() / "bin/svn", "#!/bin/sh\nprintf '%s\\0' : \"$@\" >>'" +
                                                        record().string() +
                                                        "'\nexec /usr/bin/svn \"$@\"\n");
        std::filesystem::permissions(sandbox_.root() / "bin/svn",
                                     std::filesystem::perms::owner_all);
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        sandbox_.commit("A");
    }

    std::filesystem::path record() const { return sandbox_.root() / "record"; }

    Ran quen(Sandbox::Words words) const {
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.run(words, sandbox_.workingCopy(),
                            {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"});
    }

    /// The argument lists of the clients that a command has started.
    Runs runsOf(const Sandbox::Words& words, Ran* ran = nullptr) const {
        sandbox_.write(record(), "");
        Ran ended = quen(words);
        if (ran != nullptr) {
            *ran = ended;
        }
        std::istringstream text(sandbox_.read(record()));
        Runs runs;
        for (std::string word; std::getline(text, word, '\0');) {
            if (word == ":") {
                runs.emplace_back();
            } else {
                runs.back().push_back(word);
            }
        }
        return runs;
    }

    std::string url(const std::string& path) const { return sandbox_.url(path); }

    Sandbox sandbox_;
};

std::string lineOf(const Sandbox::Words& words) {
    std::string line = "quen";
    for (const std::string& word : words) {
        line += " " + word;
    }
    return line;
}

struct Form {
    Sandbox::Words words;
    /// Some are refused before there is a client.
    bool reachesTheClient = true;
};

/// Every command with a name that looks like an option wherever it takes a path, URL or branch.
std::vector<Form> formsWith(const std::string& name, const Sandbox& sandbox) {
    const std::string trunk = sandbox.url("trunk");
    return {{{"status", "--", name}},
            {{"diff", "--", name}},
            {{"diff", "--summarize", "--", name, trunk}},
            {{"log", "--", name}},
            {{"blame", "--", name}},
            {{"show", "--", "1", name}},
            {{"report", "--", name}},
            {{"report", "--force", "-o", "page.html", "--", name}},
            {{"incoming", "--", name}},
            {{"info", "--", name}},
            {{"list", "--", name}},
            {{"cat", "--", name}},
            {{"export", "--", name, "target"}},
            {{"export", "--", "a.c", name}},
            {{"branch", "--", name}},
            {{"branch", "create", "-m", "M", "--", name}},
            {{"branch", "create", "-m", "M", "--", "b", name}},
            {{"branch", "delete", "--yes", "-m", "M", "--", name}},
            {{"branches", "--", name}},
            {{"tags", "--", name}},
            {{"add", "--", name}},
            {{"revert", "--yes", "--", name}},
            {{"undo", "--", name}, false},
            {{"resolve", "--", name}},
            {{"resolve", "--accept", "theirs", "--", name}},
            {{"cleanup", "--", name}},
            {{"update", "--preview", "--", name}},
            {{"merge", "--preview", "--", "trunk", name}},
            {{"commit", "-m", "M", "--", name}},
            {{"copy", "--", name, "b.c"}},
            {{"copy", "--", "a.c", name}},
            {{"copy", "--", trunk + "/a.c", name}},
            {{"move", "--", name, "b.c"}},
            {{"move", "--", "a.c", name}},
            {{"mkdir", "--", name + "-made"}},
            {{"mkdir", "-p", "--", name + "-made/below"}},
            {{"tag", "-m", "M", "--", name}},
            {{"merge", "--yes", "--", "trunk", name}},
            {{"merge", "--yes", "--", name}},
            {{"checkout", "--yes", "--", trunk, name + "-checkout"}},
            {{"checkout", "--", name, "place"}},
            {{"import", "-m", "M", "--", name, trunk + "/in"}},
            {{"import", "-m", "M", "--", "a.c", name}},
            {{"switch", "--yes", "--", name}},
            {{"switch", "--yes", "--", "trunk", name}},
            {{"update", "--", name}},
            {{"remove", "--yes", "--", name}},
            {{"ignore", "--", name}},
            {{"ignore", "--", name + "/x"}},
            {{"unignore", "--", name}},
            {{"unignore", "--", name + "/x"}}};
}

TEST_F(OptionSafety, NoNameBecomesAnOption) {
    for (const std::string name : {fileOption, settingOption}) {
        for (const Form& form : formsWith(name, sandbox_)) {
            SCOPED_TRACE(lineOf(form.words));
            const Runs runs = runsOf(form.words);
            EXPECT_EQ(!runs.empty(), form.reachesTheClient);
            for (const Sandbox::Words& arguments : runs) {
                EXPECT_THAT(strayOptions(arguments), IsEmpty());
            }
        }
    }
}

/// A command that is not in the table above would be a hole in it.
TEST_F(OptionSafety, EveryCommandIsTried) {
    // What these take comes by other ways than paths and names on the command line.
    std::set<std::string> tried = {"complete", "help", "tour", "request", "serve"};
    for (const Form& form : formsWith("", sandbox_)) {
        tried.insert(form.words.front());
    }
    std::istringstream help(quen({"complete", "words", "--", ""}).out);
    std::set<std::string> commands;
    for (std::string line; std::getline(help, line);) {
        commands.insert(line.substr(0, line.find('\t')));
    }
    EXPECT_GT(commands.size(), 20U);
    EXPECT_EQ(tried, commands);
}

TEST_F(OptionSafety, WithoutTheTwoDashesItIsQuensOwnOption) {
    for (const Form& form : formsWith(settingOption, sandbox_)) {
        Sandbox::Words words = form.words;
        words.erase(std::find(words.begin(), words.end(), "--"));
        SCOPED_TRACE(lineOf(words));
        Ran ran;
        EXPECT_THAT(runsOf(words, &ran), IsEmpty());
        EXPECT_NE(ran.status, 0);
        EXPECT_NE(ran.err, "");
    }
}

/// A message, a user's name and a branch's are values whatever they look like.
TEST_F(OptionSafety, NoValueBecomesAnOption) {
    sandbox_.write("a.c", "two\n");
    const std::string value = settingOption;
    for (const Sandbox::Words& words : {Sandbox::Words{"commit", "--message=" + value},
                                        {"info", "--username=" + value, "a.c"},
                                        {"mkdir", "-m" + value, url("trunk/made")},
                                        {"branch", "create", "b", "-m", "M", "--from=" + value},
                                        {"branch", "create", "-m", "M", "--", value}}) {
        SCOPED_TRACE(lineOf(words));
        const Runs runs = runsOf(words);
        EXPECT_THAT(runs, ::testing::Not(IsEmpty()));
        for (const Sandbox::Words& arguments : runs) {
            EXPECT_THAT(strayOptions(arguments), IsEmpty());
        }
    }
    EXPECT_THAT(sandbox_.svn({"log", "--xml", url("trunk")}), HasSubstr("<msg>" + value));
    EXPECT_EQ(sandbox_.svn({"list", url("branches")}), value + "/\n");
}

TEST_F(OptionSafety, ARevisionOrPlaceThatIsNoneReachesNoClient) {
    const std::string value = settingOption;
    for (const Sandbox::Words& words : {Sandbox::Words{"log", "--revision=" + value},
                                        {"log", "--revision=1:" + value},
                                        {"merge", "--revision=" + value + ":2", "trunk"},
                                        {"diff", "--change=" + value},
                                        {"update", "-r" + value},
                                        {"checkout", "-r" + value, url("trunk"), "x"},
                                        {"log", "--limit=" + value},
                                        {"branches", "--branches=" + value, "--trunk=" + value}}) {
        Ran ran;
        const Runs runs = runsOf(words, &ran);
        SCOPED_TRACE(lineOf(words) + ": " + ran.err);
        EXPECT_NE(ran.status, 0);
        for (const Sandbox::Words& arguments : runs) {
            EXPECT_EQ(std::count(arguments.begin(), arguments.end(), value), 0);
        }
    }
}

/// What a working copy's own settings say may be anybody's.
TEST_F(OptionSafety, NoSettingBecomesAnOption) {
    sandbox_.write(".quen", std::string("username = ") + settingOption + "\n");
    EXPECT_THAT(runsOf({"info", "a.c"}),
                ElementsAre(ElementsAre("--username", settingOption, "info", "--xml", "a.c")));

    sandbox_.write(".quen", std::string("branches = ") + settingOption + "\n");
    for (const Sandbox::Words& arguments : runsOf({"branches"})) {
        EXPECT_THAT(strayOptions(arguments), IsEmpty());
    }
}

/// The list of a directory came with the working copy. It is handed to the client as one argument.
TEST_F(OptionSafety, NoListOfIgnoredNamesBecomesAnOption) {
    sandbox_.write("list", std::string("build\n") + fileOption + "\n");
    sandbox_.svn({"propset", "-q", "svn:ignore", "-F", "list", "."});

    Ran ran;
    const Runs runs = runsOf({"unignore", "build"}, &ran);

    EXPECT_EQ(runs.size(), 2U); // the query, and the one that looks whether it was done
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err,
              "quen unignore: \"build\": The client \"" + (sandbox_.root() / "bin/svn").string() +
                  "\" could not be started: the list of ignored names of \".\" would begin with -, "
                  "which the client takes for an option; another name is put in front with svn "
                  "propedit svn:ignore.\n");
    EXPECT_EQ(sandbox_.svn({"propget", "svn:ignore"}),
              std::string("build\n") + fileOption + "\n\n");

    EXPECT_EQ(quen({"ignore", "*.o"}).status, 0);
    EXPECT_EQ(sandbox_.svn({"propget", "svn:ignore"}),
              std::string("*.o\nbuild\n") + fileOption + "\n\n");
}

} // namespace

} // namespace quen::test
