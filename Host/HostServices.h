#pragma once

#include "Foundation/String.h"
#include "Host/ToolRunner.h"
#include "MarlFoundation/MarlAssertionFailureHandler.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace quen {

/// What the host does for whoever runs inside it, each service with a default that suits a program
/// and a way to replace it for an embedding application or a test. One object for the process,
/// because the contract's functions have no other to turn to.
///
/// A replacement counts for what begins after it. It must be safe to call from any thread, and must
/// not throw.
///
/// Threads: any.
class HostServices {
public:
    using AssertionHandler = std::function<void(const MarlAssertionFailure& failure)>;
    using LogHandler = std::function<void(std::uint32_t level, const String& text)>;

    static HostServices& shared();

    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

    /// Where failed assertions go. Default: a line on standard error.
    void setAssertionHandler(AssertionHandler handler);
    AssertionHandler assertionHandler() const;

    /// Where log messages go that the level admits. Default: a line on standard error.
    void setLogHandler(LogHandler handler);
    LogHandler logHandler() const;

    /// The directory that holds the client. Default: that of the first `svn` on PATH, looked up
    /// each time; `/usr/bin` where there is none, so that an error can name a place. nil brings
    /// the default back.
    void setToolsDirectory(String directory);
    String toolsDirectory() const;

    /// Where directories for temporary files are made. Default: TMPDIR, or `/tmp`. nil brings the
    /// default back.
    void setTemporaryDirectory(String directory);
    String temporaryDirectory() const;

    /// What runs the client. Default: a ClientRunner. Null brings the default back.
    void setToolRunner(ToolRunnerPtr runner);
    ToolRunnerPtr toolRunner() const;

private:
    HostServices();

    mutable std::mutex mutex_;
    AssertionHandler assertionHandler_;
    LogHandler logHandler_;
    String toolsDirectory_;
    String temporaryDirectory_;
    ToolRunnerPtr toolRunner_;
};

/// The text that a failure's format and arguments make.
String messageOf(const MarlAssertionFailure& failure);

} // namespace quen
