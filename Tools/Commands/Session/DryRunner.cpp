#include "Tools/Commands/Session/DryRunner.h"

#include "Foundation/ShellWord.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string>

namespace quen::tools {

namespace {

constexpr std::array<std::string_view, 21> changing{
    "add",     "branch create", "branch delete", "checkout", "cleanup", "commit",   "copy",
    "export",  "ignore",        "import",        "merge",    "mkdir",   "move",     "remove",
    "resolve", "revert",        "switch",        "tag",      "undo",    "unignore", "update"};

/// The client's sub-commands that change nothing; an export goes to a temporary file. Any other may
/// change something.
constexpr std::array<std::string_view, 10> reading{"blame", "cat", "diff",    "export",   "info",
                                                   "list",  "log", "propget", "proplist", "status"};

template <typename Names> bool holds(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// The word that is neither an option nor the value of the one that comes in front of it.
std::string_view subcommandIn(const StringArray& arguments) {
    for (auto at = arguments.begin(); at != arguments.end(); ++at) {
        if (*at == "--username") {
            ++at;
        } else if (!at->hasPrefix("-")) {
            return at->view();
        }
        if (at == arguments.end()) {
            break;
        }
    }
    return {};
}

bool onlyReads(const StringArray& arguments) {
    const std::string_view subcommand = subcommandIn(arguments);
    return subcommand.empty() || holds(reading, subcommand) ||
           std::find(arguments.begin(), arguments.end(), "--dry-run") != arguments.end();
}

} // namespace

bool changesSomething(std::string_view command) {
    return holds(changing, command);
}

ToolRun DryRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    if (onlyReads(invocation.arguments)) {
        return runner_->run(invocation, std::move(stop));
    }
    std::string line = "Would run: svn";
    for (const String& argument : invocation.arguments) {
        line.append(" ").append(shellWord(argument.str()));
    }
    std::cout << line << '\n';
    return {.end = RunEnd::ended,
            .exitStatus = 0,
            .signal = {},
            .output = std::make_shared<Data>(),
            .errors = std::make_shared<Data>(),
            .reason = {}};
}

} // namespace quen::tools
