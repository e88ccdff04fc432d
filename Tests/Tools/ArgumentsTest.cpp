#include "Tests/Support/CaseName.h"
#include "Tools/Commands/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

using namespace tools;

namespace {

using Words = std::vector<std::string>;

struct ArgumentsCase {
    std::string name;
    Words words;
    Words paths;
    std::string message;
};

void PrintTo(const ArgumentsCase& arguments, std::ostream* out) {
    *out << testing::PrintToString(arguments.words);
}

class Arguments : public testing::TestWithParam<ArgumentsCase> {};

/// What a sub-command that takes several paths, a flag and a message is given in the end.
TEST_P(Arguments, ReachTheSubcommandWhole) {
    CLI::App app;
    app.require_subcommand(1);
    CLI::App* const command = app.add_subcommand("add");
    Words paths;
    std::string message;
    bool flag = false;
    command->add_option("PATH", paths)->transform(wordOfArgument);
    command->add_option("-m,--message", message);
    command->add_flag("-q", flag);

    Words words = parserArguments(app, GetParam().words).words;
    std::reverse(words.begin(), words.end());
    app.parse(words);

    EXPECT_EQ(paths, GetParam().paths);
    EXPECT_EQ(message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Arguments,
    testing::Values(
        ArgumentsCase{"plain", {"add", "a", "b"}, {"a", "b"}, ""},
        ArgumentsCase{"a list", {"add", "[a,b]", "[c]", "[]"}, {"[a,b]", "[c]", "[]"}, ""},
        ArgumentsCase{"brackets within", {"add", "x[a,b]", "[a]/c"}, {"x[a,b]", "[a]/c"}, ""},
        ArgumentsCase{"a message", {"add", "a", "-m", "[WIP]"}, {"a"}, "[WIP]"},
        ArgumentsCase{"a message by its long name",
                      {"add", "a", "--message", "[WIP]", "[b]"},
                      {"a", "[b]"},
                      "[WIP]"},
        ArgumentsCase{"behind a flag", {"add", "-q", "[a]"}, {"[a]"}, ""},
        ArgumentsCase{"a list in a directory", {"add", "d/[a,b]", "./x"}, {"d/[a,b]", "./x"}, ""},
        ArgumentsCase{"braces", {"add", "{}", "%%"}, {"{}", "%%"}, ""},
        ArgumentsCase{"braces alone", {"add", "{}"}, {"{}"}, ""},
        ArgumentsCase{"behind two dashes", {"add", "--", "[a]", "-m"}, {"[a]", "./-m"}, ""},
        ArgumentsCase{"two dashes as a value", {"add", "-m", "--", "-q", "a"}, {"a"}, "--"},
        ArgumentsCase{"a message like an option", {"add", "-m", "-q", "a"}, {"a"}, "-q"},
        ArgumentsCase{"a message like a number", {"add", "--message", "-1", "a"}, {"a"}, "-1"},
        ArgumentsCase{"two dashes twice", {"add", "--", "--", "a"}, {"./--", "a"}, ""},
        ArgumentsCase{"a name of a sub-command", {"add", "add"}, {"add"}, ""}),
    CaseName());

TEST(ParserArguments, ANumberIsALimitOrUnknown) {
    CLI::App app;
    std::int64_t limit = 0;
    app.add_subcommand("log")->add_option("-l,--limit", limit);
    app.add_subcommand("cat");

    EXPECT_EQ(parserArguments(app, {"log", "-12"}).words, (Words{"log", "--limit=12"}));
    EXPECT_EQ(parserArguments(app, {"log", "-12"}).unknownOption, "");
    EXPECT_EQ(parserArguments(app, {"log", "--", "-12"}).words, (Words{"log", "./-12"}));
    EXPECT_EQ(parserArguments(app, {"cat", "-12"}).unknownOption, "-12");
    EXPECT_EQ(parserArguments(app, {"cat", "--", "-12"}).unknownOption, "");
}

TEST(ParserArguments, LeaveAnUnknownCommandAlone) {
    const CLI::App app;
    EXPECT_EQ(parserArguments(app, {"what", "[a]"}).words, (Words{"what", "[a]"}));
    EXPECT_EQ(parserArguments(app, {}).words, Words());
}

} // namespace

} // namespace quen::test
