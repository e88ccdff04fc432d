#include "Tools/Terminal/Pager.h"

#include "Host/Process/FileDescriptor.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/ShellProgram.h"
#include "Tools/Terminal/Style.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::tools {

namespace {

/// What the shell answers for a command that is not there.
constexpr int commandNotFound = 127;

std::string pagerCommand() {
    const char* const variable = std::getenv("PAGER"); // NOLINT(concurrency-mt-unsafe)
    return variable == nullptr ? "less -FRX" : variable;
}

/// A pager that is left before the end does not read the rest.
void writeAll(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        const auto written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
}

/// False where there is no such pager. A person who leaves it before the end has seen enough.
bool runPager(const std::string& command, const std::string& text) {
    std::cout.flush();
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    // The interrupt key is the pager's while it shows something; ours would leave it without a
    // parent on a terminal that it has set up for itself.
    const InterruptWatch::KeysLent keys;
    const pid_t child =
        startShellProgram({.script = command, .arguments = {}, .input = reading.number()});
    if (child < 0) {
        return false;
    }
    reading.close();
    writeAll(writing.number(), text);
    writing.close();
    const int status = waitForShellProgram(child);
    return !WIFEXITED(status) || WEXITSTATUS(status) != commandNotFound;
}

} // namespace

void printPaged(const std::string& text) {
    const std::string command = outputIsTerminal() && !text.empty() ? pagerCommand() : "";
    if (command.empty() || !runPager(command, text)) {
        std::cout << text;
    }
}

} // namespace quen::tools
