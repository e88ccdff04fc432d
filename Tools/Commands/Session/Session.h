#pragma once

#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tools/Commands/Changes/ChangeOutput.h"
#include "Tools/Commands/CommandLine/Outcome.h"
#include "Tools/Commands/CommandLine/Subcommand.h"
#include "Tools/Terminal/ExitStatus.h"
#include "Tools/Terminal/Progress.h"
#include "Tools/Terminal/Style.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quen {
class StreamingRunner;
} // namespace quen

namespace quen::tools {

/// Options that every sub-command for people has.
struct CommonOptions {
    bool json = false;
    /// Nothing is changed; what would be run is printed.
    bool dryRun = false;
    bool asks = false;
    bool asksNever = false;
    bool readsPassword = false;
    bool keepsPassword = false;
    std::string colour = "auto";
    std::string user;
    std::string plugIn;

    void addTo(Subcommand& command);
    Palette palette() const { return Palette::named(colour); }
};

/// The option that decides on colours.
void addColourOption(Subcommand& command, std::string& colour);

/// What is done with the client's standard output while it arrives.
enum class Follow {
    nothing,
    /// Read for `Session::output`, and shown as progress on a terminal if it takes long.
    progress,
};

/// A provider at work for a person at a terminal: the plug-in loaded, a run context set up, and
/// errors told in the words of a command line. It lives on one thread, whose current context is its
/// own meanwhile.
class Session {
public:
    /// `options` must live as long as the session. Explained when the provider cannot be loaded.
    static Outcome<std::unique_ptr<Session>> open(const CommonOptions& options,
                                                  std::string command);

    const CommonOptions& options() const { return options_; }

    /// Makes the operation for a request and runs it; how it ended is in its error, and for
    /// `finish` to tell. Explained when the provider refuses the request or has no operation for
    /// it.
    ///
    /// An interrupt meanwhile ends the client with everything that it started, and the operation.
    Outcome<QuenSourceControlOperationPtr> perform(const QuenSourceControlRequestPtr& request,
                                                   Follow follow = Follow::nothing);

    /// Likewise, for a command that cannot go on unless the operation succeeds: explained as well
    /// when it ends with an error or is interrupted.
    Outcome<QuenSourceControlOperationPtr> query(const QuenSourceControlRequestPtr& request,
                                                 Follow follow = Follow::nothing);

    /// Runs the client for a change that no request of the provider can ask for: `svn WORDS..
    /// PATHS..`, paths absolute or URLs. Followed; how it ended is in its error. `type` is the
    /// request type that it is most like.
    QuenSourceControlOperationPtr performCommand(const std::vector<std::string>& words,
                                                 const std::vector<std::string>& paths,
                                                 RequestType type);

    using Taker = std::function<bool(std::string_view piece)>;

    /// Likewise, for what is shown while the client writes it: its output goes to `take`, piece by
    /// piece, and is not kept. The operation reads `standIn` in its place, and has no records.
    /// `take` answers whether more is wanted; a client that is ended for want of that has done
    /// well. The exit status; what went wrong is told, unless `isQuiet`.
    int stream(const QuenSourceControlRequestPtr& request, const std::string& standIn,
               const Taker& take, bool isQuiet = false);
    /// Likewise, for what no request of the provider can ask: `svn WORDS.. PATHS..`, which only
    /// reads. Paths are absolute, or URLs.
    int streamClient(const std::vector<std::string>& words, const std::vector<std::string>& paths,
                     const Taker& take);

    /// How the client compares files in all operations that are made from now on: the words that
    /// stand behind its `diff`, `--internal-diff` or `--diff-cmd PROGRAM`.
    void compareWith(std::vector<std::string> words) { comparison_ = std::move(words); }

    /// What the client has said in the last run that was followed.
    const ChangeOutput& output() const { return output_; }

    /// Whether an interrupt kept the operation, the last one performed, from doing all its work.
    bool wasStopped(const QuenSourceControlOperation& operation) const;

    /// Tells the operation's error, if it has one, or that it was interrupted; the exit status that
    /// follows.
    int finish(const QuenSourceControlOperation& operation) const;

    /// A line on standard error under the command's name. What comes from outside need not be made
    /// safe before.
    void tell(const std::string& text) const;
    /// Its reason, and what to do. `request` is the one that failed, where there was one.
    void tell(const Error& error, const QuenSourceControlRequest* request = nullptr) const;

    /// Tells a text as the reason that a command cannot go on.
    Explained fail(const std::string& text, int status = ExitFailure) const;

private:
    Session(const CommonOptions& options, QuenSourceControlProtocolPtr provider,
            std::string command);

    CredentialsPtr credentials();
    RunContext contextFor(Follow follow);
    int streamed(const StreamingRunner& runner, const QuenSourceControlOperationPtr& operation,
                 bool isQuiet);
    Outcome<QuenSourceControlOperationPtr> makeOperation(const QuenSourceControlRequestPtr& request,
                                                         const RunContext& context);
    void run(const QuenSourceControlOperationPtr& operation, Follow follow);

    const CommonOptions& options_;
    QuenSourceControlProtocolPtr provider_;
    std::string command_;
    const RunContext::Scope scope_;
    std::vector<std::string> comparison_;
    ChangeOutput output_;
    std::optional<Progress> progress_;
};

/// Makes a sub-command open a session and do its work in it. `Options` has a member `common`.
template <typename Options> void runInSession(Subcommand command,
                                              const std::shared_ptr<Options>& options,
                                              std::function<int(Session&, const Options&)> run) {
    options->common.addTo(command);
    command.run([options, name = command.name(), run = std::move(run)] {
        const auto session = Session::open(options->common, name);
        return session ? run(**session, *options) : session.status();
    });
}

/// The result as the operation gives it, with short names beside the long ones, on one line.
void printJson(const Value& result);

} // namespace quen::tools
