#include "Host/Process/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen {

namespace {

/// The system's own call: the wrapper of some C libraries is declared without C linkage.
int openPidDescriptor(pid_t pid) noexcept {
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
}

} // namespace

/// By number: the header of glibc 2.36 forgets to say that its function is a C function.
FileDescriptor openProcess(pid_t pid) noexcept {
    return aboveStandard(FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0))));
}

ChildProcess::ChildProcess(pid_t pid, bool leadsGroup) noexcept
    : pid_(pid), leadsGroup_(leadsGroup),
      descriptor_(aboveStandard(FileDescriptor(openPidDescriptor(pid)))) {}

ChildProcess::~ChildProcess() {
    if (state_ != State::reaped) {
        signal(SIGKILL);
        reap();
    }
}

bool ChildProcess::sawEnd(int flags) noexcept {
    const bool byDescriptor = descriptor_.isOpen();
    const id_t id = static_cast<id_t>(byDescriptor ? descriptor_.number() : pid_);
    siginfo_t info{};
    int result = 0;
    do {
        result = ::waitid(byDescriptor ? P_PIDFD : P_PID, id, &info, WEXITED | flags);
    } while (result != 0 && errno == EINTR);
    if (result != 0) { // ECHILD: it has ended, and somebody else has reaped it
        state_ = State::reaped;
        return true;
    }
    if (info.si_pid == 0) {
        return false;
    }
    (info.si_code == CLD_EXITED ? exitStatus_ : endingSignal_) = info.si_status;
    return true;
}

void ChildProcess::look(int flags) noexcept {
    if (state_ == State::running && sawEnd(flags | WNOWAIT) && state_ == State::running) {
        state_ = State::ended;
    }
}

bool ChildProcess::lookForEnd() noexcept {
    look(WNOHANG);
    return hasEnded();
}

void ChildProcess::waitForEnd() noexcept {
    look(0);
}

void ChildProcess::signal(int number) noexcept {
    // The look is for hosts whose children are reaped behind our back: the number may be free.
    if (lookForEnd() && (state_ == State::reaped || !leadsGroup_)) {
        return;
    }
    ::kill(leadsGroup_ ? -pid_ : pid_, number);
}

void ChildProcess::reap() noexcept {
    if (state_ != State::reaped) {
        sawEnd(0);
        state_ = State::reaped;
    }
}

} // namespace quen
