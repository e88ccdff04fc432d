#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/CommandLine/Completion.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

using Words = std::vector<std::string>;
using Kind = Completion::Kind;

struct CompletionCase {
    Words words;
    Kind kind;
    Words candidates = {};
};

TEST(Completion, FollowsTheCommandLine) {
    CommandLine line;
    addAllCommands(line);
    const CommandText program = line.text();
    for (const CompletionCase& each : {
             CompletionCase{{"sta"}, Kind::words, {"status"}},
             {{"-C", "/", "sta"}, Kind::words, {"status"}},
             {{"--vers"}, Kind::words, {"--version"}},
             {{"branch", ""}, Kind::words, {"create", "delete"}},
             {{"branch", "delete", ""}, Kind::branches},
             {{"branch", "create", ""}, Kind::words},
             {{"branch", "create", "--from", ""}, Kind::branches},
             {{"sw", ""}, Kind::branches},
             {{"switch", "trunk", ""}, Kind::files},
             {{"switch", "trunk", "wc", ""}, Kind::words},
             {{"log", "--stop"}, Kind::words, {"--stop-on-copy"}},
             {{"log", "-r", ""}, Kind::revisions},
             {{"log", "--revision=1"}, Kind::revisions},
             {{"log", "--color", "=", "a"}, Kind::words, {"auto", "always"}},
             {{"log", "--color=al"}, Kind::words, {"always"}},
             {{"log", "-l", ""}, Kind::words},
             {{"log", ""}, Kind::files},
             {{"commit", "-m", ""}, Kind::words},
             {{"commit", "-m", "-F", ""}, Kind::changedFiles},
             {{"commit", "-F", ""}, Kind::files},
             {{"commit", "a", "b", ""}, Kind::changedFiles},
             {{"commit", "--", "-"}, Kind::changedFiles},
             {{"add", ""}, Kind::unversionedFiles},
             {{"help", "sta"}, Kind::words, {"status"}},
             {{"help", "status", "a"}, Kind::words},
         }) {
        SCOPED_TRACE(testing::PrintToString(each.words));
        const Completion completion = completionOf(program, each.words);
        Words candidates;
        for (const Candidate& candidate : completion.candidates) {
            candidates.push_back(candidate.word);
        }
        EXPECT_EQ(completion.kind, each.kind);
        EXPECT_EQ(candidates, each.candidates);
    }
}

TEST(Completion, ThereIsAScriptForEachShell) {
    for (const std::string shell : {"bash", "zsh", "fish"}) {
        EXPECT_NE(completionScript(shell).find("quen complete words -- "), std::string::npos);
    }
    EXPECT_EQ(completionScript("csh"), "");
}

} // namespace

} // namespace quen::test
