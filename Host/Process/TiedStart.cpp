#include "Host/Process/TiedStart.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <linux/close_range.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// Until it starts its program the child runs in the host's memory, while the host's thread waits.
// What it does there must not be seen by a sanitizer, which would take it for the host's doing.
#define QUEN_UNWATCHED __attribute__((no_sanitize("address", "thread", "undefined")))

namespace quen {

namespace {

constexpr std::size_t stackSize = 64 * 1024;
constexpr int kernelSignals = 64;
constexpr std::size_t kernelMaskSize = kernelSignals / CHAR_BIT;

struct Birth {
    const TiedStart& start;
    pid_t host = -1;
    int error = 0;
};

/// System calls alone, and by number: the functions of the C library keep books that are the
/// host's.
QUEN_UNWATCHED long setUp(const Birth& birth) noexcept {
    const TiedStart& start = birth.start;
    if (::syscall(SYS_prctl, PR_SET_PDEATHSIG, SIGTERM, 0, 0, 0) != 0) {
        return -1;
    }
    if (::syscall(SYS_getppid) != birth.host) {
        ::syscall(SYS_exit, 1); // the host ended before the tie held
    }
    // The kernel's own structure, all zero, is the default disposition.
    const std::array<unsigned long, 4> byDefault{};
    for (int number = 1; number <= kernelSignals; ++number) {
        ::syscall(SYS_rt_sigaction, number, byDefault.data(), nullptr, kernelMaskSize);
    }
    if ((start.ownSession && ::syscall(SYS_setsid) < 0) ||
        (start.directory >= 0 && ::syscall(SYS_fchdir, start.directory) != 0) ||
        ::syscall(SYS_dup3, start.input, STDIN_FILENO, 0) < 0 ||
        ::syscall(SYS_dup3, start.output, STDOUT_FILENO, 0) < 0 ||
        ::syscall(SYS_dup3, start.errors, STDERR_FILENO, 0) < 0 ||
        ::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, 0) != 0) {
        return -1;
    }
    const std::array<unsigned long, 2> none{};
    return ::syscall(SYS_rt_sigprocmask, SIG_SETMASK, none.data(), nullptr, kernelMaskSize);
}

QUEN_UNWATCHED int runChild(void* argument) noexcept {
    Birth& birth = *static_cast<Birth*>(argument);
    if (setUp(birth) == 0) {
        ::syscall(SYS_execve, birth.start.path, birth.start.arguments, birth.start.environment);
    }
    birth.error = errno;
    ::syscall(SYS_exit, 127);
    return 127;
}

/// No signal handler of the host may run in the child, and no thread be cancelled half-way.
class Undisturbed {
public:
    Undisturbed() noexcept {
        ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState_);
        sigset_t all;
        std::memset(&all, 0xff, sizeof all);
        ::pthread_sigmask(SIG_BLOCK, &all, &mask_);
    }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;
    ~Undisturbed() {
        ::pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
        ::pthread_setcancelstate(cancelState_, nullptr);
    }

private:
    int cancelState_ = 0;
    sigset_t mask_{};
};

} // namespace

pid_t startTied(const TiedStart& start) noexcept {
    void* const stack = ::mmap(nullptr, stackSize, PROT_READ | PROT_WRITE,
                               MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (stack == MAP_FAILED) {
        return -1;
    }
    Birth birth{start, ::getpid()};
    pid_t pid = -1;
    {
        const Undisturbed undisturbed;
        pid = ::clone(runChild, static_cast<char*>(stack) + stackSize,
                      CLONE_VM | CLONE_VFORK | SIGCHLD, &birth);
    }
    const int error = pid < 0 ? errno : birth.error;
    ::munmap(stack, stackSize);
    if (pid > 0 && error != 0) {
        ::waitpid(pid, nullptr, 0);
        pid = -1;
    }
    errno = error;
    return pid;
}

} // namespace quen
