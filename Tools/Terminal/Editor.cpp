#include "Tools/Terminal/Editor.h"

#include "Foundation/Lines.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/ShellProgram.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sys/wait.h>
#include <system_error>

namespace quen::tools {

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

} // namespace

std::string editorInSettings(std::istream& settings) {
    std::string section;
    for (std::string line; std::getline(settings, line);) {
        const std::string_view text = trimmed(line);
        const std::size_t equals = text.find('=');
        if (text.starts_with('[') && text.ends_with(']')) {
            section = text;
        } else if (section == "[helpers]" && equals != std::string_view::npos &&
                   trimmed(text.substr(0, equals)) == "editor-cmd") {
            return std::string(trimmed(text.substr(equals + 1)));
        }
    }
    return {};
}

std::string editorCommand() {
    std::ifstream settings(variable("HOME") + "/.subversion/config");
    const std::string said = editorInSettings(settings);
    for (const std::string& each :
         {variable("SVN_EDITOR"), said, variable("VISUAL"), variable("EDITOR")}) {
        if (!each.empty()) {
            return each;
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
