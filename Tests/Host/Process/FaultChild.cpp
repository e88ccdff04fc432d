// A program that does one thing a client should not have to be trusted not to do. Tests start it in
// the client's place.
//
//     FaultChild MODE[:NUMBER] [argument ...]
//     QUEN_FAULT=MODE[:NUMBER] FaultChild [whatever the client would get ...]
//     DIRECTORY/svn            [whatever the client would get ...]
//
// QUEN_FAULT counts where it is set. Called by another name, such as that of a symbolic link in a
// directory of tools, it finds what it needs in files beside that name:
//
//     svn.fault      lines of `MODE[:NUMBER]`, or `WORD=MODE[:NUMBER]` for a command line that
//                    holds that word; the first line that fits counts
//     svn.told       a pipe with a name: where a mode tells (see below), a line with the number of
//                    the process goes there
//     svn.output, svn.errors, or svn.WORD.output and svn.WORD.errors
//                    what `replay` says
//
// NUMBER is 0 where it is absent. Whatever the mode, the program is gone after a minute.
//
//     exit:STATUS            says nothing, ends with STATUS
//     say:STATUS             a line on either stream, then STATUS
//     replay:STATUS          what was prepared (QUEN_FAULT_OUTPUT and QUEN_FAULT_ERRORS name files
//                            too) on the streams of these names, then STATUS
//     replay-drip:STATUS     the same, one write for each byte
//     die-before:SIGNAL      dies by SIGNAL before it says anything,
//     die-middle:SIGNAL      in the middle of its line,
//     die-after:SIGNAL       after it
//     drip                   each byte value once on either stream, one write for each
//     both:MIB               as many MiB of the pattern on both streams, piece by piece in turn
//     flood:MIB              as many MiB of the pattern on standard output
//     room:MIB               a line, 20 ms later as many MiB of the pattern, and on standard error
//                            how many bytes the pipe of standard output then holds
//     garbage                bytes that are not text
//     half-character         text that ends within a character
//     zero-bytes             text with zero bytes in it
//     close-output:STATUS    closes its streams, lives on for 50 ms, then STATUS
//     hang                   says "ready", tells, waits to be ended
//     hang-deaf              the same, ignoring SIGTERM
//     hang-closed            closes its streams, tells, waits to be ended
//     last-words:STATUS      says "ready", tells, waits to be asked to end, says so, then STATUS
//     on-request:STATUS      says its number, waits for SIGUSR1, then a line on either stream, then
//                            STATUS
//     stop                   says "ready", stops itself (SIGSTOP)
//     chatter                a byte every millisecond, until ended; tells at the tenth
//     grandchild:STATUS      leaves a grandchild that keeps the streams, says its number, then
//                            STATUS; the grandchild tells once it is alone
//     grandchild-flood:STATUS  the same; the grandchild writes as fast as it can
//     family                 has a grandchild, says its number, both wait to be ended
//     family-deaf            the same; the grandchild ignores SIGTERM
//     read-input             says how many bytes standard input had
//     terminal               says whether it could open the terminal; if so, the line that it reads
//                            there
//     state                  says its descriptors, signal sets, and whether session and group are
//                            its own
//     environment            says its environment, each variable followed by a zero byte
//     arguments              says its arguments, each followed by a zero byte
//
// The pattern: byte number n is n modulo 251.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

using Arguments = std::span<char*>;

