#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>
#include <optional>

namespace quen {

/// The base of every operation that runs the `svn` command-line client once. It knows where the
/// client lives, makes file names safe for it, starts every argument list, and turns the client's
/// words and complaints into the host's values and errors.
///
/// A concrete class answers its argument list from `makeCommand`; a query also overrides
/// `parseOutput`, or what SVNQueryOperation asks of it.
///
/// Without a request (never initialised, or with a null one) every member answers nothing.
class SVNOperation : public QuenSourceControlTaskOperation {
public:
    /// Sets the launch path, makes the request's file names safe, and sets `arguments` to the
    /// default arguments followed by the command's own.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Recognises the typical complaints of the client and of the secure shell, drops harmless
    /// chatter, and leaves the rest to the host.
    Error errorFromErrorMessage(const String& message) override;

    /// Closes each of the request's names that holds an `@` in its last component with another, so
    /// that the client does not take what follows for a peg revision. The request itself changes;
    /// an absent list becomes an empty one, and a nil name goes.
    virtual void sanitizeFilenames();

    /// What every command line begins with: `--username` and the user's name, where there is one.
    StringArray defaultArguments() const;

    /// The value of a word of the client's status report; 0 for a word that is unknown, which is
    /// logged, and for nil, which is a programming error.
    std::uint32_t propertyStatusValueForWorkingCopyStringValue(const String& string) const;
    std::uint32_t statusValueForWorkingCopyStringValue(const String& string, bool isCopied) const;
    std::uint32_t statusValueForRepositoryStringValue(const String& string) const;

    /// Hands the output to `parseOutput`.
    void parseData() final;

protected:
    /// The arguments of one command: its word, its flags, its locations. Absent where no command
    /// line may be set.
    using Command = std::optional<StringArray>;

    /// The last step of `initWithRequest`: the command for the request, whose file names are safe
    /// by now. May set `error`; whether a command is answered all the same is the class's own
    /// matter. The base class answers none.
    virtual Command makeCommand(const QuenSourceControlRequest& request);

    /// Turns `data` into `result` or `error`. The base class leaves that to the host.
    virtual void parseOutput(const QuenSourceControlRequest& request);
};

/// The repository behind a source tree: the tree itself, or a working tree's repository; null for
/// any other tree and for none.
QuenSourceControlRepositoryPtr repositoryOf(const QuenSourceControlSourceTreePtr& tree);

/// Puts the request's files at the end of a command.
void appendFiles(StringArray& command, const QuenSourceControlRequest& request);

/// The first of the request's files; nil where there is none.
String firstFileOf(const QuenSourceControlRequest& request);

} // namespace quen
