#include "Host/Process/ChildProcess.h"
#include "Tests/Host/Process/ProcessTestSupport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <optional>
#include <poll.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::test {
namespace {

/// Hosts with habits. Each lives in a forked copy of the test, which answers what went wrong.
class ProcessHostTest : public ProcessTest {};

constexpr const char* cleanState = "descriptors: 0 1 2\n"
                                   "SigBlk: 0000000000000000\n"
                                   "SigIgn: 0000000000000000\n"
                                   "own session\n"
                                   "own group\n";

TEST_F(ProcessHostTest, HandsNothingOfItselfToTheChild) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  for (int i = 0; i < 5; ++i) { // without close-on-exec
                      static_cast<void>(::open("/dev/null", O_RDWR));
                  }
                  for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGTTIN}) {
                      std::signal(signal, SIG_IGN);
                  }
                  sigset_t all;
                  sigfillset(&all);
                  ::sigprocmask(SIG_BLOCK, &all, nullptr);
                  return std::string(outputOf(run(faultChild("state"))));
              }),
              cleanState);
}

TEST_F(ProcessHostTest, KeepsItsInputToItself) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  std::array<int, 2> input{};
                  if (::pipe(input.data()) != 0 || ::write(input[1], "secret\n", 7) != 7 ||
                      ::dup2(input[0], STDIN_FILENO) != STDIN_FILENO) {
                      return "there is no input to be had";
                  }
                  return std::string(outputOf(run(faultChild("read-input"))));
              }),
              "0 bytes\n");
}

TEST_F(ProcessHostTest, MayStartOtherProgramsMeanwhile) {
    const std::vector<int> before = openDescriptors();
    int opened = 0;
    ProcessInvocation invocation = faultChild("say:0");
    invocation.outputWatcher = [&](std::string_view) {
        for (const int number : openDescriptors()) {
            if (!std::binary_search(before.begin(), before.end(), number)) {
                ++opened;
                EXPECT_NE(::fcntl(number, F_GETFD) & FD_CLOEXEC, 0) << number;
            }
        }
    };
    EXPECT_EQ(described(run(invocation)), "exited 0");
    EXPECT_EQ(opened, 4) << "two pipes, the child and the stop token";
}

TEST_F(ProcessHostTest, MayHaveClosedItsOwnStandardDescriptors) {
    for (unsigned closed = 1; closed < 8; ++closed) {
        EXPECT_EQ(inForkedHost([closed]() -> std::string {
                      for (int number = 0; number < 3; ++number) {
                          if ((closed >> static_cast<unsigned>(number) & 1U) != 0) {
                              ::close(number);
                          }
                      }
                      const std::vector<int> before = openDescriptors();
                      std::vector<int> during;
                      ProcessInvocation invocation = faultChild("say:3");
                      invocation.outputWatcher = [&](std::string_view) {
                          during = openDescriptors();
                          std::erase_if(during, [](int number) { return number > 2; });
                      };
                      const ProcessOutcome outcome = run(invocation);
                      std::vector<int> standard = before;
                      std::erase_if(standard, [](int number) { return number > 2; });
                      if (during != standard || openDescriptors() != before) {
                          return "the run took a standard descriptor's number";
                      }
                      return described(outcome) + " " + std::string(outputOf(outcome)) +
                             std::string(errorsOf(outcome)) +
                             std::string(outputOf(run(faultChild("state"))));
                  }),
                  "exited 3 output\nerrors\n" + std::string(cleanState))
            << "closed: " << closed;
    }
}

#ifdef SYS_poll
constexpr int pollCall = SYS_poll;
#else
constexpr int pollCall = SYS_ppoll; // machines without the older call
#endif

/// A system call of the forked host answers with `error` from now on.
bool forbid(int call, int error) {
    std::array<sock_filter, 4> filter = {{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST_F(ProcessHostTest, MayHaveNoDescriptorsForProcesses) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  if (!forbid(SYS_pidfd_open, ENOSYS) || openProcess(::getpid()).isOpen()) {
                      return "the system call could not be forbidden";
                  }
                  std::ostringstream ends;
                  for (const char* mode : {"exit:3", "die-after:9", "close-output:7", "both:1"}) {
                      ends << described(run(faultChild(mode))) << '\n';
                  }
                  ProcessInvocation invocation = faultChild("hang-closed");
                  invocation.limits.total = std::chrono::milliseconds(50);
                  ends << described(run(invocation)) << '\n';
                  std::stop_source stop;
                  invocation = faultChild("hang");
                  invocation.outputWatcher = [&](std::string_view) { stop.request_stop(); };
                  ends << described(runProcess(invocation, stop.get_token())) << '\n';
                  return ends.str();
              }),
              "exited 3\nsignalled by signal 9\nexited 7\nexited 0\ntimed out by signal 15\n"
              "cancelled by signal 15\n");
}

