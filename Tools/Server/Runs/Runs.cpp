#include "Tools/Server/Runs/Runs.h"

#include "Host/IgnoreEdits.h"
#include "Host/TaskErrors.h"
#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"
#include "Tools/Console/RunRecorder.h"
#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/Runs/TellingRunner.h"

#include <utility>
#include <vector>

namespace quen::tools::server {

namespace {

/// More of what a client says to an error is of no use to anybody.
constexpr std::size_t longestText = std::size_t{256} * 1024;

std::string textsOf(const RunRecorder& recorder) {
    std::string text;
    for (const RecordedRun& recorded : recorder.runs()) {
        text += recorded.run.errors == nullptr ? std::string_view() : recorded.run.errors->bytes();
    }
    if (text.size() > longestText) {
        text.resize(longestText);
        text += "\n...\n";
    }
    return text;
}

/// The operation's error. That somebody killed the client says more than what it then failed to
/// leave, which is all that some operations look at.
Error errorOf(const QuenSourceControlOperation& operation, const RunRecorder& recorder) {
    const std::vector<RecordedRun> runs = recorder.runs();
    if (runs.empty() || !runs.back().run.signal ||
        taskFailureOf(operation.error()) != TaskFailure::other) {
        return operation.error();
    }
    const bool writes =
        operation.request() != nullptr && writesWorkingCopy(operation.request()->type());
    return errorOfRun(runs.back().invocation, runs.back().run, writes);
}

} // namespace

bool wasEndedBy(const std::stop_token& stop, const QuenSourceControlOperation& operation) {
    // An operation that runs several clients leaves some out without an error.
    const bool runsOneClient =
        dynamic_cast<const QuenSourceControlTaskOperation*>(&operation) != nullptr;
    return stop.stop_requested() && (operation.wasSkipped() || !runsOneClient ||
                                     taskFailureOf(operation.error()) == TaskFailure::cancelled);
}

Runs::Runs(QuenSourceControlProtocolPtr provider, WindowLog& log)
    : provider_(std::move(provider)), log_(log) {}

void Runs::setContext(const RunContext& context, CredentialsPtr background) {
    RunContext telling = context.withToolRunner(
        std::make_shared<TellingRunner>(context.toolRunner(), counts_, log_));
    telling = telling.withAssertionHandler([this](const MarlAssertionFailure& failure) {
        log_.say(WindowLog::warning, messageOf(failure).str());
    });
    telling = telling.withLogHandler(
        [this](std::uint32_t level, const String& text) { log_.say(level, text.str()); });
    const std::lock_guard lock(mutex_);
    context_ = telling;
    background_ = std::move(background);
}

RunContext Runs::context() const {
    const CredentialsPtr ofRequest = RunContext::current().credentials();
    const std::lock_guard lock(mutex_);
    const RunContext signingIn =
        context_.withCredentials(ofRequest != nullptr ? ofRequest : background_);
    return context_.withToolRunner(signingIn.toolRunner());
}

Runs::MakeOperation Runs::making(const QuenSourceControlRequestPtr& request, Error& refusal) const {
    return [this, request, &refusal]() -> QuenSourceControlOperationPtr {
        if (!provider_->validateRequest(request, &refusal)) {
            return nullptr;
        }
        refusal = Error();
        return provider_->operationForRequest(request);
    };
}

Ran Runs::perform(const QuenSourceControlRequestPtr& request, const RunOptions& options) {
    Error refusal;
    const Ran ran = run(making(request, refusal), options);
    return ran.operation == nullptr ? Ran{nullptr, refusal, {}} : ran;
}

Ran Runs::performEdits(const QuenSourceControlRequestPtr& request, const RunOptions& options) {
    const RunContext base = context();
    const auto edits = std::make_shared<IgnoreEditRunner>(base.toolRunner());
    Error refusal;
    Ran ran = runIn(base.withToolRunner(edits), making(request, refusal), options);
    if (ran.operation == nullptr) {
        return {nullptr, refusal, {}};
    }
    ran.error = ran.error ? ran.error : edits->error();
    return ran;
}

Ran Runs::run(const MakeOperation& make, const RunOptions& options) {
    return runIn(context(), make, options);
}

Ran Runs::query(const AskQueries& ask, const RunOptions& options) const {
    const RunContext base = context();
    const auto recorder = std::make_shared<RunRecorder>(base.toolRunner());
    const RunContext::Scope scope(base.withToolRunner(recorder));
    const Error error = ask([&](QuenSourceControlTaskOperation& query) {
        const std::stop_callback onStop(options.stop, [&] { query.cancel(); });
        query.run();
        if (wasEndedBy(options.stop, query)) {
            throw requestCancelled(false);
        }
    });
    return {nullptr, error, error ? textsOf(*recorder) : std::string()};
}

Ran Runs::runIn(const RunContext& base, const MakeOperation& make, const RunOptions& options) {
    const auto recorder = std::make_shared<RunRecorder>(base.toolRunner());
    RunContext context = base.withToolRunner(recorder);
    if (options.watcher) {
        context = context.withOutputWatcher(
            [watcher = options.watcher](const QuenSourceControlOperation&, std::string_view piece) {
                watcher(piece);
            });
    }
    if (!options.directory.empty()) {
        context = context.withWorkingDirectory(options.directory);
    }
    const RunContext::Scope scope(context);
    const QuenSourceControlOperationPtr operation = make();
    if (operation == nullptr) {
        return {};
    }
    if (!operation->error()) {
        const std::stop_callback onStop(options.stop, [&] { operation->cancel(); });
        operation->run();
    }
    if (wasEndedBy(options.stop, *operation)) {
        throw requestCancelled(mayHaveLeftLock(*operation));
    }
    return {operation, errorOf(*operation, *recorder), textsOf(*recorder)};
}

} // namespace quen::tools::server
