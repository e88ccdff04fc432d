#include "Host/Keeping/UndoStore.h"
#include "Host/Places/SettingsFile.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/Session.h"
#include "Tools/Terminal/SafeText.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    std::string path = ".";
};

void printForPeople(const UndoStore::Restored& restored) {
    for (const String& path : restored.restored) {
        std::cout << shownPath(path.view()) << '\n';
    }
    std::cout << "Brought back " << counted(restored.restored.size(), "item") << " of the last "
              << printable(restored.entry.step.view()) << ".\n";
}

void printAsJson(const UndoStore::Restored& restored) {
    Array records;
    for (const String& path : restored.restored) {
        records.append(Dictionary{
            {QuenSourceControlOperationPathKey, MarlFilePath::filePathForPathString(path)}});
    }
    printJson(records);
}

void tellWhatIsMissing(const Session& session, const UndoStore::Restored& restored) {
    for (const UndoRefusal& refusal : restored.refused) {
        session.tell("\"" + shownPath(refusal.path.view()) +
                     "\" was not put back: " + printable(refusal.reason.view()) + "." +
                     (refusal.beside.isNil()
                          ? ""
                          : " What was kept is in \"" + shownPath(refusal.beside.view()) + "\"."));
    }
    for (const String& note : restored.entry.notes) {
        session.tell("Not brought back: " + printable(note.view()) + ".");
    }
}

int runUndoCommand(Session& session, const Options& options) {
    const std::filesystem::path top = topDirectoryOf(options.path);
    if (top.empty()) {
        return session.fail("\"" + printable(options.path) + "\" does not lie in a working copy.")
            .status;
    }
    const auto restored = UndoStore().restoreLast(top.string());
    if (restored.error) {
        session.tell(restored.error);
        return ExitFailure;
    }
    if (options.common.json) {
        printAsJson(restored);
    } else if (restored.entry.id.isNil()) {
        std::cout << "Nothing to undo.\n";
    } else {
        printForPeople(restored);
    }
    tellWhatIsMissing(session, restored);
    return restored.refused.empty() ? ExitSuccess : ExitFailure;
}

} // namespace

void addUndoCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("undo", "Restore the files that the last revert or remove took from disk");
    command.argument("PATH", options->path, "Path in the working copy (default: .)");
    runInSession<Options>(command, options, runUndoCommand);
}

} // namespace quen::tools
