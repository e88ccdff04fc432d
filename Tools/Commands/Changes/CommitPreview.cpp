#include "Tools/Commands/Changes/CommitPreview.h"

#include "Foundation/Lines.h"
#include "Foundation/ShellWord.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/ErrorReason.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Table.h"

#include <algorithm>
#include <sstream>

namespace quen::tools {

namespace {

/// As many as are named one by one of what is not sent.
constexpr std::size_t namedItems = 10;

std::string wordOf(const StatusEntry& entry) {
    return joinedWords(statusItem(entry, "", false).here);
}

std::string quotedPath(const String& path) {
    return "\"" + shownPath(path.view()) + "\"";
}

std::string nameForShell(const String& path) {
    return shellWord(shownPath(path.view()));
}

void appendNamed(std::vector<std::string>& notes, const std::string& heading,
                 const std::vector<StatusEntry>& entries) {
    if (entries.empty()) {
        return;
    }
    std::string note = heading;
    for (std::size_t i = 0; i < std::min(entries.size(), namedItems); ++i) {
        note.append(i == 0 ? ": " : ", ").append(shownPath(entries[i].path.view()));
    }
    if (entries.size() > namedItems) {
        note.append(" and ").append(std::to_string(entries.size() - namedItems)).append(" more");
    }
    notes.push_back(std::move(note));
}

const StatusEntry* entryAt(const std::vector<StatusEntry>& entries, const String& path) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const StatusEntry& each) { return each.path == path; });
    return found == entries.end() ? nullptr : &*found;
}

} // namespace

Outcome<CommitPreview> CommitPreview::of(Session& session,
                                         const QuenSourceControlRequestPtr& request,
                                         const std::vector<std::string>& paths) {
    CommitPreview preview(planCommit(absolutePaths(paths), runHostQuery));
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted);
    }
    if (preview.plan_.error) {
        session.tell(preview.plan_.error, request.get());
        return Explained{ExitFailure};
    }
    sortByPath(preview.plan_.sent);
    if (preview.tellOfNamed(session, paths) || preview.tellOfObstacles(session, paths)) {
        return Explained{ExitFailure};
    }
    return preview;
}

/// A path that was named and that nothing can be sent of.
bool CommitPreview::tellOfNamed(const Session& session,
                                const std::vector<std::string>& paths) const {
    const std::vector<String> absolute = absolutePaths(paths);
    bool isAnyUnusable = false;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const bool isSent = entryAt(plan_.sent, absolute[i]) != nullptr;
        std::string problem;
        if (entryAt(plan_.unversioned, absolute[i]) != nullptr) {
            problem = "\"" + paths[i] + "\" is not under version control. Add it with: quen add " +
                      shellWord(paths[i]);
        } else if (entryAt(plan_.missing, absolute[i]) != nullptr) {
            problem = "\"" + paths[i] +
                      "\" is missing. Bring it back with quen revert, or remove "
                      "it with quen remove.";
        } else if (!isSent && plan_.sent.empty() && !isOnDisk(absolute[i].str())) {
            problem = sentenceOnMissingPath(paths[i]);
        }
        if (!problem.empty()) {
            session.tell(problem);
            isAnyUnusable = true;
        }
    }
    return isAnyUnusable;
}

bool CommitPreview::tellOfObstacles(const Session& session,
                                    const std::vector<std::string>& /*paths*/) const {
    for (const StatusEntry& entry : plan_.conflicts) {
        session.tell(quotedPath(entry.path) + " is in conflict. Edit it, then run: quen resolve " +
                     nameForShell(entry.path));
    }
    for (const String& parent : plan_.needsParents) {
        session.tell(quotedPath(parent) +
                     " is a new directory that is not in the repository yet: commit it as well.");
    }
    for (const String& end : plan_.needsOtherEnds) {
        session.tell(quotedPath(end) + " is the other end of a move: commit it as well.");
    }
    return !plan_.conflicts.empty() || !plan_.needsParents.empty() || !plan_.needsOtherEnds.empty();
}

std::vector<std::string> CommitPreview::items(std::size_t limit) const {
    Table table;
    for (std::size_t i = 0; i < std::min(plan_.sent.size(), limit); ++i) {
        table.add({{wordOf(plan_.sent[i])}, {shownPath(plan_.sent[i].path.view())}});
    }
    std::ostringstream text;
    table.print(text, Palette(Palette::Use::never));
    const std::string whole = text.str();
    std::vector<std::string> lines;
    for (const std::string_view line : linesOf(whole)) {
        lines.emplace_back(line);
    }
    if (plan_.sent.size() > limit) {
        lines.push_back("... and " + counted(plan_.sent.size() - limit, "more item"));
    }
    return lines;
}

std::vector<std::string> CommitPreview::notes() const {
    std::vector<std::string> notes;
    appendNamed(notes, "Not sent, because not under version control", plan_.unversioned);
    appendNamed(notes, "Not sent, because missing", plan_.missing);
    if (plan_.groups.size() > 1) {
        notes.push_back("These lie in " + std::to_string(plan_.groups.size()) +
                        " working copies, which are committed one after another.");
    }
    return notes;
}

} // namespace quen::tools
