#include "Tools/Terminal/StatusWords.h"

#include "QuenFoundation/QuenSourceControlStatus.h"

#include <array>

namespace quen::tools {

namespace {

struct Flag {
    std::uint32_t flag;
    const char* word;
    Style style;
};

constexpr std::array flags{
    Flag{QuenSourceControlStatusConflicted, "conflicted", Style::bad},
    Flag{QuenSourceControlStatusPropertiesConflicted, "properties conflicted", Style::bad},
    Flag{QuenSourceControlStatusObstructed, "obstructed", Style::bad},
    Flag{QuenSourceControlStatusMissing, "missing", Style::bad},
    Flag{QuenSourceControlStatusDeleted, "deleted", Style::bad},
    Flag{QuenSourceControlStatusAdded, "added", Style::good},
    Flag{QuenSourceControlStatusAddedWithHistory, "copied", Style::good},
    Flag{QuenSourceControlStatusReplaced, "replaced", Style::warning},
    Flag{QuenSourceControlStatusModified, "modified", Style::changed},
    Flag{QuenSourceControlStatusPropertiesModified, "properties modified", Style::changed},
    Flag{QuenSourceControlStatusModifiedInRepository, "modified", Style::warning},
    Flag{QuenSourceControlStatusUnversioned, "unversioned", Style::faint},
    Flag{QuenSourceControlStatusIgnored, "ignored", Style::faint},
};

} // namespace

std::vector<StatusWord> wordsForStatus(std::uint32_t status) {
    std::vector<StatusWord> words;
    for (const Flag& flag : flags) {
        if ((status & flag.flag) != 0) {
            words.push_back({flag.word, flag.style});
            status &= ~flag.flag;
        }
    }
    if (status != 0) {
        words.push_back({"status " + std::to_string(status), Style::warning});
    }
    return words;
}

} // namespace quen::tools
