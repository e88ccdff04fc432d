#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Host/RunContext.h"
#include "Tests/Host/ScratchDirectory.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

/// Stands in for the client in the process's default context while it lives: a directory of tools
/// in which `svn` is the child of faults (see FaultChild.cpp), and a fresh place for temporary
/// files. Puts everything back.
class FaultyClient {
public:
    FaultyClient();
    FaultyClient(const FaultyClient&) = delete;
    FaultyClient& operator=(const FaultyClient&) = delete;
    ~FaultyClient();

    /// What it does from now on: lines as FaultChild takes them.
    void misbehave(std::string_view lines) const;
    /// What a mode that replays says: `.output`, `.status.errors`.
    void prepare(const std::string& ending, std::string_view text) const;

    /// Other things than a child of faults that may lie in the client's place.
    void takeAway() const;
    void takeRightToRun() const;
    void replaceByDirectory() const;
    void replaceByText() const;
    void replaceByDeadLink() const;
    void putBack() const;

    /// Waits until as many children have told that they reached their state. False when a bound of
    /// time passes first.
    bool waitUntilTold(std::size_t children);

    /// The path that operations launch.
    String path() const { return tools_.pathOf("svn"); }
    bool hasTemporaryFiles() const { return !temporary_.isEmpty(); }
    /// What still runs of all that was started from here, by the system's numbers.
    std::vector<pid_t> leftProcesses() const;
    /// Whether all of that ends by itself: what was killed may not be gone at once.
    bool leavesNoProcess() const;
    /// Ends it, and waits until it is gone.
    void endLeftProcesses() const;

private:
    const RunContext former_ = RunContext::processDefault();
    ScratchDirectory tools_;
    ScratchDirectory temporary_;
    FileDescriptor told_;
    std::string heard_;
};

} // namespace quen::test
