#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>

namespace quen {

/// The base of every operation that runs the `svn` command-line client once. It knows where the
/// client lives, makes file names safe for it, starts every argument list, and turns the client's
/// words and complaints into the host's values and errors.
///
/// A concrete class builds its argument list in `initWithRequest`, after its base's, and hands it
/// to `setCommand`; a query also overrides `parseData`.
class SVNOperation : public QuenSourceControlTaskOperation {
public:
    /// Sets the launch path and makes the request's file names safe. `arguments` stays unset.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Recognises the typical complaints of the client and of the secure shell, drops harmless
    /// chatter, and leaves the rest to the host.
    Error errorFromErrorMessage(const String& message) override;

    /// Closes each of the request's names that holds an `@` in its last component with another, so
    /// that the client does not take what follows for a peg revision. The request itself changes;
    /// an absent list becomes an empty one, and a nil name goes.
    void sanitizeFilenames();

    /// What every command line begins with: `--username` and the user's name, where there is one.
    StringArray defaultArguments() const;

    /// The value of a word of the client's status report; 0 for a word that is unknown, which is
    /// logged, and for nil, which is a programming error.
    std::uint32_t propertyStatusValueForWorkingCopyStringValue(const String& string) const;
    std::uint32_t statusValueForWorkingCopyStringValue(const String& string, bool isCopied) const;
    std::uint32_t statusValueForRepositoryStringValue(const String& string) const;

protected:
    /// Sets `arguments` to the default arguments followed by the command's own.
    void setCommand(StringArray command);
};

/// The repository behind a source tree: the tree itself, or a working tree's repository; null for
/// any other tree and for none.
QuenSourceControlRepositoryPtr repositoryOf(const QuenSourceControlSourceTreePtr& tree);

/// Puts the request's files at the end of a command.
void appendFiles(StringArray& command, const QuenSourceControlRequest& request);

/// The first of the request's files; nil where there is none.
String firstFileOf(const QuenSourceControlRequest& request);

} // namespace quen
