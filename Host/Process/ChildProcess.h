#pragma once

#include "Host/Process/FileDescriptor.h"

#include <optional>
#include <sys/types.h>

namespace quen {

/// A descriptor for a process, readable once it has ended. None, with errno, where the system has
/// no such thing or the process is gone.
FileDescriptor openProcess(pid_t pid) noexcept;

/// A started child, until it is reaped.
///
/// Its end is looked for without reaping it: as long as it is not reaped its number, and its
/// group's, cannot become another's, so signals reach whom they are meant for.
class ChildProcess {
public:
    /// With `leadsGroup` its process group's number is its own, and signals go to the group.
    ChildProcess(pid_t pid, bool leadsGroup) noexcept;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Ends and reaps it, if that has not been done.
    ~ChildProcess();

    /// Readable once the child has ended; -1 where the system has no such descriptor, and looking
    /// now and then is all there is.
    int endDescriptor() const noexcept { return descriptor_.number(); }
    /// Whether it has ended; asks the system as long as it has not.
    bool lookForEnd() noexcept;
    void waitForEnd() noexcept;
    bool hasEnded() const noexcept { return state_ != State::running; }

    /// To the group, or to the child alone when it leads none. After the child's end it reaches
    /// what is left of the group, until the child is reaped.
    void signal(int number) noexcept;
    /// Waits for the end, and lets the system forget the child.
    void reap() noexcept;

    /// Neither is set before the end, or when the system had already forgotten the child.
    std::optional<int> exitStatus() const noexcept { return exitStatus_; }
    std::optional<int> endingSignal() const noexcept { return endingSignal_; }

private:
    enum class State { running, ended, reaped };

    bool sawEnd(int flags) noexcept;
    void look(int flags) noexcept;

    pid_t pid_;
    bool leadsGroup_;
    FileDescriptor descriptor_;
    State state_ = State::running;
    std::optional<int> exitStatus_;
    std::optional<int> endingSignal_;
};

} // namespace quen
