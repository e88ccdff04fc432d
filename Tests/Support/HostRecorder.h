#pragma once

#include "Host/RunContext.h"
#include "Tests/Support/Printers.h"
#include "Tests/Support/ReplayRunner.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace quen::test {

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

/// A run context in a test's hands, the thread's current one while it lives: keeps assertions and
/// log lines in order, replays prepared runs instead of starting a client, and answers a tools
/// directory that holds nothing.
///
/// Threads: lives on one; what it records may come from any.
class HostRecorder {
public:
    static constexpr std::string_view toolsDirectory = "/tools";

    explicit HostRecorder(std::uint32_t logLevel = 0);
    HostRecorder(const HostRecorder&) = delete;
    HostRecorder& operator=(const HostRecorder&) = delete;

    const RunContext& context() const noexcept { return context_; }
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
    RunContext recordingContext(std::uint32_t logLevel);

    mutable std::mutex mutex_;
    std::vector<MarlAssertionFailure> assertions_;
    std::vector<LogLine> log_;
    const std::shared_ptr<ReplayRunner> runner_ = std::make_shared<ReplayRunner>();
    const RunContext context_;
    const RunContext::Scope scope_;
};

} // namespace quen::test
