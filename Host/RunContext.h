#pragma once

#include "Foundation/Ambient.h"
#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Host/Credentials/Credentials.h"
#include "Host/RunSettings.h"
#include "Host/ToolRunner.h"
#include "MarlFoundation/MarlAssertionFailureHandler.h"
#include "MarlFoundation/MarlLogAspect.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace quen {

class QuenSourceControlOperation;

/// All that an operation and the run of its client need of the host. A value: immutable, cheap to
/// copy, and changed by making another one from it:
///
///     const RunContext::Scope scope(RunContext::current().withWorkingDirectory("/home/me/wc"));
///     auto operation = provider->operationForRequest(request);
///
/// A process has a default context, and a thread a current one while a Scope lives there. An
/// operation keeps the context that was current when it was made and runs in it; one that was made
/// while none was current takes that of whoever adds it to a queue or runs it. The contract's
/// static functions answer from the current context.
///
/// Two contexts share nothing but what was put into both. What is put in must be safe to call from
/// any thread, and must not throw.
///
/// Threads: any.
class QUEN_EXPORT RunContext {
public:
    using AssertionHandler = std::function<void(const MarlAssertionFailure& failure)>;
    using LogHandler = std::function<void(std::uint32_t level, const String& text)>;
    using OutputWatcher =
        std::function<void(const QuenSourceControlOperation& operation, std::string_view piece)>;

    /// With the default of everything.
    RunContext();

    /// That of the innermost Scope on this thread, or the process default.
    static RunContext current();
    static RunContext processDefault();
    /// Counts wherever no Scope lives: also for operations that were made before under the former
    /// default and have not begun.
    static void setProcessDefault(RunContext context);

    /// What runs the client. Default: a ClientRunner. Null brings the default back. Where there are
    /// credentials, it signs in with them around each run by that runner.
    const ToolRunnerPtr& toolRunner() const noexcept;
    RunContext withToolRunner(ToolRunnerPtr runner) const;

    /// Who signs in where a server asks for it. Default: null, and nobody does.
    const CredentialsPtr& credentials() const noexcept;
    RunContext withCredentials(CredentialsPtr credentials) const;

    /// Where log messages go that the level admits. Default: a line on standard error. Empty brings
    /// the default back.
    const LogHandler& logHandler() const noexcept;
    RunContext withLogHandler(LogHandler handler) const;

    /// What is logged to. It emits through the log handler of the context that is current where
    /// something is logged. Its level, 0 by default, may be set at any time, and counts for all
    /// contexts that share it: those made from one another with anything but `withLogLevel`, which
    /// makes an aspect of its own. Never null.
    const std::shared_ptr<MarlLogAspect>& logAspect() const noexcept;
    RunContext withLogLevel(std::uint32_t level) const;

    /// Where failed assertions go. Default: a line on standard error. Empty brings the default
    /// back.
    const AssertionHandler& assertionHandler() const noexcept;
    RunContext withAssertionHandler(AssertionHandler handler) const;

    /// The directory that holds the client. Default: that of the first `svn` on PATH, looked up
    /// each time; `/usr/bin` where there is none, so that an error can name a place. nil brings the
    /// default back.
    String toolsDirectory() const;
    RunContext withToolsDirectory(String directory) const;

    /// Where directories for temporary files are made. Default: TMPDIR, or `/tmp`. nil brings the
    /// default back.
    String temporaryDirectory() const;
    RunContext withTemporaryDirectory(String directory) const;

    /// Changes to the process's own environment for the client. Default: none. PATH and TMPDIR in
    /// here count for the two directories above too. A ClientRunner sets the locale over it.
    const EnvironmentChanges& environment() const noexcept;
    RunContext withEnvironment(EnvironmentChanges changes) const;

    /// Where the client runs, and relative paths in requests begin. Default: nil, which is the
    /// process's own working directory when the client starts.
    const String& workingDirectory() const noexcept;
    RunContext withWorkingDirectory(String directory) const;

    /// How long a run of the client may take. Default: any time.
    const RunLimits& limits() const noexcept;
    RunContext withLimits(RunLimits limits) const;

    /// Called with every piece of a client's standard output as it arrives, in order, on the
    /// running thread, with the operation whose client it is. The run stands still meanwhile.
    /// Default: empty.
    const OutputWatcher& outputWatcher() const noexcept;
    RunContext withOutputWatcher(OutputWatcher watcher) const;

    /// Whether both are one and the same, not merely equal.
    friend bool operator==(const RunContext&, const RunContext&) = default;

    /// Makes a context the thread's current one until the scope's end. Scopes may be nested; each
    /// ends on the thread where it began.
    class Scope {
    public:
        explicit Scope(const RunContext& context) noexcept;

    private:
        AmbientScope scope_;
    };

private:
    struct State;
    explicit RunContext(std::shared_ptr<const State> state) noexcept : state_(std::move(state)) {}
    template <typename Change> RunContext with(Change change) const;
    static std::shared_ptr<const State>& defaultState();

    std::shared_ptr<const State> state_;
};

/// The text that a failure's format and arguments make.
QUEN_EXPORT String messageOf(const MarlAssertionFailure& failure);

} // namespace quen
