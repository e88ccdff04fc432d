#include "Tests/Support/CaseName.h"
#include "Tools/Commands/CommandLine/Suggestion.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

TEST(Suggestion, FindsTheNameThatWasMeant) {
    const std::vector<std::string> names{"status", "stats-of", "log", "list", "blame", "commit"};
    struct Case {
        std::string word;
        std::string meant;
    };
    for (const auto& [word, meant] :
         {Case{"statsu", "status"}, Case{"stauts", "status"}, Case{"comit", "commit"},
          Case{"lgo", ""}, Case{"lo", "log"}, Case{"lis", "list"}, Case{"blam", "blame"},
          Case{"frobnicate", ""}, Case{"", ""}, Case{"x", ""}}) {
        EXPECT_EQ(nearestName(word, names), meant) << word;
    }
}

} // namespace

} // namespace quen::test
