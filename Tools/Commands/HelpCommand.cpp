#include "Host/ClientCommand.h"
#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/CommandLine/ManualPage.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>

namespace quen::tools {

namespace {

/// The client's version, and where it lies.
std::string clientVersion() {
    const auto query = ClientCommand::makeQuery({"--version", "--quiet"});
    query->run();
    const std::string directory = RunContext::current().toolsDirectory().str();
    if (query->error()) {
        return "not found in " + printable(directory);
    }
    std::string version(query->output()->bytes());
    version.erase(std::remove(version.begin(), version.end(), '\n'), version.end());
    return printable(version + " (" + directory + "/svn)");
}

int showVersions(const std::vector<std::string>& words) {
    if (std::find(words.begin(), words.end(), "--json") != words.end()) {
        std::cout << jsonText(
                         Dictionary{{"quen", String(QUEN_VERSION)},
                                    {"contract", std::int64_t{QuenSourceControlContractVersion}},
                                    {"svn", String(clientVersion())}})
                  << '\n';
        return ExitSuccess;
    }
    std::cout << "quen " << QUEN_VERSION << "\nplug-in contract "
              << QuenSourceControlContractVersion << "\nsvn " << clientVersion() << '\n';
    return ExitSuccess;
}

bool writePage(const std::string& directory, std::string name, const std::string& text) {
    std::replace(name.begin(), name.end(), ' ', '-');
    const std::string path = directory + "/" + name + ".1";
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        std::cerr << "quen manual: \"" << printable(path) << "\" cannot be written.\n";
        return false;
    }
    return true;
}

int writeManual(const CommandLine& line, const std::vector<std::string>& words) {
    if (words.size() != 1) {
        std::cerr << "quen manual: Give the directory to write the manual pages to.\n";
        return ExitUsage;
    }
    const CommandText program = line.text();
    bool isWritten = writePage(words[0], "quen", manualOverviewOf(program, QUEN_VERSION));
    for (const CommandText& command : program.commands) {
        isWritten =
            isWritten && (command.isHidden || writePage(words[0], "quen " + command.name,
                                                        manualPageOf(command, QUEN_VERSION)));
    }
    return isWritten ? ExitSuccess : ExitFailure;
}

CommandText plainCommand(const std::string& name, const std::string& help,
                         const ArgumentText& argument) {
    CommandText text;
    text.name = name;
    text.help = help;
    if (!argument.name.empty()) {
        text.arguments.push_back(argument);
    }
    return text;
}

} // namespace

void addHelpCommand(CommandLine& line) {
    // The command line itself answers it.
    CommandText help = plainCommand("help", "Describe quen or one command",
                                    {"COMMAND", "Command to describe", false, false});
    OptionText json;
    json.longName = "--json";
    json.help = "Print JSON for scripts";
    help.options.push_back(json);
    line.addPlain(help, {});
    CommandText version = plainCommand("version", "Show versions", {});
    version.isHidden = true;
    line.addPlain(version, [](const auto& words) { return showVersions(words); });
    CommandText manual = plainCommand("manual", "Write the manual pages to a directory",
                                      {"DIRECTORY", "Where to write", true, false});
    manual.isHidden = true;
    line.addPlain(manual, [&line](const auto& words) { return writeManual(line, words); });
}

} // namespace quen::tools