/// Straight to the descriptor: what was said is in the pipe, whatever happens next.
void write(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0) {
            std::_Exit(99);
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void say(std::string_view text) {
    write(STDOUT_FILENO, text);
}
void complain(std::string_view text) {
    write(STDERR_FILENO, text);
}

std::string readToEnd(int descriptor) {
    std::string text;
    std::string piece(4096, '\0');
    for (;;) {
        const ssize_t count = ::read(descriptor, piece.data(), piece.size());
        if (count <= 0) {
            return text;
        }
        text.append(piece, 0, static_cast<std::size_t>(count));
    }
}

void pauseFor(int milliseconds) {
    ::poll(nullptr, 0, milliseconds);
}

[[noreturn]] void waitToBeEnded() {
    for (;;) {
        ::pause();
    }
}

[[noreturn]] void die(int signal) {
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    std::signal(signal, SIG_DFL);
    ::kill(::getpid(), signal);
    waitToBeEnded();
}

/// The name that the program was called by; what tests prepare lies beside it.
std::string calledAs; // NOLINT(*-avoid-non-const-global-variables)

/// Says on the pipe beside, where there is one, that the state has been reached.
void tell() {
    const int descriptor = ::open((calledAs + ".told").c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        write(descriptor, std::to_string(::getpid()) + "\n");
        ::close(descriptor);
    }
}

void closeStreams() {
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
}

std::string pattern() {
    std::string piece(251 * 256, '\0');
    for (std::size_t n = 0; n < piece.size(); ++n) {
        piece[n] = static_cast<char>(n % 251);
    }
    return piece;
}

void writePattern(int mebibytes, std::initializer_list<int> descriptors) {
    const std::string piece = pattern();
    std::size_t left = static_cast<std::size_t>(mebibytes) << 20U;
    while (left > 0) {
        const std::size_t size = std::min(left, piece.size());
        for (const int descriptor : descriptors) {
            write(descriptor, {piece.data(), size});
        }
        left -= size;
    }
}

int exitSilently(int number, Arguments) {
    return number;
}

int sayLines(int number, Arguments) {
    say("output\n");
    complain("errors\n");
    return number;
}

std::string fileText(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    return descriptor < 0 ? std::string() : readToEnd(descriptor);
}

/// What was prepared for a stream.
std::string prepared(const char* variable, const std::string& ending, Arguments arguments) {
    if (const char* const name = std::getenv(variable); name != nullptr) {
        return fileText(name);
    }
    for (const char* const word : arguments) {
        const std::string path = calledAs + "." + word + ending;
        if (std::string_view(word).find('/') == std::string_view::npos &&
            ::access(path.c_str(), F_OK) == 0) {
            return fileText(path);
        }
    }
    return fileText(calledAs + ending);
}

int replay(int number, Arguments arguments) {
    say(prepared("QUEN_FAULT_OUTPUT", ".output", arguments));
    complain(prepared("QUEN_FAULT_ERRORS", ".errors", arguments));
    return number;
}

int replayDrip(int number, Arguments arguments) {
    for (const char byte : prepared("QUEN_FAULT_OUTPUT", ".output", arguments)) {
        say({&byte, 1});
    }
    for (const char byte : prepared("QUEN_FAULT_ERRORS", ".errors", arguments)) {
        complain({&byte, 1});
    }
    return number;
}

int dieBefore(int number, Arguments) {
    die(number);
}

int dieMiddle(int number, Arguments) {
    say("out");
    die(number);
}

int dieAfter(int number, Arguments) {
    sayLines(0, {});
    die(number);
}

int drip(int, Arguments) {
    for (int value = 0; value < 256; ++value) {
        const char byte = static_cast<char>(value);
        say({&byte, 1});
        complain({&byte, 1});
    }
    return 0;
}

int writeBoth(int number, Arguments) {
    writePattern(number, {STDOUT_FILENO, STDERR_FILENO});
    return 0;
}

int flood(int number, Arguments) {
    writePattern(number, {STDOUT_FILENO});
    return 0;
}

int sayRoom(int number, Arguments) {
    say("ready\n");
    pauseFor(20);
    writePattern(number, {STDOUT_FILENO});
    pauseFor(20);
    complain(std::to_string(::fcntl(STDOUT_FILENO, F_GETPIPE_SZ)));
    return 0;
}

int sayGarbage(int, Arguments) {
    say("\xff\xfe\x80 <\xc0\xaf");
    return 0;
}

int sayHalfCharacter(int, Arguments) {
    say("caf\xc3");
    return 0;
}

int sayZeroBytes(int, Arguments) {
    say({"a\0b\0", 4});
    return 0;
}

int closeOutput(int number, Arguments) {
    closeStreams();
    pauseFor(50);
    return number;
}

int hang(int, Arguments) {
    say("ready\n");
    tell();
    waitToBeEnded();
}

int hangDeaf(int, Arguments) {
    std::signal(SIGTERM, SIG_IGN);
    hang(0, {});
    return 0;
}

int hangClosed(int, Arguments) {
    closeStreams();
    tell();
    waitToBeEnded();
}

void blockSignal(int number) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

/// A signal that is blocked.
void waitForSignal(int number) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    int signal = 0;
    ::sigwait(&set, &signal);
}

int lastWords(int number, Arguments) {
    blockSignal(SIGTERM);
    say("ready\n");
    tell();
    waitForSignal(SIGTERM);
    say("asked to end\n");
    return number;
}

int goOnRequest(int number, Arguments) {
    blockSignal(SIGUSR1);
    say(std::to_string(::getpid()) + "\n");
    waitForSignal(SIGUSR1);
    return sayLines(number, {});
}

int stop(int, Arguments) {
    say("ready\n");
    ::raise(SIGSTOP);
    waitToBeEnded();
}

int chatter(int, Arguments) {
    for (int count = 1;; ++count) {
        say(".");
        if (count == 10) {
            tell();
        }
        pauseFor(1);
    }
}

/// The parent goes on; the grandchild does `work` and never returns.
template <typename Work> pid_t haveGrandchild(Work work) {
    const pid_t grandchild = ::fork();
    if (grandchild == 0) {
        ::alarm(60);
        work();
        waitToBeEnded();
    }
    say(std::to_string(grandchild) + "\n");
    return grandchild;
}

int leaveGrandchild(int number, Arguments) {
    haveGrandchild([child = ::getpid()] {
        while (::getppid() == child) {
            pauseFor(1);
        }
        tell();
    });
    return number;
}

