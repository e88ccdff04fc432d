#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Host/Process/Process.h"

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

/// Any program, with nothing set beyond its arguments.
ProcessInvocation program(String path, std::vector<String> arguments = {});

/// Runs the child of faults in a mode of its own; see FaultChild.cpp. The limit is for tests that
/// would hang.
ProcessInvocation faultChild(String mode, const std::vector<String>& arguments = {});

/// Runs it with a stop token that nobody uses.
ProcessOutcome run(const ProcessInvocation& invocation);

/// The whole outcome in one comparable line: `exited 0`, `cancelled by signal 15`, `could not
/// start: No such file or directory`.
std::string described(const ProcessOutcome& outcome);

std::string_view outputOf(const ProcessOutcome& outcome);
std::string_view errorsOf(const ProcessOutcome& outcome);

/// `size` bytes of what FaultChild calls the pattern.
bool isPattern(std::string_view bytes, std::size_t size);

/// The numbers of this process's open descriptors.
std::vector<int> openDescriptors();

/// A process that is not a child of this one, by the number that was said on a stream.
class Grandchild {
public:
    Grandchild() = default;
    explicit Grandchild(std::string_view said);

    pid_t pid() const { return pid_; }
    /// And stays so: a signal on its way would have arrived.
    bool isAlive() const { return descriptor_.isOpen() && !endsWithin(100); }
    bool endsSoon() const { return descriptor_.isOpen() && endsWithin(10'000); }
    void kill() const;

private:
    bool endsWithin(int milliseconds) const;

    pid_t pid_ = -1;
    FileDescriptor descriptor_;
};

/// Runs `body` in a forked copy of this process, where it may spoil what a process has only one of.
/// `body` answers what went wrong; so does this. The empty text is success.
std::string inForkedHost(const std::function<std::string()>& body);

/// No run may leave a descriptor or a child behind.
class ProcessTest : public testing::Test {
protected:
    void SetUp() override { descriptors_ = openDescriptors(); }
    void TearDown() override;

private:
    std::vector<int> descriptors_;
};

} // namespace quen::test
