#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tests/Support/CaseName.h"
#include "Tools/Terminal/StatusWords.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

struct Case {
    const char* name;
    std::uint32_t status;
    std::vector<std::string> words;
};

class StatusWordsTest : public testing::TestWithParam<Case> {};

TEST_P(StatusWordsTest, OneWordAFlagTheGravestFirst) {
    std::vector<std::string> words;
    for (const StatusWord& word : wordsForStatus(GetParam().status)) {
        words.push_back(word.text);
    }
    EXPECT_EQ(words, GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, StatusWordsTest,
    testing::Values(Case{"none", QuenSourceControlStatusNone, {}},
                    Case{"one", QuenSourceControlStatusModified, {"modified"}},
                    Case{"two",
                         QuenSourceControlStatusModified | QuenSourceControlStatusConflicted,
                         {"conflicted", "modified"}},
                    Case{"copied", QuenSourceControlStatusAddedWithHistory, {"copied"}},
                    Case{"an unknown one", 1U << 20, {"status 1048576"}},
                    Case{"a known and unknown ones",
                         QuenSourceControlStatusAdded | 1U << 20 | 1U << 21,
                         {"added", "status 3145728"}}),
    CaseName());

TEST(StatusWordsTest, EveryFlagHasAWordOfItsOwn) {
    for (std::uint32_t flag = 1; flag <= QuenSourceControlStatusReplaced; flag <<= 1) {
        const bool isUnused = flag == 64;
        const auto words = wordsForStatus(flag);
        ASSERT_EQ(words.size(), 1U) << flag;
        EXPECT_EQ(words.front().text.starts_with("status "), isUnused) << flag;
    }
}

} // namespace

} // namespace quen::test
