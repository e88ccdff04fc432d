#include "Tools/Terminal/Editor.h"

#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/ShellProgram.h"

#include <cerrno>
#include <cstdlib>
#include <sys/wait.h>
#include <system_error>

namespace quen::tools {

std::string editorCommand() {
    for (const char* const name : {"SVN_EDITOR", "VISUAL", "EDITOR"}) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

bool editFile(const std::string& editor, const std::string& path, std::string& problem) {
    const InterruptWatch::KeysLent keys;
    // The command may hold options and quotes, which are a shell's to read; the path is not.
    const pid_t child = startShellProgram({.script = editor + " \"$1\"", .arguments = {path}});
    if (child < 0) {
        problem = "The editor \"" + editor +
                  "\" cannot be started: " + std::generic_category().message(errno) + ".";
        return false;
    }
    const int status = waitForShellProgram(child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return true;
    }
    problem = "The editor \"" + editor + "\" failed" +
              (WIFEXITED(status) ? " with exit status " + std::to_string(WEXITSTATUS(status))
                                 : std::string(": a signal ended it")) +
              ".";
    return false;
}

} // namespace quen::tools