int leaveFloodingGrandchild(int number, Arguments) {
    haveGrandchild([] {
        for (;;) {
            writePattern(1, {STDERR_FILENO});
        }
    });
    return number;
}

int family(int, Arguments) {
    haveGrandchild([] {});
    waitToBeEnded();
}

int familyDeaf(int, Arguments) {
    std::signal(SIGTERM, SIG_IGN); // before the fork, so that the grandchild is deaf from its birth
    haveGrandchild([] {});
    std::signal(SIGTERM, SIG_DFL);
    say("ready\n");
    waitToBeEnded();
}

int readInput(int, Arguments) {
    say(std::to_string(readToEnd(STDIN_FILENO).size()) + " bytes\n");
    return 0;
}

int askOnTerminal(int, Arguments) {
    const int terminal = ::open("/dev/tty", O_RDWR);
    if (terminal < 0) {
        say(std::string("no terminal: ") + std::strerror(errno) + "\n");
        return 0;
    }
    std::string line(80, '\0');
    const ssize_t count = ::read(terminal, line.data(), line.size());
    say("terminal: " + line.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0))));
    return 0;
}

void sayDescriptors() {
    std::vector<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        // The directory's own descriptor is the one thing opened here.
        if (std::filesystem::read_symlink(entry.path()).string().find("/fd") == std::string::npos) {
            numbers.push_back(std::stoi(entry.path().filename()));
        }
    }
    std::sort(numbers.begin(), numbers.end());
    say("descriptors:");
    for (const int number : numbers) {
        say(" " + std::to_string(number));
    }
    say("\n");
}

int sayState(int, Arguments) {
    sayDescriptors();
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigBlk:") || line.starts_with("SigIgn:")) {
            std::replace(line.begin(), line.end(), '\t', ' ');
            say(line + "\n");
        }
    }
    say(::getsid(0) == ::getpid() ? "own session\n" : "another's session\n");
    say(::getpgrp() == ::getpid() ? "own group\n" : "another's group\n");
    return 0;
}

int sayEnvironment(int, Arguments) {
    for (char** entry = environ; *entry != nullptr; ++entry) {
        say({*entry, std::strlen(*entry) + 1});
    }
    return 0;
}

int sayArguments(int, Arguments arguments) {
    for (const char* const argument : arguments) {
        say({argument, std::strlen(argument) + 1});
    }
    return 0;
}

struct Mode {
    std::string_view name;
    int (*run)(int number, Arguments arguments);
};

constexpr Mode modes[] = {
    {"exit", exitSilently},
    {"say", sayLines},
    {"replay", replay},
    {"replay-drip", replayDrip},
    {"die-before", dieBefore},
    {"die-middle", dieMiddle},
    {"die-after", dieAfter},
    {"drip", drip},
    {"both", writeBoth},
    {"flood", flood},
    {"room", sayRoom},
    {"garbage", sayGarbage},
    {"half-character", sayHalfCharacter},
    {"zero-bytes", sayZeroBytes},
    {"close-output", closeOutput},
    {"hang", hang},
    {"hang-deaf", hangDeaf},
    {"hang-closed", hangClosed},
    {"last-words", lastWords},
    {"on-request", goOnRequest},
    {"stop", stop},
    {"chatter", chatter},
    {"grandchild", leaveGrandchild},
    {"grandchild-flood", leaveFloodingGrandchild},
    {"family", family},
    {"family-deaf", familyDeaf},
    {"read-input", readInput},
    {"terminal", askOnTerminal},
    {"state", sayState},
    {"environment", sayEnvironment},
    {"arguments", sayArguments},
};

/// What is to be done, as the line or the argument says it; empty where nothing does. Takes what
/// says it out of the arguments.
std::string wantedFault(Arguments& arguments) {
    calledAs = arguments[0];
    arguments = arguments.subspan(1);
    if (const char* const fault = std::getenv("QUEN_FAULT"); fault != nullptr) {
        return fault;
    }
    std::ifstream lines(calledAs + ".fault");
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find('=');
        if (end == std::string::npos) {
            return line;
        }
        if (std::find(arguments.begin(), arguments.end(), line.substr(0, end)) != arguments.end()) {
            return line.substr(end + 1);
        }
    }
    if (arguments.empty()) {
        return {};
    }
    const std::string mode = arguments.front();
    arguments = arguments.subspan(1);
    return mode;
}

} // namespace

int main(int count, char** vector) {
    ::alarm(60);
    Arguments arguments(vector, static_cast<std::size_t>(count));
    const std::string wanted = wantedFault(arguments);
    const std::string name = wanted.substr(0, wanted.find(':'));
    const std::string number = wanted.substr(std::min(wanted.size(), name.size() + 1));
    for (const Mode& mode : modes) {
        if (mode.name == name) {
            return mode.run(std::atoi(number.c_str()), arguments);
        }
    }
    std::cerr << "FaultChild: there is no mode \"" << name << "\"\n";
    return 98;
}
