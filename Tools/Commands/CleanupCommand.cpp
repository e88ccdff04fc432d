#include "Host/Places/SettingsFile.h"
#include "Host/WorkingCopyCleanup.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/SafeText.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    std::vector<std::string> paths{"."};
};

int cleanUp(const Session& session, const std::string& path, Array& records) {
    const std::filesystem::path top = topDirectoryOf(path);
    if (top.empty()) {
        return session.fail("\"" + printable(path) + "\" is not in a working copy.").status;
    }
    const auto cleanup = WorkingCopyCleanup::make(top.string());
    {
        const InterruptWatch::Action action([&cleanup] { cleanup->cancel(); });
        cleanup->run();
    }
    const int status = session.finish(*cleanup);
    if (status == ExitSuccess) {
        records.append(Dictionary{{"path", String(top.string())}});
    }
    if (status == ExitSuccess && !session.options().json && !session.options().dryRun) {
        std::cout << "Cleaned up " << printable(top.string()) << ".\n";
    }
    return status;
}

int runCleanupCommand(Session& session, const Options& options) {
    int status = ExitSuccess;
    Array records = Array::empty();
    for (const std::string& path : options.paths) {
        const int each =
            InterruptWatch::wasInterrupted() ? ExitInterrupted : cleanUp(session, path, records);
        status = status == ExitSuccess ? each : status;
    }
    if (session.options().json) {
        printJson(records);
    }
    return status;
}

} // namespace

void addCleanupCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("cleanup", "Unlock a working copy that an interrupted command left locked");
    command.arguments("PATH", options->paths, "Paths in working copies (default: .)");
    runInSession<Options>(command, options, runCleanupCommand);
}

} // namespace quen::tools
