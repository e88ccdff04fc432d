#pragma once

#include "Tools/Commands/CommandLine/CommandText.h"
#include "Tools/Commands/CommandLine/Subcommand.h"
#include "Tools/Terminal/ExitStatus.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quen::tools {

/// How many words come before the command's name: `-C DIR`, once or several times.
std::size_t indexOfCommand(const std::vector<std::string>& words);

/// The command line of the program: its sub-commands, and how what was typed leads to one of them.
class CommandLine {
public:
    using Words = std::vector<std::string>;

    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    Subcommand add(const std::string& name, const std::string& help);

    /// A sub-command that reads its own words. `shown` is what the help says of it, which need not
    /// be there.
    void addPlain(const CommandText& shown, std::function<int(const Words& words)> run);

    /// All that can be said of the commands.
    CommandText text() const;

    /// Reads the words that were typed after the program's name and runs the sub-command that they
    /// name. What is wrong with them is told on standard error, and help that was asked for on
    /// standard output. The exit status.
    int run(const Words& words);

private:
    friend class Subcommand;
    void choose(std::function<int()> action) { action_ = std::move(action); }
    void setUsageStatus(const CLI::App& app, int status) { usageStatuses_[&app] = status; }
    int usageStatus(const CLI::App& command) const;
    int runCommand(Words words);
    int parse(const Words& words);
    int tellUnknown(const std::string& word) const;
    int tellProblem(const std::string& problem) const;
    int showHelp(const Words& words) const;

    struct Plain {
        CommandText text;
        std::function<int(const Words&)> run;
    };

    std::unique_ptr<CLI::App> app_;
    std::function<int()> action_;
    std::map<const CLI::App*, int> usageStatuses_;
    std::vector<Plain> plain_;
};

/// Adds every sub-command, in the order of the help. Made from the list in CMakeLists.txt.
void addAllCommands(CommandLine& line);
/// Adds only the sub-command that the words name, which takes a fraction of the time; every one
/// where they name none, or one that speaks of the others.
void addCommandsFor(CommandLine& line, const CommandLine::Words& words);

} // namespace quen::tools