TEST_F(ProcessHostTest, MayBeUnableToWait) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  if (!forbid(pollCall, ENOMEM)) {
                      return "the system call could not be forbidden";
                  }
                  std::string end = described(run(faultChild("hang")));
                  const bool isLeft = ::waitpid(-1, nullptr, WNOHANG) >= 0;
                  return end + (isLeft ? ", and left" : "");
              }),
              "output lost by signal 9: Cannot allocate memory");
}

struct ForgetfulHost {
    const char* name;
    int flags;
    void (*handler)(int);
};

TEST_F(ProcessHostTest, MayLetTheSystemForgetItsChildren) {
    for (const ForgetfulHost& host : {ForgetfulHost{"ignores SIGCHLD", 0, SIG_IGN},
                                      ForgetfulHost{"wants no zombies", SA_NOCLDWAIT, SIG_DFL}}) {
        EXPECT_EQ(inForkedHost([&host]() -> std::string {
                      struct sigaction action {};
                      action.sa_handler = host.handler;
                      action.sa_flags = host.flags;
                      ::sigaction(SIGCHLD, &action, nullptr);
                      std::ostringstream ends;
                      const ProcessOutcome outcome = run(faultChild("say:3"));
                      ends << described(outcome) << '\n' << outputOf(outcome) << errorsOf(outcome);
                      ends << described(run(faultChild("close-output:7"))) << '\n';
                      std::stop_source stop;
                      ProcessInvocation invocation = faultChild("hang");
                      invocation.outputWatcher = [&](std::string_view) { stop.request_stop(); };
                      ends << described(runProcess(invocation, stop.get_token())) << '\n';
                      invocation.launchPath = "/nowhere/svn";
                      ends << described(run(invocation));
                      return ends.str();
                  }),
                  "status unknown\noutput\nerrors\nstatus unknown\ncancelled\n"
                  "could not start: No such file or directory")
            << host.name;
    }
}

TEST_F(ProcessHostTest, GetsNoSignalSentToANumberThatMayBeAnothers) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  std::signal(SIGCHLD, SIG_IGN);
                  std::stop_source stop;
                  ProcessInvocation invocation = faultChild("family-deaf");
                  invocation.limits.drainTimeout = std::chrono::milliseconds(30);
                  std::string said;
                  invocation.outputWatcher = [&](std::string_view piece) {
                      said += piece;
                      if (said.ends_with("ready\n")) {
                          stop.request_stop();
                      }
                  };
                  const std::string end = described(runProcess(invocation, stop.get_token()));
                  const Grandchild grandchild(said);
                  const bool isAlive = grandchild.isAlive();
                  grandchild.kill();
                  return end + (isAlive ? ", grandchild alive" : ", grandchild gone");
              }),
              "cancelled, grandchild alive");
}

TEST_F(ProcessHostTest, MayReapWhatIsNotItsOwn) {
    ProcessInvocation invocation = faultChild("die-after:9");
    invocation.errorWatcher = [](std::string_view) { // as another thread's waitpid(-1) would
        EXPECT_GT(::waitpid(-1, nullptr, 0), 0);
    };
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), "status unknown");
    EXPECT_EQ(outputOf(outcome), "output\n");
    EXPECT_EQ(errorsOf(outcome), "errors\n");
}

/// The limit under which exactly `count` more descriptors are to be had.
rlim_t limitForDescriptors(int count) {
    int number = 0;
    for (; count > 0 || ::fcntl(number, F_GETFD) >= 0; ++number) {
        count -= ::fcntl(number, F_GETFD) < 0 ? 1 : 0;
    }
    return static_cast<rlim_t>(number);
}

ProcessOutcome runWithDescriptors(int count) {
    rlimit limit{0, 0};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit tight{limitForDescriptors(count), limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &tight);
    ProcessOutcome outcome = run(program("/bin/true"));
    ::setrlimit(RLIMIT_NOFILE, &limit);
    return outcome;
}

TEST_F(ProcessHostTest, MayRunOutOfDescriptors) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  // A sanitizer needs descriptors to look at an error text's class for the first
                  // time.
                  run(program("/nowhere/svn"));
                  const std::vector<int> open = openDescriptors();
                  std::ostringstream ends;
                  for (int count = 0; count <= 8; ++count) {
                      const ProcessOutcome outcome = runWithDescriptors(count);
                      ends << count << ' ' << described(outcome) << '\n';
                      ends << (openDescriptors() != open ? "and left some open\n" : "");
                  }
                  return ends.str();
              }),
              "0 could not start: Too many open files\n"
              "1 could not start: /dev/null: Too many open files\n"
              "2 could not start: pipe: Too many open files\n"
              "3 could not start: pipe: Too many open files\n"
              "4 could not start: pipe: Too many open files\n"
              "5 could not start: pipe: Too many open files\n"
              "6 exited 0\n"
              "7 exited 0\n"
              "8 exited 0\n");
}

