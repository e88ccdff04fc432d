#include "Host/ClientRunner.h"
#include "Host/RunContext.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Console/RequestConsole.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/InterruptibleRunner.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

namespace quen::tools {

namespace {

struct Options {
    bool dryRun = false;
    bool lines = false;
    std::uint32_t logLevel = 0;
    std::string toolsDirectory;
    std::string plugIn;
    std::string file = "-";
};

/// The input object was not understood; every other failure is ExitFailure.
constexpr int exitInputError = 2;

int explain(const std::string& problem) {
    std::cerr << "quen request: " << problem << '\n';
    return ExitFailure;
}

/// False where standard output cannot be written to, which is told at the end of the program.
bool print(const RequestConsole::Answer& answer) {
    std::cout << answer.json.dump() << '\n' << std::flush;
    return std::cout.good();
}

int serveLines(RequestConsole& console, std::istream& input) {
    for (std::string line; std::getline(input, line);) {
        if (!print(console.serve(line)) || InterruptWatch::wasInterrupted()) {
            return ExitFailure;
        }
    }
    return input.bad() ? explain("the input could not be read to its end.") : ExitSuccess;
}

int serveOne(RequestConsole& console, std::istream& input) {
    const std::string text(std::istreambuf_iterator<char>(input), {});
    if (input.bad()) {
        return explain("the input could not be read to its end.");
    }
    const RequestConsole::Answer answer = console.serve(text);
    if (!print(answer) || InterruptWatch::wasInterrupted()) {
        return ExitFailure;
    }
    if (!answer.inputError.empty()) {
        explain(answer.inputError);
        return exitInputError;
    }
    return ExitSuccess;
}

int serve(const Options& options, std::istream& input) {
    std::string problem;
    auto provider = loadProviderOrExplain(options.plugIn, problem);
    if (provider == nullptr) {
        return explain(problem);
    }
    if (!options.toolsDirectory.empty()) {
        RunContext::setProcessDefault(
            RunContext::processDefault().withToolsDirectory(options.toolsDirectory));
    }
    auto client = std::make_shared<ClientRunner>(ClientRunner::Options{.endsWithHost = true});
    RequestConsole console(std::move(provider),
                           std::make_shared<InterruptibleRunner>(std::move(client)),
                           {options.dryRun, options.logLevel});
    return options.lines ? serveLines(console, input) : serveOne(console, input);
}

int runRequestCommand(const Options& options) {
    if (options.file == "-") {
        return serve(options, std::cin);
    }
    std::ifstream file(options.file);
    // A directory can be opened, but never read.
    if (!file || (file.peek(), file.bad())) {
        return explain("\"" + options.file + "\" cannot be read.");
    }
    file.clear();
    return serve(options, file);
}

} // namespace

void addRequestCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("request", "Run one plug-in request given as JSON, or one per line");
    command.flag("--dry-run", options->dryRun, "Create the operation without running it");
    command.flag("--lines", options->lines, "Read one object per line and answer one per line");
    command.option("--log-level", options->logLevel, "Level of the source-control log");
    command.option("--tools-directory", options->toolsDirectory,
                   "Directory of the svn program (default: found on PATH)");
    command.option("--plug-in", options->plugIn, "Plug-in module to load");
    command.argument("FILE", options->file, "Input file (default: standard input)");
    command.run([options] { return runRequestCommand(*options); });
    command.setUsageStatus(ExitFailure);
}

} // namespace quen::tools
