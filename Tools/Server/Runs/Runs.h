#pragma once

#include "Host/ClientCommand.h"
#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tools/Server/Dispatch/WindowLog.h"
#include "Tools/Server/Runs/Statistics.h"

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace quen::tools::server {

/// An operation after its run.
struct Ran {
    /// Null where the provider refused the request; `error` says why.
    QuenSourceControlOperationPtr operation;
    Error error;
    /// What the client wrote to standard error, of all runs together.
    std::string clientText;

    bool isWell() const noexcept { return !error; }
};

/// Whether an operation was ended by the stop token rather than by its own end.
bool wasEndedBy(const std::stop_token& stop, const QuenSourceControlOperation& operation);

/// How an operation is to be run.
struct RunOptions {
    std::stop_token stop = {};
    /// Takes every piece of the client's standard output as it arrives, on the running thread.
    std::function<void(std::string_view)> watcher = {};
    /// Where the client runs, which is what it names items relative to; empty for the server's own
    /// directory.
    std::string directory = {};
};

/// Runs operations for requests: each in a context of its own, which ends with the request.
///
/// Threads: any.
class Runs {
public:
    Runs(QuenSourceControlProtocolPtr provider, WindowLog& log);
    Runs(const Runs&) = delete;
    Runs& operator=(const Runs&) = delete;
    ~Runs() = default;

    /// The context that all runs start from; set once, before the first. Where the thread has no
    /// credentials in its own context, which are those of the request that it serves, `background`
    /// signs in; null for nobody.
    void setContext(const RunContext& context, CredentialsPtr background = nullptr);
    /// That context, whose runner signs in. What is put around the runner hears of one run, however
    /// often it was made again.
    RunContext context() const;

    /// Makes the provider's operation for a request and runs it. Throws requestCancelled where it
    /// was ended by `options.stop`; one that had ended before counts as it ended.
    Ran perform(const QuenSourceControlRequestPtr& request, const RunOptions& options);

    /// The same for an ignore or unignore request, whose edits count for the outcome.
    Ran performEdits(const QuenSourceControlRequestPtr& request, const RunOptions& options);

    /// The same for an operation of the host's own: `make` is called in the run's context.
    using MakeOperation = std::function<QuenSourceControlOperationPtr()>;
    Ran run(const MakeOperation& make, const RunOptions& options);

    /// Has the host's own queries run that plans are made from, likewise. `ask` answers the error
    /// of them all; `options.watcher` and `options.directory` do not count.
    using AskQueries = std::function<Error(const QueryRunner& run)>;
    Ran query(const AskQueries& ask, const RunOptions& options) const;

    const QuenSourceControlProtocolPtr& provider() const noexcept { return provider_; }
    ClientRuns& counts() noexcept { return counts_; }

private:
    Ran runIn(const RunContext& base, const MakeOperation& make, const RunOptions& options);
    MakeOperation making(const QuenSourceControlRequestPtr& request, Error& refusal) const;

    QuenSourceControlProtocolPtr provider_;
    WindowLog& log_;
    ClientRuns counts_;
    mutable std::mutex mutex_;
    RunContext context_;
    CredentialsPtr background_;
};

} // namespace quen::tools::server
