#include "Tools/Commands/Session/Session.h"

#include "Host/ClientCommand.h"
#include "Host/ClientRunner.h"
#include "Host/Credentials/Credentials.h"
#include "Host/RequestRefusal.h"
#include "Host/StreamingRunner.h"
#include "Tools/Commands/Session/DryRunner.h"
#include "Tools/Commands/Session/ErrorAdvice.h"
#include "Tools/Commands/Session/ErrorReport.h"
#include "Tools/Commands/Session/ShortNames.h"
#include "Tools/Commands/Session/TerminalCredentials.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Provider/Provider.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Question.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace quen::tools {

namespace {

ToolRunnerPtr runnerFor(const CommonOptions& options) {
    ToolRunnerPtr client =
        std::make_shared<ClientRunner>(ClientRunner::Options{.endsWithHost = true});
    return options.dryRun ? std::make_shared<DryRunner>(std::move(client)) : std::move(client);
}

/// By default a person is asked who sees the question and whose keys reach nothing else.
bool mayAsk(const CommonOptions& options) {
    return !options.asksNever && (options.asks || canAsk());
}

} // namespace

void addColourOption(Subcommand& command, std::string& colour) {
    command.option("--color", colour, "When to use colors")
        .oneOf({"auto", "always", "never"})
        .general();
}

void CommonOptions::addTo(Subcommand& command) {
    const Parameter records = command.flag("--json", json, "Print JSON for scripts").general();
    if (changesSomething(command.name())) {
        command
            .flag("--dry-run", dryRun,
                  "Change nothing; show what would be done, and the svn commands for it")
            .excludes(records);
    }
    addColourOption(command, colour);
    command.option("--username", user, "User name for the repository").general();
    Parameter ask =
        command.flag("--ask", asks,
                     "Ask on the terminal for passwords and server decisions, even if input or "
                     "output is redirected");
    command.flag("--no-ask", asksNever, "Never ask; fail if a server wants an answer")
        .excludes(ask)
        .general();
    ask.general();
    command.flag("--password-from-stdin", readsPassword, "Read the password from standard input")
        .general();
    command
        .flag("--keep-password", keepsPassword, "Store an accepted password in the keyring of svn")
        .general();
    command.option("--plug-in", plugIn, "Plug-in module to load").general();
}

Session::Session(const CommonOptions& options, QuenSourceControlProtocolPtr provider,
                 std::string command)
    : options_(options), provider_(std::move(provider)), command_(std::move(command)),
      scope_(
          RunContext::current().withToolRunner(runnerFor(options)).withCredentials(credentials())) {
}

CredentialsPtr Session::credentials() {
    const SignInOptions signIn{mayAsk(options_), options_.readsPassword, options_.keepsPassword};
    const auto credentials =
        Credentials::make(std::make_shared<TerminalCredentials>(signIn, [this](bool isPaused) {
            if (progress_) {
                isPaused ? progress_->pause() : progress_->resume();
            }
        }));
    return signIn.asks || signIn.readsPassword ? credentials : credentials->forBackground();
}

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
    auto operation = makeOperation(request, contextFor(follow));
    if (operation && !(*operation)->error()) {
        run(*operation, follow);
    }
    return operation;
}

QuenSourceControlOperationPtr Session::performCommand(const std::vector<std::string>& words,
                                                      const std::vector<std::string>& paths,
                                                      RequestType type) {
    const RunContext::Scope scope(contextFor(Follow::progress));
    auto command = ClientCommand::make(words, paths, type);
    run(command, Follow::progress);
    return command;
}

namespace {

std::shared_ptr<StreamingRunner> runnerFor(const RunContext& context, const std::string& standIn,
                                           const Session::Taker& take) {
    return std::make_shared<StreamingRunner>(context, ClientRunner::Options{.endsWithHost = true},
                                             take, standIn);
}

} // namespace

int Session::streamed(const StreamingRunner& runner, const QuenSourceControlOperationPtr& operation,
                      bool isQuiet) {
    if (!operation->error()) {
        run(operation, Follow::nothing);
    }
    if (runner.hadEnough()) {
        return ExitSuccess;
    }
    return isQuiet && operation->error() ? static_cast<int>(ExitFailure) : finish(*operation);
}

int Session::stream(const QuenSourceControlRequestPtr& request, const std::string& standIn,
                    const Taker& take, bool isQuiet) {
    const RunContext context = RunContext::current();
    const auto runner = runnerFor(context, standIn, take);
    const auto operation = makeOperation(request, runner->contextFor(context));
    return operation ? streamed(*runner, *operation, isQuiet) : operation.status();
}

int Session::streamClient(const std::vector<std::string>& words,
                          const std::vector<std::string>& paths, const Taker& take) {
    const RunContext context = RunContext::current();
    const auto runner = runnerFor(context, "", take);
    const RunContext::Scope scope(runner->contextFor(context));
    return streamed(*runner, ClientCommand::make(words, paths), false);
}

namespace {

/// The provider's requests leave it to the client's settings how files are compared.
void addComparison(QuenSourceControlOperation& operation, const std::vector<std::string>& words) {
    auto* const task = dynamic_cast<QuenSourceControlTaskOperation*>(&operation);
    if (words.empty() || task == nullptr || !task->arguments()) {
        return;
    }
    StringArray arguments = *task->arguments();
    const auto command = std::find(arguments.begin(), arguments.end(), "diff");
    if (command != arguments.end()) {
        arguments.insert(command + 1, words.begin(), words.end());
        task->setArguments(std::move(arguments));
    }
}

} // namespace

Outcome<QuenSourceControlOperationPtr>
Session::makeOperation(const QuenSourceControlRequestPtr& request, const RunContext& context) {
    if (InterruptWatch::wasInterrupted()) {
        return fail("Interrupted.", ExitInterrupted);
    }
    Error refusal = refusalOfRequest(*request);
    if (refusal || !provider_->validateRequest(request, &refusal)) {
        tell(refusal, request.get());
        return Explained{ExitFailure};
    }
    const RunContext::Scope scope(context);
    auto operation = provider_->operationForRequest(request);
    if (operation == nullptr) {
        return fail("The plug-in has no operation for this request.");
    }
    addComparison(*operation, comparison_);
    return operation;
}

RunContext Session::contextFor(Follow follow) {
    if (follow == Follow::nothing) {
        return RunContext::current();
    }
    // Who set a watcher of its own goes on seeing the bytes.
    return RunContext::current().withOutputWatcher(
        [this, outer = RunContext::current().outputWatcher()](
            const QuenSourceControlOperation& operation, std::string_view piece) {
            if (outer) {
                outer(operation, piece);
            }
            output_.take(piece);
            if (progress_) {
                progress_->show(output_.lastLine(), output_.items());
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
        output_ = ChangeOutput();
        if (canShowProgress()) {
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
    tell(operation.error(), operation.request().get());
    return ExitFailure;
}

void Session::tell(const std::string& text) const {
    std::cerr << "quen " << command_ << ": " << printableLine(text) << '\n';
}

void Session::tell(const Error& error, const QuenSourceControlRequest* request) const {
    std::string advice;
    for (const std::string& line : linesForPerson(error, request, advice)) {
        tell(line);
    }
    ErrorReport::note(error, printableLine(advice));
}

Explained Session::fail(const std::string& text, int status) const {
    tell(text);
    return {status};
}

void printJson(const Value& result) {
    std::cout << jsonText(withShortNames(result)) << '\n';
}

} // namespace quen::tools
