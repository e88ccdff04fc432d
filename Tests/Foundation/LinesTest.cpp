#include "Foundation/Lines.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quen::test {
namespace {

using Views = std::vector<std::string_view>;

struct TextCase {
    std::string_view text;
    Views lines;
};

const TextCase texts[] = {
    {"", {}},
    {"a", {"a"}},
    {"a\n", {"a"}},
    {"\n", {""}},
    {"\n\n", {"", ""}},
    {"a\n\nb", {"a", "", "b"}},
    {"a\r\nb\r\n", {"a\r", "b\r"}},
    {std::string_view("a\0b\nc", 5), {std::string_view("a\0b", 3), "c"}},
};

TEST(Lines, EndAtALineFeedOrAtTheEndOfTheText) {
    for (const TextCase& each : texts) {
        EXPECT_EQ(linesOf(each.text), each.lines) << each.text;
    }
}

TEST(Lines, AreTakenOneByOne) {
    for (const TextCase& each : texts) {
        std::string_view rest = each.text;
        Views taken;
        while (!rest.empty()) {
            taken.push_back(takeLine(rest));
        }
        EXPECT_EQ(taken, each.lines) << each.text;
        EXPECT_EQ(takeLine(rest), "");
    }
}

TEST(Lines, WithTheirLineFeedsMakeTheTextAgain) {
    for (const TextCase& each : texts) {
        std::string_view rest = each.text;
        std::string whole;
        for (std::size_t i = 0; i < each.lines.size(); ++i) {
            whole += takeLineWithFeed(rest);
        }
        EXPECT_EQ(whole, each.text);
        EXPECT_EQ(rest, "");
    }
}

TEST(Lines, AreTrimmedOfBlanksAtTheirEnds) {
    const struct {
        std::string_view line;
        std::string_view expected;
    } cases[] = {{"", ""}, {" \t\r", ""}, {"a", "a"}, {" a b\t\r", "a b"}, {"\n a", "\n a"}};
    for (const auto& each : cases) {
        EXPECT_EQ(trimmed(each.line), each.expected) << each.line;
    }
}

/// The lines that an assembler gives for pieces of that size, and what it is left with.
std::vector<std::string> assembled(LineAssembler assembler, std::string_view text,
                                   std::size_t size) {
    std::vector<std::string> lines;
    for (; !text.empty(); text.remove_prefix(std::min(size, text.size()))) {
        assembler.take(text.substr(0, size),
                       [&](std::string_view line) { lines.emplace_back(line); });
    }
    lines.push_back("rest " + assembler.unended());
    return lines;
}

TEST(LineAssembler, GivesTheSameLinesHoweverTheTextIsCut) {
    for (std::size_t size = 1; size < 12; ++size) {
        EXPECT_THAT(assembled(LineAssembler(), "one\n\ntwo\nthree", size),
                    testing::ElementsAre("one", "", "two", "rest three"))
            << size;
    }
}

TEST(LineAssembler, KeepsTheBeginningOfALongLine) {
    for (std::size_t size = 1; size < 16; ++size) {
        EXPECT_THAT(assembled(LineAssembler(3), "one\nthree\nfour", size),
                    testing::ElementsAre("one", "thr", "rest fou"))
            << size;
    }
}

} // namespace
} // namespace quen::test
