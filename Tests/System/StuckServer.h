#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Tests/System/Sandbox.h"

#include <string>
#include <string_view>

namespace quen::test {

/// A server of the sandbox's repository that the client starts and talks to, as it does over secure
/// shell. From `stick` on it never answers, so that a run is as long as a test needs it.
class StuckServer {
public:
    explicit StuckServer(const Sandbox& sandbox);

    std::string url(std::string_view path) const;

    /// What is started from now on does not answer.
    void stick();
    /// Waits, with a bound, until a client has started a server that does not answer.
    bool waitForClient() const;
    /// Waits, with a bound, until every such server is gone.
    bool waitForEndOfAll() const;

private:
    const Sandbox& sandbox_;
    FileDescriptor pipe_;
};

} // namespace quen::test
