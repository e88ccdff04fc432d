#pragma once

#include "Host/HostServices.h"
#include "Tests/Support/Printers.h"
#include "Tests/Support/ReplayRunner.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace quen {

/// An assertion as tests compare it: all but the receiver and the line.
struct AssertionFacts {
    String method;
    String file;
    String format;
    std::vector<String> arguments;

    /// The three forms that most assertions have. `expression` is in parentheses, as in `(string)`.
    static AssertionFacts plain(const String& method, const String& file, const String& condition);
    static AssertionFacts notNil(const String& method, const String& file,
                                 std::string_view expression);
    static AssertionFacts unreachable(const String& method, const String& file);

    friend bool operator==(const AssertionFacts& a, const AssertionFacts& b) = default;
    friend void PrintTo(const AssertionFacts& facts, std::ostream* out);
};

struct LogLine {
    std::uint32_t level = 0;
    String text;

    friend bool operator==(const LogLine& a, const LogLine& b) = default;
    friend void PrintTo(const LogLine& line, std::ostream* out);
};

/// The host's services in a test's hands while it lives: keeps assertions and log lines in order,
/// replays prepared runs instead of starting a client, and answers a tools directory that holds
/// nothing. Puts everything back. One at a time.
///
/// Threads: what it records may come from any thread.
class HostRecorder {
public:
    static constexpr std::string_view toolsDirectory = "/tools";

    explicit HostRecorder(std::uint32_t logLevel = 0);
    HostRecorder(const HostRecorder&) = delete;
    HostRecorder& operator=(const HostRecorder&) = delete;
    ~HostRecorder();

    void setLogLevel(std::uint32_t level);
    /// What the next runs give. Forgets the runs so far.
    void replay(std::vector<PreparedRun> runs);
    /// What the runner was asked for since `replay`.
    std::vector<ToolInvocation> invocations() const;

    std::vector<MarlAssertionFailure> assertions() const;
    std::vector<AssertionFacts> assertionFacts() const;
    std::vector<LogLine> log() const;
    /// Forgets assertions and log lines.
    void clear();

private:
    mutable std::mutex mutex_;
    std::vector<MarlAssertionFailure> assertions_;
    std::vector<LogLine> log_;
    std::shared_ptr<ReplayRunner> runner_;

    const HostServices::AssertionHandler previousAssertionHandler_;
    const HostServices::LogHandler previousLogHandler_;
    const ToolRunnerPtr previousRunner_;
    const std::uint32_t previousLogLevel_;
};

} // namespace quen
