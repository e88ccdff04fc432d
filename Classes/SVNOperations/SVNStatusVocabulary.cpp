#include "Classes/SVNOperations/SVNStatusVocabulary.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNLogOperation.h"
#include "QuenFoundation/QuenSourceControlStatus.h"

#include <array>

namespace quen {

namespace {

struct Word {
    std::string_view text;
    std::uint32_t value;
};

constexpr std::array propertyWords{
    Word{"none", QuenSourceControlStatusNone},
    Word{"normal", QuenSourceControlStatusNone},
    Word{"modified", QuenSourceControlStatusPropertiesModified},
    Word{"conflicted", QuenSourceControlStatusPropertiesConflicted},
};

constexpr std::array workingCopyWords{
    Word{"modified", QuenSourceControlStatusModified},
    Word{"unversioned", QuenSourceControlStatusUnversioned},
    Word{"missing", QuenSourceControlStatusMissing},
    Word{"incomplete", QuenSourceControlStatusMissing},
    Word{"added", QuenSourceControlStatusAdded},
    Word{"deleted", QuenSourceControlStatusDeleted},
    Word{"conflicted", QuenSourceControlStatusConflicted},
    Word{"ignored", QuenSourceControlStatusIgnored},
    Word{"replaced", QuenSourceControlStatusReplaced},
    Word{"obstructed", QuenSourceControlStatusObstructed},
    Word{"external", QuenSourceControlStatusNone},
    Word{"normal", QuenSourceControlStatusNone},
    Word{"none", QuenSourceControlStatusNone},
};

constexpr std::array repositoryWords{
    Word{"modified", QuenSourceControlStatusModifiedInRepository},
    Word{"added", QuenSourceControlStatusAdded},
    Word{"deleted", QuenSourceControlStatusDeleted},
    Word{"replaced", QuenSourceControlStatusReplaced},
    Word{"external", QuenSourceControlStatusNone},
    Word{"normal", QuenSourceControlStatusNone},
    Word{"none", QuenSourceControlStatusNone},
};

constexpr std::array logActions{
    Word{"M", QuenSourceControlStatusModified | QuenSourceControlStatusPropertiesModified},
    Word{"A", QuenSourceControlStatusAdded},
    Word{"D", QuenSourceControlStatusDeleted},
    Word{"R", QuenSourceControlStatusReplaced},
};

template <std::size_t count> std::optional<std::uint32_t> find(const std::array<Word, count>& words,
                                                               std::string_view text) noexcept {
    for (const Word& word : words) {
        if (word.text == text) {
            return word.value;
        }
    }
    return std::nullopt;
}

void checkWord(const SVNOperation* operation, std::string_view method, const String& string,
               SVNAssertions::Line line = __builtin_LINE()) {
    SVNAssertions(operation, method, SVNAssertions::operationsFile)
        .checkNotNil(string.isNil(), "(string)", line);
}

/// The value, or 0 and a line in the log for a word that the table does not hold.
std::uint32_t valueOrLogLine(std::optional<std::uint32_t> value, std::string_view format,
                             const String& string) {
    if (!value) {
        logAtLevel(1, format, {string});
    }
    return value.value_or(QuenSourceControlStatusNone);
}

} // namespace

std::optional<std::uint32_t> propertyStatusValue(std::string_view word) noexcept {
    return find(propertyWords, word);
}

std::optional<std::uint32_t> workingCopyStatusValue(std::string_view word, bool isCopied) noexcept {
    const auto value = find(workingCopyWords, word);
    const bool isCopy = isCopied && value == QuenSourceControlStatusAdded;
    return isCopy ? QuenSourceControlStatusAddedWithHistory : value;
}

std::optional<std::uint32_t> repositoryStatusValue(std::string_view word) noexcept {
    return find(repositoryWords, word);
}

std::optional<std::uint32_t> logActionStatusValue(std::string_view letter) noexcept {
    return find(logActions, letter);
}

// A nil word is reported first and then looked up like any other: no table holds the empty word.

std::uint32_t
SVNOperation::propertyStatusValueForWorkingCopyStringValue(const String& string) const {
    checkWord(this, "-[SVNOperation propertyStatusValueForWorkingCopyStringValue:]", string);
    return valueOrLogLine(propertyStatusValue(string.view()),
                          "ERROR: property status \"%@\" not handled", string);
}

std::uint32_t SVNOperation::statusValueForWorkingCopyStringValue(const String& string,
                                                                 bool isCopied) const {
    checkWord(this, "-[SVNOperation statusValueForWorkingCopyStringValue:isCopied:]", string);
    return valueOrLogLine(workingCopyStatusValue(string.view(), isCopied),
                          "ERROR: Your working copy returned an SVN status of \"%@\" that we "
                          "don't handle (yet)",
                          string);
}

std::uint32_t SVNOperation::statusValueForRepositoryStringValue(const String& string) const {
    checkWord(this, "-[SVNOperation statusValueForRepositoryStringValue:]", string);
    return valueOrLogLine(repositoryStatusValue(string.view()),
                          "ERROR: Your repository returned an SVN status of \"%@\" that we don't "
                          "handle (yet)",
                          string);
}

std::uint32_t
SVNLogOperation::statusValueForRepositoryShortStringValue(const String& string) const {
    checkWord(this, "-[SVNLogOperation statusValueForRepositoryShortStringValue:]", string);
    return logActionStatusValue(string.view()).value_or(QuenSourceControlStatusNone);
}

} // namespace quen
