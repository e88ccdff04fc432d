#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/ErrorReport.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/StandardStreams.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace quen::tools {

namespace {

/// The server waits for signals itself: it ends its requests and their clients first.
bool takesSignalsItself(const std::vector<std::string>& words) {
    const std::size_t index = indexOfCommand(words);
    return index < words.size() && words[index] == "serve";
}

int run(const std::vector<std::string>& words) {
    try {
        std::optional<InterruptWatch> watch;
        if (!takesSignalsItself(words)) {
            watch.emplace();
        }
        CommandLine line;
        addCommandsFor(line, words);
        int status = line.run(words);
        if (!std::cout.flush() && status == ExitSuccess) {
            status = ExitFailure;
        }
        return status != ExitSuccess && InterruptWatch::wasInterrupted() ? ExitInterrupted : status;
    } catch (const std::exception& error) {
        std::cerr << "quen: " << error.what() << '\n';
        return ExitFailure;
    }
}

/// What is lost of the output is a failure, and told; but for a reader that went away, which has
/// seen enough.
int concluded(int status, const std::error_code& outputError) {
    if (outputError && outputError != std::errc::broken_pipe &&
        outputError != std::errc::interrupted) {
        std::cerr << "quen: Standard output cannot be written to: " << outputError.message()
                  << ".\n";
    }
    return outputError && status == ExitSuccess ? ExitFailure : status;
}

} // namespace

} // namespace quen::tools

int main(int argc, char** argv) {
    // A reader that goes away is an error of writing, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    // Whoever started this program may ignore it, and the system would forget how clients end.
    std::signal(SIGCHLD, SIG_DFL);
    quen::tools::StandardStreams streams;
    const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    quen::tools::ErrorReport report(quen::tools::asksForJson(words));
    const int status = quen::tools::run(words);
    const std::error_code outputError = streams.finish();
    const int concluded = quen::tools::concluded(status, outputError);
    report.finish(concluded, outputError != std::errc::broken_pipe);
    return concluded;
}
