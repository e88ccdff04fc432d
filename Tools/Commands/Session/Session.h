#pragma once

#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tools/Commands/Changes/ClientReport.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Terminal/Progress.h"
#include "Tools/Terminal/Style.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quen::tools {

/// Options that every sub-command for people has.
struct CommonOptions {
    bool json = false;
    bool asksOnTerminal = false;
    std::string colour = "auto";
    std::string user;
    std::string plugIn;

    void addTo(CLI::App& command);
    Palette palette() const { return Palette::named(colour); }
};

/// The option that decides on colours.
void addColourOption(CLI::App& command, std::string& colour);

/// What is done with the client's standard output while it arrives.
enum class Follow {
    nothing,
    /// Read for `Session::report`, and shown as progress on a terminal if it takes long.
    progress,
};

/// A provider at work for a person at a terminal: the plug-in loaded, a run context set up, and
/// errors told in the words of a command line. It lives on one thread, whose current context is its
/// own meanwhile.
class Session {
public:
    /// Null when there is no provider to be had; the reason has then been told on standard error.
    static std::unique_ptr<Session> open(const CommonOptions& options, std::string command);

    /// Makes the operation for a request and runs it. Null when the provider refuses the request or
    /// has no operation for it; the reason has then been told.
    ///
    /// An interrupt meanwhile ends the client with everything that it started, and the operation.
    QuenSourceControlOperationPtr perform(const QuenSourceControlRequestPtr& request,
                                          Follow follow = Follow::nothing);

    /// What the client has said in the last run that was followed.
    const ClientReport& report() const { return report_; }

    /// Whether an interrupt kept the operation, the last one performed, from doing all its work.
    bool wasStopped(const QuenSourceControlOperation& operation) const;

    /// The exit status of a command that cannot go on, for a reason that has been told.
    int failureStatus() const { return wasInterrupted_ ? ExitInterrupted : ExitFailure; }

    /// Tells the operation's error, if it has one, or that it was interrupted; the exit status that
    /// follows.
    int finish(const QuenSourceControlOperation& operation) const;

    /// A line on standard error under the command's name.
    void tell(const std::string& text) const;
    void tell(const Error& error) const;

private:
    Session(QuenSourceControlProtocolPtr provider, std::string command, bool lendsTerminal);

    RunContext contextFor(Follow follow);
    void run(const QuenSourceControlOperationPtr& operation, Follow follow);

    QuenSourceControlProtocolPtr provider_;
    std::string command_;
    const bool lendsTerminal_;
    const RunContext::Scope scope_;
    bool wasInterrupted_ = false;
    ClientReport report_;
    std::optional<Progress> progress_;
};

/// The result as the operation gives it, on one line.
void printJson(const Value& result);

} // namespace quen::tools
