#include "Tools/Terminal/Pager.h"

#include "Tools/Terminal/Style.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sys/wait.h>

namespace quen::tools {

namespace {

/// What the shell answers for a command that is not there.
constexpr int commandNotFound = 127;

std::string pagerCommand() {
    const char* const variable = std::getenv("PAGER"); // NOLINT(concurrency-mt-unsafe)
    return variable == nullptr ? "less -FRX" : variable;
}

/// False where there is no such pager. A person who leaves it before the end has seen enough.
bool runPager(const std::string& command, const std::string& text) {
    std::cout.flush();
    FILE* const pager = popen(command.c_str(), "w"); // NOLINT(cert-env33-c): PAGER is a command
    if (pager == nullptr) {
        return false;
    }
    // The interrupt key is the pager's while it shows something; ours would leave it without a
    // parent on a terminal that it has set up for itself.
    const auto previous = std::signal(SIGINT, SIG_IGN);
    std::fwrite(text.data(), 1, text.size(), pager);
    const int status = pclose(pager);
    std::signal(SIGINT, previous);
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
