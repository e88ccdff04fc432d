#include "Tools/Commands/Changes/TransferNews.h"

#include "Foundation/ShellWord.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/Table.h"

#include <algorithm>
#include <iostream>

namespace quen::tools {

namespace {

using Kind = ConflictOutcome::Kind;

std::string listed(const std::vector<String>& names) {
    std::string text;
    for (const String& name : names) {
        text += text.empty() ? "" : ", ";
        text += printable(name.view());
    }
    return text;
}

/// `a.c`, `a.c (property colour)`, `a.c (tree)`.
std::string nameOf(const ConflictOutcome& outcome) {
    std::string name = "  " + shownPath(outcome.path.view());
    if (outcome.kind == Kind::property) {
        name += outcome.properties.empty() ? " (properties)"
                : outcome.properties.size() == 1
                    ? " (property " + listed(outcome.properties) + ")"
                    : " (properties " + listed(outcome.properties) + ")";
    } else if (outcome.kind == Kind::tree) {
        name += " (tree)";
    }
    return name;
}

std::string whereTheirsIs(const ConflictOutcome& outcome, const std::string& showTheirs) {
    if (!outcome.theirs.isNil()) {
        return "theirs: " + shownPath(outcome.theirs.view());
    }
    std::string words = "theirs was not kept";
    if (outcome.error) {
        words += " (" + printable(linesOfError(outcome.error).front()) + ")";
    }
    if (outcome.kind == Kind::text && !showTheirs.empty()) {
        words += "; " + showTheirs + " " + shellWord(shownPath(outcome.path.view())) + " shows it";
    }
    return words;
}

std::string whatIsLeft(const ConflictOutcome& outcome) {
    if (outcome.kind == Kind::tree) {
        return outcome.description.isNil() ? "tree conflict"
                                           : printable(outcome.description.view());
    }
    if (outcome.kind == Kind::property) {
        return outcome.theirs.isNil() ? "property conflict"
                                      : "described in " + shownPath(outcome.theirs.view());
    }
    return outcome.theirs.isNil() || outcome.mine.isNil()
               ? "both versions are in it"
               : "yours: " + shownPath(outcome.mine.view()) +
                     ", theirs: " + shownPath(outcome.theirs.view());
}

void print(const Table& table) {
    table.print(std::cerr, Palette(Palette::Use::never));
}

void tellSettled(const Session& session, const std::vector<ConflictOutcome>& outcomes,
                 const std::string& showTheirs) {
    Table table;
    std::size_t count = 0;
    bool anyIsKept = false;
    for (const ConflictOutcome& each : outcomes) {
        if (each.state == ConflictState::settled) {
            table.add({{nameOf(each)}, {whereTheirsIs(each, showTheirs)}});
            anyIsKept = anyIsKept || !each.theirs.isNil();
            ++count;
        }
    }
    if (count == 0) {
        return;
    }
    session.tell(counted(count, "conflict") + (count == 1 ? " was decided for your version:"
                                                          : " were decided for your version:"));
    print(table);
    session.tell(anyIsKept ? "Compare both versions, take over what is missing from yours, and "
                             "delete the file with theirs."
                           : "Nothing of theirs is in these; compare before you commit.");
}

void tellLeft(const Session& session, const std::vector<ConflictOutcome>& outcomes) {
    Table table;
    std::string paths;
    std::size_t count = 0;
    for (const ConflictOutcome& each : outcomes) {
        if (each.state == ConflictState::left) {
            table.add({{nameOf(each)}, {whatIsLeft(each)}});
            const std::string word = " " + shellWord(shownPath(each.path.view()));
            paths += (paths + " ").find(word + " ") == std::string::npos ? word : "";
            ++count;
        }
    }
    if (count == 0) {
        return;
    }
    session.tell(counted(count, "conflict") +
                 (count == 1 ? " is left for you to resolve:" : " are left for you to resolve:"));
    print(table);
    constexpr std::size_t mostNamed = 3;
    session.tell("Bring each item into the state that it should have, then run: quen resolve" +
                 (count <= mostNamed ? paths : std::string(" PATH")));
}

void tellSkipped(const Session& session, const std::vector<SkippedItem>& skipped) {
    if (skipped.empty()) {
        return;
    }
    Table table;
    for (const SkippedItem& each : skipped) {
        table.add({{"  " + shownPath(each.path.view())}, {printable(each.reason.view())}});
    }
    session.tell(counted(skipped.size(), "item") +
                 (skipped.size() == 1 ? " was skipped:" : " were skipped:"));
    print(table);
    session.tell("Nothing of theirs has come in there. See to the reason, then run this again.");
}

} // namespace

void tellOutcomes(const Session& session, const std::vector<ConflictOutcome>& outcomes,
                  const std::vector<SkippedItem>& skipped, const std::string& showTheirs) {
    std::cout.flush();
    tellSettled(session, outcomes, showTheirs);
    tellLeft(session, outcomes);
    tellSkipped(session, skipped);
}

} // namespace quen::tools