/// Gives this process a session with a terminal, and answers the terminal's other side.
FileDescriptor becomeTerminalSession() {
    FileDescriptor other(::posix_openpt(O_RDWR | O_NOCTTY));
    if (!other.isOpen() || ::setsid() < 0 || ::grantpt(other.number()) != 0 ||
        ::unlockpt(other.number()) != 0) {
        return {};
    }
    const char* const name = ::ptsname(other.number());
    const FileDescriptor terminal(name == nullptr ? -1 : ::open(name, O_RDWR | O_NOCTTY));
    return ::ioctl(terminal.number(), TIOCSCTTY, 0) == 0 ? std::move(other) : FileDescriptor();
}

TEST_F(ProcessHostTest, SharesItsTerminalOnlyWhenTold) {
    for (const bool ownSession : {true, false}) {
        EXPECT_EQ(inForkedHost([ownSession]() -> std::string {
                      std::signal(SIGHUP, SIG_IGN);
                      const FileDescriptor other = becomeTerminalSession();
                      if (!other.isOpen() || ::write(other.number(), "secret\n", 7) != 7) {
                          return "there is no terminal to be had";
                      }
                      ProcessInvocation invocation = faultChild("terminal");
                      invocation.ownSession = ownSession;
                      return std::string(outputOf(run(invocation)));
                  }),
                  ownSession ? "no terminal: No such device or address\n" : "terminal: secret\n");
    }
}

TEST_F(ProcessHostTest, EndsTheChildAloneInItsOwnSession) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("family");
    invocation.ownSession = false;
    invocation.limits.drainTimeout = std::chrono::milliseconds(30);
    Grandchild grandchild;
    invocation.outputWatcher = [&](std::string_view said) {
        grandchild = Grandchild(said);
        stop.request_stop();
    };
    const ProcessOutcome outcome = runProcess(invocation, stop.get_token());
    EXPECT_EQ(described(outcome), "cancelled by signal 15");
    EXPECT_TRUE(outcome.leftOutputOpen);
    EXPECT_TRUE(grandchild.isAlive());
    grandchild.kill();
    EXPECT_TRUE(grandchild.endsSoon());
}

/// A host that dies while its child runs. Answers the child.
Grandchild childOfKilledHost(const char* mode, bool ownSession) {
    std::optional<Pipe> said = makePipe();
    const pid_t host = ::fork();
    if (host == 0) {
        ProcessInvocation invocation = faultChild(mode);
        invocation.endsWithHost = true;
        invocation.ownSession = ownSession;
        invocation.outputWatcher = [&](std::string_view piece) {
            static_cast<void>(!::write(said->writeEnd.number(), piece.data(), piece.size()));
        };
        run(invocation);
        ::_exit(0);
    }
    pollfd words{said->readEnd.number(), POLLIN, 0};
    EXPECT_EQ(::poll(&words, 1, 20'000), 1);
    std::array<char, 64> text{};
    EXPECT_GT(::read(said->readEnd.number(), text.data(), text.size() - 1), 0);
    Grandchild child(text.data());
    EXPECT_TRUE(child.isAlive());
    ::kill(host, SIGKILL);
    EXPECT_EQ(::waitpid(host, nullptr, 0), host);
    return child;
}

TEST_F(ProcessHostTest, TakesItsChildAlongWhenItIsKilled) {
    for (const bool ownSession : {true, false}) {
        const Grandchild child = childOfKilledHost("on-request:3", ownSession);
        EXPECT_TRUE(child.endsSoon());
        child.kill();
    }
}

/// The two ways to start a child must leave it in the same state.
TEST_F(ProcessHostTest, StartsATiedChildLikeAnyOther) {
    for (const char* const mode : {"state", "read-input", "exit:7"}) {
        ProcessInvocation invocation = faultChild(mode);
        const ProcessOutcome free = run(invocation);
        invocation.endsWithHost = true;
        const ProcessOutcome tied = run(invocation);
        EXPECT_EQ(described(tied), described(free));
        EXPECT_EQ(outputOf(tied), outputOf(free));
        EXPECT_EQ(errorsOf(tied), errorsOf(free));
    }
    ProcessInvocation missing = program("/nowhere/svn");
    missing.endsWithHost = true;
    EXPECT_EQ(described(run(missing)), "could not start: No such file or directory");
}

} // namespace
} // namespace quen::test
