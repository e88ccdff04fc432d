#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNStatusVocabulary.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"

#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {
namespace {

/// One of the four methods, and what it says of a word that it does not know.
struct Vocabulary {
    const char* name;
    std::function<std::uint32_t(const String& word)> valueOf;
    const char* method;
    /// Before and after the word; null where nothing is logged.
    const char* logHead;
    const char* logTail;
    std::vector<std::pair<const char*, std::uint32_t>> words;

    friend void PrintTo(const Vocabulary& v, std::ostream* out) { *out << v.name; }

    std::vector<LogLine> logOf(const char* word) const {
        if (logHead == nullptr) {
            return {};
        }
        return {{1, std::string(logHead) + word + logTail}};
    }
};

std::uint32_t propertyStatus(const String& word) {
    return makeOperation<SVNOperation>({})->propertyStatusValueForWorkingCopyStringValue(word);
}
std::uint32_t workingCopyStatus(const String& word) {
    return makeOperation<SVNOperation>({})->statusValueForWorkingCopyStringValue(word, false);
}
std::uint32_t copiedStatus(const String& word) {
    return makeOperation<SVNOperation>({})->statusValueForWorkingCopyStringValue(word, true);
}
std::uint32_t repositoryStatus(const String& word) {
    return makeOperation<SVNOperation>({})->statusValueForRepositoryStringValue(word);
}
std::uint32_t logActionStatus(const String& word) {
    return makeOperation<SVNLogOperation>({})->statusValueForRepositoryShortStringValue(word);
}

std::vector<Vocabulary> vocabularies() {
    constexpr const char* workingCopy =
        "-[SVNOperation statusValueForWorkingCopyStringValue:isCopied:]";
    constexpr const char* workingCopyHead = "ERROR: Your working copy returned an SVN status of \"";
    constexpr const char* tail = "\" that we don't handle (yet)";
    return {
        {"properties",
         propertyStatus,
         "-[SVNOperation propertyStatusValueForWorkingCopyStringValue:]",
         "ERROR: property status \"",
         "\" not handled",
         {{"none", 0}, {"normal", 0}, {"modified", 8}, {"conflicted", 32}}},
        {"workingCopy",
         workingCopyStatus,
         workingCopy,
         workingCopyHead,
         tail,
         {{"modified", 4},
          {"unversioned", 256},
          {"missing", 512},
          {"incomplete", 512},
          {"added", 1},
          {"deleted", 2},
          {"conflicted", 16},
          {"ignored", 128},
          {"replaced", 8192},
          {"obstructed", 2048},
          {"external", 0},
          {"normal", 0},
          {"none", 0}}},
        {"copied",
         copiedStatus,
         workingCopy,
         workingCopyHead,
         tail,
         {{"modified", 4},
          {"unversioned", 256},
          {"missing", 512},
          {"incomplete", 512},
          {"added", 4096},
          {"deleted", 2},
          {"conflicted", 16},
          {"ignored", 128},
          {"replaced", 8192},
          {"obstructed", 2048},
          {"external", 0},
          {"normal", 0},
          {"none", 0}}},
        {"repository",
         repositoryStatus,
         "-[SVNOperation statusValueForRepositoryStringValue:]",
         "ERROR: Your repository returned an SVN status of \"",
         tail,
         {{"modified", 1024},
          {"added", 1},
          {"deleted", 2},
          {"replaced", 8192},
          {"external", 0},
          {"normal", 0},
          {"none", 0}}},
        {"logActions",
         logActionStatus,
         "-[SVNLogOperation statusValueForRepositoryShortStringValue:]",
         nullptr,
         nullptr,
         {{"M", 12}, {"A", 1}, {"D", 2}, {"R", 8192}}},
    };
}

class StatusVocabulary : public testing::TestWithParam<Vocabulary> {
protected:
    HostRecorder recorder_{3};
};

TEST_P(StatusVocabulary, KnowsItsWordsWithoutComment) {
    for (const auto& [word, value] : GetParam().words) {
        EXPECT_EQ(GetParam().valueOf(word), value) << word;
    }
    EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
    EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
}

TEST_P(StatusVocabulary, KnowsNoOtherWordsAndLogsThem) {
    for (const char* const word :
         {"", "Modified", "MODIFIED", "modified ", " none", "C", "m", "merged", "AM", "switched"}) {
        recorder_.clear();
        EXPECT_EQ(GetParam().valueOf(word), 0U) << word;
        EXPECT_EQ(recorder_.log(), GetParam().logOf(word));
        EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
    }
}

TEST_P(StatusVocabulary, LogsAtLevelOneAndNotBelow) {
    recorder_.setLogLevel(0);
    GetParam().valueOf("strange");
    EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
    recorder_.setLogLevel(1);
    GetParam().valueOf("strange");
    EXPECT_EQ(recorder_.log(), GetParam().logOf("strange"));
}

TEST_P(StatusVocabulary, TakesNilForAProgrammingErrorAndForAnUnknownWord) {
    EXPECT_EQ(GetParam().valueOf(nullptr), 0U);
    EXPECT_EQ(recorder_.assertionFacts(),
              std::vector{
                  AssertionFacts::notNil(GetParam().method, "Classes/SVNOperations", "(string)")});
    EXPECT_EQ(recorder_.log(), GetParam().logOf("(null)"));
}

INSTANTIATE_TEST_SUITE_P(All, StatusVocabulary, testing::ValuesIn(vocabularies()), CaseName());

TEST(StatusWords, DifferBetweenTheTables) {
    // Each of these has a meaning in one table and another, or none, elsewhere.
    EXPECT_EQ(workingCopyStatusValue("modified", false), 4U);
    EXPECT_EQ(propertyStatusValue("modified"), 8U);
    EXPECT_EQ(repositoryStatusValue("modified"), 1024U);
    EXPECT_EQ(logActionStatusValue("M"), 12U);
    EXPECT_EQ(repositoryStatusValue("conflicted"), std::nullopt);
    EXPECT_EQ(propertyStatusValue("added"), std::nullopt);
    EXPECT_EQ(workingCopyStatusValue("M", false), std::nullopt);
}

TEST(StatusWords, CopiedCountsForAddedAlone) {
    EXPECT_EQ(workingCopyStatusValue("added", true), 4096U);
    EXPECT_EQ(workingCopyStatusValue("replaced", true), 8192U);
    EXPECT_EQ(workingCopyStatusValue("strange", true), std::nullopt);
}

} // namespace
} // namespace quen::test
