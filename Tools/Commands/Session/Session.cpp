#include "Tools/Commands/Session/Session.h"

#include "Host/ClientRunner.h"
#include "Host/HostServices.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Progress.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <utility>

namespace quen::tools {

namespace {

ToolRunnerPtr makeRunner(bool keepsTerminal, std::function<void(std::string_view)> watcher) {
    ClientRunner::Options options;
    options.keepsTerminal = keepsTerminal;
    options.outputWatcher = std::move(watcher);
    return std::make_shared<ClientRunner>(std::move(options));
}

/// Another runner for the host, for as long as this lives.
class ReplacedRunner {
public:
    explicit ReplacedRunner(ToolRunnerPtr runner) : former_(HostServices::shared().toolRunner()) {
        HostServices::shared().setToolRunner(std::move(runner));
    }
    ReplacedRunner(const ReplacedRunner&) = delete;
    ReplacedRunner& operator=(const ReplacedRunner&) = delete;
    ~ReplacedRunner() { HostServices::shared().setToolRunner(former_); }

private:
    ToolRunnerPtr former_;
};

} // namespace

void addColourOption(CLI::App& command, std::string& colour) {
    command.add_option("--color", colour, "Colours: auto, always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

void CommonOptions::addTo(CLI::App& command) {
    command.add_flag("--json", json, "Print the records as JSON");
    addColourOption(command, colour);
    command.add_option("--username", user, "User name for the repository");
    command.add_flag("--ask", asksOnTerminal,
                     "Let svn ask on this terminal, for a password for instance");
    command.add_option("--plug-in", plugIn, "The plug-in's module");
}

std::unique_ptr<Session> Session::open(const CommonOptions& options, std::string command) {
    std::string problem;
    auto provider = loadProviderOrExplain(options.plugIn, problem);
    std::unique_ptr<Session> session(new Session(std::move(provider), std::move(command)));
    if (session->provider_ == nullptr) {
        session->tell(problem);
        return nullptr;
    }
    session->lendsTerminal_ = options.asksOnTerminal;
    HostServices::shared().setToolRunner(makeRunner(options.asksOnTerminal, {}));
    return session;
}

QuenSourceControlOperationPtr Session::perform(const QuenSourceControlRequestPtr& request,
                                               Follow follow) {
    Error refusal;
    if (!provider_->validateRequest(request, &refusal)) {
        tell(refusal);
        return nullptr;
    }
    auto operation = provider_->operationForRequest(request);
    if (operation == nullptr) {
        tell("The plug-in has no operation for this request.");
        return nullptr;
    }
    if (!operation->error()) {
        run(operation, follow);
    }
    return operation;
}

void Session::run(const QuenSourceControlOperationPtr& operation, Follow follow) {
    const InterruptWatch watch([&] { operation->cancel(); });
    if (follow == Follow::nothing) {
        operation->main();
    } else {
        report_ = ClientReport();
        // A client that has the terminal may be asking there.
        std::optional<Progress> progress;
        if (!lendsTerminal_ && canShowProgress()) {
            progress.emplace();
        }
        const ReplacedRunner replaced(makeRunner(lendsTerminal_, [&](std::string_view piece) {
            report_.take(piece);
            if (progress) {
                progress->show(report_.lastLine(), report_.items());
            }
        }));
        operation->main();
    }
    wasInterrupted_ = watch.wasInterrupted();
}

bool Session::wasStopped(const QuenSourceControlOperation& operation) const {
    // A client that came to its end all the same has done its work. An operation that runs several
    // has left some out.
    const bool runsOneClient =
        dynamic_cast<const QuenSourceControlTaskOperation*>(&operation) != nullptr;
    return wasInterrupted_ && (operation.error() || !runsOneClient);
}

int Session::finish(const QuenSourceControlOperation& operation) const {
    if (wasStopped(operation)) {
        tell("Interrupted.");
        return ExitInterrupted;
    }
    if (!operation.error()) {
        return ExitSuccess;
    }
    tell(operation.error());
    return ExitFailure;
}

void Session::tell(const std::string& text) const {
    std::cerr << "quen " << command_ << ": " << text << '\n';
}

void Session::tell(const Error& error) const {
    for (const std::string& line : linesOfError(error)) {
        tell(line);
    }
}

void printJson(const Value& result) {
    std::cout << toJson(result).dump() << '\n';
}

} // namespace quen::tools
