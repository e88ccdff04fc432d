#include "Tools/Commands/Session/Session.h"

#include "Host/ClientRunner.h"
#include "Host/RequestRefusal.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <iostream>
#include <utility>

namespace quen::tools {

namespace {

ToolRunnerPtr makeRunner(bool keepsTerminal) {
    return std::make_shared<ClientRunner>(
        ClientRunner::Options{.keepsTerminal = keepsTerminal, .endsWithHost = true});
}

} // namespace

void addColourOption(Subcommand& command, std::string& colour) {
    command.option("--color", colour, "Colours: auto, always or never")
        .oneOf({"auto", "always", "never"});
}

void CommonOptions::addTo(Subcommand& command) {
    command.flag("--json", json, "Print the records as JSON");
    addColourOption(command, colour);
    command.option("--username", user, "User name for the repository");
    command.flag("--ask", asksOnTerminal,
                 "Let svn ask on this terminal, for a password for instance");
    command.option("--plug-in", plugIn, "The plug-in's module");
}

Session::Session(const CommonOptions& options, QuenSourceControlProtocolPtr provider,
                 std::string command)
    : options_(options), provider_(std::move(provider)), command_(std::move(command)),
      scope_(RunContext::current().withToolRunner(makeRunner(options.asksOnTerminal))) {}

Outcome<std::unique_ptr<Session>> Session::open(const CommonOptions& options, std::string command) {
    std::string problem;
    auto provider = loadProviderOrExplain(options.plugIn, problem);
    std::unique_ptr<Session> session(new Session(options, std::move(provider), std::move(command)));
    if (session->provider_ == nullptr) {
        return session->fail(problem);
    }
    return session;
}

Outcome<QuenSourceControlOperationPtr> Session::perform(const QuenSourceControlRequestPtr& request,
                                                        Follow follow) {
    if (InterruptWatch::wasInterrupted()) {
        return fail("Interrupted.", ExitInterrupted);
    }
    Error refusal = refusalOfRequest(*request);
    if (refusal || !provider_->validateRequest(request, &refusal)) {
        tell(refusal);
        return Explained{ExitFailure};
    }
    const RunContext::Scope scope(contextFor(follow));
    auto operation = provider_->operationForRequest(request);
    if (operation == nullptr) {
        return fail("The plug-in has no operation for this request.");
    }
    if (!operation->error()) {
        run(operation, follow);
    }
    return operation;
}

RunContext Session::contextFor(Follow follow) {
    if (follow == Follow::nothing) {
        return RunContext::current();
    }
    return RunContext::current().withOutputWatcher(
        [this](const QuenSourceControlOperation& /*operation*/, std::string_view piece) {
            report_.take(piece);
            if (progress_) {
                progress_->show(report_.lastLine(), report_.items());
            }
        });
}

Outcome<QuenSourceControlOperationPtr> Session::query(const QuenSourceControlRequestPtr& request,
                                                      Follow follow) {
    auto operation = perform(request, follow);
    const int status = operation ? finish(**operation) : operation.status();
    return status == ExitSuccess ? operation : Explained{status};
}

void Session::run(const QuenSourceControlOperationPtr& operation, Follow follow) {
    const InterruptWatch::Action action([&] { operation->cancel(); });
    std::cout.flush();
    std::cerr.flush();
    if (follow == Follow::progress) {
        report_ = ClientReport();
        // A client that has the terminal may be asking there.
        if (!options_.asksOnTerminal && canShowProgress()) {
            progress_.emplace();
        }
    }
    operation->run();
    progress_.reset();
}

bool Session::wasStopped(const QuenSourceControlOperation& operation) const {
    // A client that came to its end all the same has done its work. An operation that runs several
    // has left some out.
    const bool runsOneClient =
        dynamic_cast<const QuenSourceControlTaskOperation*>(&operation) != nullptr;
    return InterruptWatch::wasInterrupted() && (operation.error() || !runsOneClient);
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

Explained Session::fail(const std::string& text, int status) const {
    tell(text);
    return {status};
}

void printJson(const Value& result) {
    std::cout << jsonText(result) << '\n';
}

} // namespace quen::tools
