#include "Host/Keeping/ConflictOutcome.h"

#include "Host/Keeping/ItemInfo.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace quen {

namespace {

using Kind = ConflictOutcome::Kind;

/// By the path of the facts.
using KeptByPath = std::map<std::string, const KeptTheirs*>;

ConflictOutcome outcomeOf(const ConflictFacts& conflict, Kind kind, ConflictState state,
                          const KeptTheirs* kept) {
    ConflictOutcome outcome;
    outcome.path = conflict.path;
    outcome.kind = kind;
    outcome.state = state;
    if (kind == Kind::property) {
        outcome.properties = conflict.settledProperties;
    }
    if (kept != nullptr && state == ConflictState::settled) {
        const bool hasFile = kind == Kind::text || kind == Kind::property;
        outcome.theirs = kind == Kind::text       ? kept->theirs
                         : kind == Kind::property ? kept->theirsProperties
                                                  : String();
        outcome.revision = kept->revision;
        outcome.error = hasFile && outcome.theirs.isNil() ? kept->error : Error();
    }
    return outcome;
}

void appendOutcomes(std::vector<ConflictOutcome>& outcomes, const ConflictFacts& conflict,
                    const KeptByPath& kept) {
    const auto found = kept.find(conflict.path.str());
    const KeptTheirs* const theirs = found == kept.end() ? nullptr : found->second;
    for (const auto& [kind, state] :
         {std::pair(Kind::text, conflict.text), std::pair(Kind::property, conflict.properties),
          std::pair(Kind::tree, conflict.tree),
          std::pair(Kind::unspecified, conflict.unspecified)}) {
        if (state != ConflictState::none) {
            outcomes.push_back(outcomeOf(conflict, kind, state, theirs));
        }
    }
}

std::string_view typeOf(Kind kind) noexcept {
    return kind == Kind::text ? "text" : kind == Kind::property ? "property" : "tree";
}

void explain(ConflictOutcome& outcome, const InfoEntry& entry) {
    for (const InfoConflict& conflict : entry.conflicts) {
        if (conflict.type.view() != typeOf(outcome.kind)) {
            continue;
        }
        outcome.revision = conflict.incomingRevision;
        outcome.mine = conflict.mineFile;
        outcome.theirs =
            outcome.kind == Kind::property ? conflict.propertyFile : conflict.incomingFile;
        outcome.description = outcome.kind == Kind::tree ? descriptionOf(conflict) : String();
        return;
    }
}

/// All numbers that the client gave for a failure; those of the causes where an error has none.
void appendNumbers(const Error& error, std::vector<std::int64_t>& numbers) {
    if (const Array* codes = error.userInfo()[QuenSourceControlTaskErrorCodesKey].array()) {
        for (const Value& code : *codes) {
            numbers.push_back(code.integer() == nullptr ? 0 : *code.integer());
        }
    }
    const Value& causes = error.userInfo()[QuenSourceControlUnderlyingErrorsKey];
    if (causes.error() != nullptr) {
        appendNumbers(*causes.error(), numbers);
    }
    if (causes.array() != nullptr) {
        for (const Value& cause : *causes.array()) {
            if (cause.error() != nullptr) {
                appendNumbers(*cause.error(), numbers);
            }
        }
    }
}

} // namespace

std::vector<ConflictOutcome> conflictOutcomes(const ChangeFacts& facts,
                                              const std::vector<KeptTheirs>& kept,
                                              const String& directory) {
    KeptByPath keptByPath;
    for (const KeptTheirs& each : kept) {
        keptByPath[each.conflict.path.str()] = &each;
    }
    std::vector<ConflictOutcome> outcomes;
    for (const ConflictFacts& conflict : facts.conflicts) {
        appendOutcomes(outcomes, conflict, keptByPath);
    }
    for (ConflictOutcome& outcome : outcomes) {
        outcome.path = absoluteClientPath(outcome.path, directory);
    }
    return outcomes;
}

void explainLeft(std::vector<ConflictOutcome>& outcomes, const QueryRunner& run) {
    std::vector<std::string> paths;
    for (const ConflictOutcome& outcome : outcomes) {
        if (outcome.state == ConflictState::left) {
            paths.push_back(outcome.path.str());
        }
    }
    const auto entries = askItemInfo(paths, run);
    for (ConflictOutcome& outcome : outcomes) {
        const auto entry = entries.find(outcome.path.str());
        if (outcome.state == ConflictState::left && entry != entries.end()) {
            explain(outcome, entry->second);
        }
    }
}

bool saysOnlyConflictsLeft(const Error& error) {
    // The client's numbers (1.14): resolving failed, and the warning that says for which item.
    constexpr std::int64_t resolvingFailed = 155027;
    constexpr std::int64_t choiceDoesNotApply = 195024;
    if (!error) {
        return false;
    }
    std::vector<std::int64_t> numbers;
    appendNumbers(error, numbers);
    return std::find(numbers.begin(), numbers.end(), resolvingFailed) != numbers.end() &&
           std::all_of(numbers.begin(), numbers.end(), [](std::int64_t number) {
               return number == resolvingFailed || number == choiceDoesNotApply;
           });
}

} // namespace quen
