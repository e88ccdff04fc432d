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
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::tools {

namespace {

/// What the shell answers for a command that is not there.
constexpr int commandNotFound = 127;
/// No more than a pipe takes at once when it says that it is ready.
constexpr std::size_t pieceSize = 4096;
/// More than a pipe can hold of what no pager has read.
constexpr std::size_t mostKept = 256 * 1024;

std::string pagerCommand() {
    for (const char* const name : {"QUEN_PAGER", "PAGER"}) {
        const char* const variable = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        if (variable != nullptr) {
            return variable;
        }
    }
    return "less -FRX";
}

/// A pager that is left before the end does not read the rest: false then.
bool writeAll(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        if (!waitUntilReady(descriptor, POLLOUT)) {
            return false;
        }
        const auto written = ::write(descriptor, text.data(), std::min(text.size(), pieceSize));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

} // namespace

struct PagedOutput::Pager {
    // The interrupt key is the pager's while it shows something; ours would leave it without a
    // parent on a terminal that it has set up for itself.
    InterruptWatch::KeysLent keys;
    FileDescriptor writing;
    pid_t child = -1;
    /// What was written, as long as there may be no pager that has read it.
    std::string kept;
    bool keepsAll = true;

    bool start(const std::string& command) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            return false;
        }
        const FileDescriptor reading(ends[0]);
        writing = FileDescriptor(ends[1]);
        child = startShellProgram({.script = command, .arguments = {}, .input = reading.number()});
        return child >= 0;
    }

    bool write(std::string_view text) {
        keepsAll = keepsAll && kept.size() + text.size() <= mostKept;
        if (keepsAll) {
            kept += text;
        } else {
            kept.clear();
        }
        return writeAll(writing.number(), text);
    }

    /// Whether there was such a pager. A person who leaves it before the end has seen enough.
    bool finish() {
        writing.close();
        const int status = waitForShellProgram(child);
        return !WIFEXITED(status) || WEXITSTATUS(status) != commandNotFound;
    }
};

PagedOutput::PagedOutput() = default;

PagedOutput::~PagedOutput() {
    finish();
}

bool PagedOutput::write(std::string_view text) {
    if (!isBegun_ && !text.empty()) {
        isBegun_ = true;
        const std::string command = outputIsTerminal() ? pagerCommand() : "";
        if (!command.empty()) {
            std::cout.flush();
            pager_ = std::make_unique<Pager>();
            if (!pager_->start(command)) {
                pager_.reset();
            }
        }
    }
    if (isLeft_) {
        return false;
    }
    if (pager_ != nullptr) {
        return pager_->write(text) || fallBack();
    }
    std::cout << text;
    std::cout.flush();
    return std::cout.good();
}

/// What no pager has read is shown without one.
bool PagedOutput::fallBack() {
    const bool wasThere = pager_->finish() || !pager_->keepsAll;
    const std::string kept = std::move(pager_->kept);
    pager_.reset();
    isLeft_ = wasThere;
    return !wasThere && write(kept);
}

void PagedOutput::finish() {
    if (pager_ != nullptr) {
        fallBack();
    }
}

void printPaged(const std::string& text) {
    PagedOutput output;
    output.write(text);
}

} // namespace quen::tools
