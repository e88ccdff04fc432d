#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "Host/Keeping/ConflictOutcome.h"
#include "Tools/Server/Methods/Services.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::tools::server {

/// `[{path, action}]` of what the client did. Its relative paths begin in `directory`.
OrderedJson itemsJson(const ChangeFacts& facts, const std::string& directory);
/// `[{path, kind}]` of the conflicts that wait for a person; `kind` is `text`, `property` or
/// `tree`.
OrderedJson conflictsJson(const std::vector<ConflictOutcome>& outcomes);
/// `[{path, kind, theirs}]` of those that the client settled; `theirs` is the file that holds the
/// text that came in, null where there is none.
OrderedJson settledJson(const std::vector<ConflictOutcome>& outcomes);

/// A change of a working copy as a method makes it.
struct WorkingCopyChange {
    /// What it says to be doing.
    std::string title;
    std::string root;
    /// What is touched; nothing stands for everything.
    std::vector<std::string> touched;
    ChangeColumns columns = ChangeColumns::transfer;
    /// The client runs in the server's own empty directory, so that no word is taken for a file.
    bool runsAside = false;
    /// Called with what the client told, before the working copy is looked at again.
    std::function<void(const ChangeFacts& facts)> afterRun = {};
};

/// A log message as the client takes it for one: the path of something that is there would be
/// refused, with a line feed at its end it is not.
String messageFor(const Services& services, const std::string& message);

/// The client's path of an item as an absolute one.
std::string absolutePath(const String& path, const std::string& directory);

/// Makes the change and brings what is kept of the working copy up to date. Live progress goes to
/// the call, and what the client tells of its work to `facts`.
Ran runChange(const Services& services, Call& call, const WorkingCopyChange& change,
              ChangeFacts& facts, const std::function<Ran(const RunOptions&)>& run);

} // namespace quen::tools::server
