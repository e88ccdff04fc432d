#pragma once

#include "Tools/Commands/CommandLine/Subcommand.h"
#include "Tools/Terminal/ExitStatus.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quen::tools {

/// The command line of the program: its sub-commands, and how what was typed leads to one of them.
class CommandLine {
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    Subcommand add(const std::string& name, const std::string& help);

    /// Reads the words that were typed behind the program's name and runs the sub-command that they
    /// name. What is wrong with them is told on standard error, and help that was asked for on
    /// standard output. The exit status.
    int run(const std::vector<std::string>& words);

private:
    friend class Subcommand;
    void choose(std::function<int()> action) { action_ = std::move(action); }
    void setUsageStatus(const CLI::App& app, int status) { usageStatuses_[&app] = status; }
    int usageStatus() const;
    int tellUnknown(const std::string& word) const;

    std::unique_ptr<CLI::App> app_;
    std::function<int()> action_;
    std::map<const CLI::App*, int> usageStatuses_;
};

/// Adds every sub-command, in the order of the help. Made from the list in CMakeLists.txt.
void addAllCommands(CommandLine& line);

} // namespace quen::tools
