#pragma once

#include "Foundation/Value.h"
#include "Host/DirectoryLock.h"
#include "Host/ToolRunner.h"

#include <mutex>
#include <utility>

namespace quen {

/// Hands the runs of an ignore or unignore operation on to another runner, and does what the
/// operation leaves out.
///
/// The operation drops entries without a letter or digit, `*` for one, whenever it writes a list.
/// Here they stay: what the list held, and the operation was not asked to take out, is put back
/// behind what it writes.
///
/// From a directory's query until the next one no other process that edits in this way comes
/// between: the lists are written whole, and the last one to write would win.
///
/// The operation looks only at how its queries end; `error` tells of the edits that follow from
/// them. And it gives a list of ignored names to the client as an argument: one that begins with
/// `-` would be taken for an option, so that a list that came with the working copy,
/// `-F/home/me/secret` behind a name that is taken out, would make the secret the directory's
/// property. Such a run is not started.
///
/// Threads: any.
class IgnoreEditRunner : public ToolRunner {
public:
    explicit IgnoreEditRunner(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

    /// Of the first edit that failed; nil where none did.
    Error error() const;

private:
    /// The list that an edit is about to replace, and the name that it is about.
    struct Edited {
        String directory;
        String name;
        StringArray list;
        DirectoryLock lock;
    };

    ToolRun runQuery(const ToolInvocation& invocation, const std::stop_token& stop);
    StringArray withKeptEntries(const StringArray& arguments) const;
    ToolRun runGuarded(const ToolInvocation& invocation, const std::stop_token& stop);

    ToolRunnerPtr runner_;
    mutable std::mutex mutex_;
    Edited edited_;
    Error error_;
};

} // namespace quen
