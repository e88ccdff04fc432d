#include "Host/ClientMessage.h"
#include "Tests/Support/CaseName.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {

void PrintTo(const ClientNumber& number, std::ostream* out) {
    *out << (number.isWarning ? 'W' : 'E') << number.number;
}

namespace {

struct MessageCase {
    const char* name;
    std::string standardError;
    String text;
    std::vector<ClientNumber> numbers;

    friend void PrintTo(const MessageCase& c, std::ostream* out) { *out << c.standardError; }
};

class ClientMessages : public testing::TestWithParam<MessageCase> {};

TEST_P(ClientMessages, LoseTheirNumbersAndTheLineEndsAtTheirEnd) {
    const ClientMessage message = readClientMessage(GetParam().standardError);
    EXPECT_EQ(message.text, GetParam().text);
    EXPECT_EQ(message.numbers, GetParam().numbers);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ClientMessages,
    testing::Values(
        MessageCase{"nothing", "", "", {}}, MessageCase{"line ends alone", "\r\n\n", "", {}},
        MessageCase{"an error",
                    "svn: E210002: Network connection closed unexpectedly\n",
                    "svn: Network connection closed unexpectedly",
                    {{false, 210002}}},
        MessageCase{"a warning",
                    "svn: warning: W155007: 'x' is not a working copy\n",
                    "svn: warning: 'x' is not a working copy",
                    {{true, 155007}}},
        MessageCase{"a warning with an errors number",
                    "svn: warning: E155007: x\n",
                    "svn: warning: x",
                    {{false, 155007}}},
        MessageCase{"several in order",
                    "svn: warning: W155010: The node 'x' was not found.\n\nsvn: E200009: Could not "
                    "display info for all targets because some targets don't exist\n",
                    "svn: warning: The node 'x' was not found.\n\nsvn: Could not display info for "
                    "all targets because some targets don't exist",
                    {{true, 155010}, {false, 200009}}},
        MessageCase{"the same number twice",
                    "svn: E1: a\nsvn: E1: b",
                    "svn: a\nsvn: b",
                    {{false, 1}, {false, 1}}},
        MessageCase{"an old clients line", "svn: Can't open file\n", "svn: Can't open file", {}},
        MessageCase{
            "only the first number of a line", "svn: E1: E2: x", "svn: E2: x", {{false, 1}}},
        MessageCase{"an empty sentence", "svn: E1: ", "svn: ", {{false, 1}}},
        MessageCase{"blanks at the end stay", "svn: E1: x \n", "svn: x ", {{false, 1}}},
        MessageCase{"carriage returns",
                    "svn: E1: x\r\nsvn: E2: y\r\n",
                    "svn: x\r\nsvn: y",
                    {{false, 1}, {false, 2}}},
        MessageCase{"other programs lines stay",
                    "E210002: x\n svn: E1: y\nssh: E2: z\nsvn:E3: a\nxsvn: E4: b",
                    "E210002: x\n svn: E1: y\nssh: E2: z\nsvn:E3: a\nxsvn: E4: b",
                    {}},
        MessageCase{"a number further in stays", "svn: see E210002: x", "svn: see E210002: x", {}},
        MessageCase{"what only looks like a number stays",
                    "svn: E: a\nsvn: Error: b\nsvn: E12 c\nsvn: E12:d\nsvn: E12x: e\nsvn: F12: "
                    "f\nsvn: E-1: g\nsvn: E-0: g\nsvn: e12: h\nsvn: E12",
                    "svn: E: a\nsvn: Error: b\nsvn: E12 c\nsvn: E12:d\nsvn: E12x: e\nsvn: F12: "
                    "f\nsvn: E-1: g\nsvn: E-0: g\nsvn: e12: h\nsvn: E12",
                    {}},
        MessageCase{"a number that is too large stays",
                    "svn: E99999999999999999999: x",
                    "svn: E99999999999999999999: x",
                    {}}),
    CaseName());

TEST(ClientWarnings, AreToldFromOtherLines) {
    EXPECT_TRUE(holdsOnlyWarnings(""));
    EXPECT_TRUE(holdsOnlyWarnings(" \n\t\r\n"));
    EXPECT_TRUE(holdsOnlyWarnings("svn: warning: a\n\nsvn: warning: b"));
    EXPECT_FALSE(holdsOnlyWarnings("svn: warning: a\nb"));
    EXPECT_FALSE(holdsOnlyWarnings("svn: a"));
    EXPECT_FALSE(holdsOnlyWarnings(" svn: warning: a"));
    EXPECT_FALSE(holdsOnlyWarnings("warning: a"));
}

TEST(ClientNumbers, OfAnAbsentPropertyAreItsOwnOrThoseWithTheClosingOne) {
    const ClientNumber absent{true, 200017};
    const ClientNumber closing{false, 200000};
    EXPECT_TRUE(meansAbsentProperty({absent}));
    EXPECT_TRUE(meansAbsentProperty({absent, closing}));
    EXPECT_FALSE(meansAbsentProperty({}));
    EXPECT_FALSE(meansAbsentProperty({closing}));
    EXPECT_FALSE(meansAbsentProperty({closing, absent}));
    EXPECT_FALSE(meansAbsentProperty({absent, absent, closing}));
    EXPECT_FALSE(meansAbsentProperty({absent, {false, 155007}}));
    EXPECT_FALSE(meansAbsentProperty({{false, 200017}}));
    EXPECT_FALSE(meansAbsentProperty({absent, {true, 200000}}));
}

TEST(ClientPrefixes, AreTakenOffEachLine) {
    EXPECT_EQ(withoutClientPrefixes("svn: a\nsvn: warning: b\n\nc svn: d"),
              "a\nwarning: b\n\nc svn: d");
    EXPECT_EQ(withoutClientPrefixes("svn: svn: a"), "svn: a");
    EXPECT_EQ(withoutClientPrefixes(""), "");
}

} // namespace
} // namespace quen::test
