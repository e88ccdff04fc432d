#include "Foundation/Lines.h"
#include "Host/Keeping/UndoStore.h"
#include "Host/Places/SettingsFile.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/Session.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    bool onlyLists = false;
    /// The last step is 1.
    std::uint32_t step = 1;
    std::vector<std::string> paths{"."};
};

void printForPeople(const UndoStore::Restored& restored) {
    for (const String& path : restored.restored) {
        std::cout << shownPath(path.view()) << '\n';
    }
    std::cout << "Brought back " << counted(restored.restored.size(), "item") << " of the last "
              << printable(restored.entry.step.view()) << ".\n";
}

void appendRecords(Array& records, const UndoStore::Restored& restored) {
    for (const String& path : restored.restored) {
        records.append(Dictionary{
            {QuenSourceControlOperationPathKey, MarlFilePath::filePathForPathString(path)}});
    }
}

/// What is for the person to do again, such as changed properties with their values.
void tellNotes(const Session& session, const UndoEntry& entry) {
    for (const String& note : entry.notes) {
        session.tell("Not brought back; make these changes again where you want them:");
        for (const std::string_view line : linesOf(note.view())) {
            std::cerr << "  " << printableLine(line) << '\n';
        }
    }
}

void tellWhatIsMissing(const Session& session, const UndoStore::Restored& restored) {
    for (const UndoRefusal& refusal : restored.refused) {
        session.tell("\"" + shownPath(refusal.path.view()) +
                     "\" was not put back: " + printable(refusal.reason.view()) + "." +
                     (refusal.beside.isNil()
                          ? ""
                          : " What was kept is in \"" + shownPath(refusal.beside.view()) + "\"."));
    }
    tellNotes(session, restored.entry);
}

std::string complaintAboutStep(const std::string& word) {
    const bool isNumber = !word.empty() && word.size() < 7 &&
                          word.find_first_not_of("0123456789") == std::string::npos &&
                          word.find_first_not_of('0') != std::string::npos;
    return isNumber ? "" : "\"" + printable(word) + "\" is not the number of a step (at least 1).";
}

int tellUndo(const UndoEntry& entry) {
    std::cout << "Would bring back:\n";
    for (const UndoItem& item : entry.items) {
        std::cout << "  " << shownPath(item.path.view()) << '\n';
    }
    return ExitSuccess;
}

/// Undoes one step of one working copy.
int undo(const Session& session, const std::string& top, std::uint32_t step, Array& records) {
    UndoStore store;
    const std::vector<UndoEntry> entries = store.entries(top);
    if (step > entries.size()) {
        if (!session.options().json) {
            std::cout << "Nothing to undo.\n";
        }
        return ExitSuccess;
    }
    if (session.options().dryRun) {
        return tellUndo(entries[step - 1]);
    }
    const auto restored = store.restore(top, entries[step - 1].id);
    if (restored.error) {
        session.tell(restored.error);
        return ExitFailure;
    }
    appendRecords(records, restored);
    if (!session.options().json) {
        printForPeople(restored);
        std::cout.flush();
    }
    tellWhatIsMissing(session, restored);
    return restored.refused.empty() ? ExitSuccess : ExitFailure;
}

/// One step for a script, as `--step` counts them.
Dictionary stepRecord(const UndoEntry& entry, std::int64_t number, const std::string& top) {
    const auto time = std::chrono::time_point_cast<std::chrono::microseconds>(entry.time);
    Array items = Array::empty();
    for (const auto& item : entry.items) {
        items.append(Dictionary{{"path", item.path}});
    }
    return {{"workingCopy", String(top)},
            {"number", number},
            {"step", entry.step},
            {"date", Date(time)},
            {"items", items}};
}

void listRecords(const std::string& top, Array& records) {
    std::int64_t number = 0;
    for (const UndoEntry& entry : UndoStore().entries(top)) {
        records.append(stepRecord(entry, ++number, top));
    }
}

void list(const std::string& top, const Palette& palette) {
    Table table;
    std::size_t number = 0;
    for (const UndoEntry& entry : UndoStore().entries(top)) {
        const auto time = std::chrono::time_point_cast<std::chrono::microseconds>(entry.time);
        const std::string first =
            entry.items.empty() ? "" : shownPath(entry.items.front().path.view());
        table.add({{std::to_string(++number), Style::warning, true},
                   {printable(entry.step.view())},
                   {localDateText(time), Style::faint},
                   {counted(entry.items.size(), "item")},
                   {first + (entry.items.size() > 1 ? ", .." : "")}});
    }
    table.print(std::cout, palette);
    if (table.isEmpty()) {
        std::cout << "Nothing to undo.\n";
    }
}

/// The top of each working copy, once.
Outcome<std::vector<std::string>> topsOf(const Session& session,
                                         const std::vector<std::string>& paths) {
    std::vector<std::string> tops;
    for (const std::string& path : paths) {
        const std::string top = topDirectoryOf(path).string();
        if (top.empty()) {
            return session.fail("\"" + printable(path) + "\" is not in a working copy.");
        }
        if (std::find(tops.begin(), tops.end(), top) == tops.end()) {
            tops.push_back(top);
        }
    }
    return tops;
}

int runUndoCommand(Session& session, const Options& options) {
    const auto tops = topsOf(session, options.paths);
    if (!tops) {
        return tops.status();
    }
    int status = ExitSuccess;
    Array records = Array::empty();
    for (const std::string& top : *tops) {
        if (options.onlyLists && options.common.json) {
            listRecords(top, records);
        } else if (options.onlyLists) {
            list(top, options.common.palette());
        } else {
            const int each = undo(session, top, std::max(options.step, 1U), records);
            status = status == ExitSuccess ? each : status;
        }
    }
    if (options.common.json) {
        printJson(records);
    }
    return status;
}

} // namespace

void addUndoCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("undo", "Bring back the files that the last revert, remove, merge or resolve "
                         "took or changed");
    command.flag("--list", options->onlyLists, "List the steps that can be undone");
    command.option("--step", options->step, "Undo the Nth last step (default: 1)")
        .checked(complaintAboutStep, "N");
    command.arguments("PATH", options->paths, "Paths in working copies (default: .)");
    runInSession<Options>(command, options, runUndoCommand);
}

} // namespace quen::tools
