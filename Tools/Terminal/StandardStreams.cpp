#include "Tools/Terminal/StandardStreams.h"

#include "Host/Process/FileDescriptor.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iostream>
#include <optional>
#include <poll.h>
#include <streambuf>
#include <string>
#include <sys/epoll.h>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

/// No more than a pipe takes at once when it says that it is ready.
constexpr std::size_t pieceSize = 4096;
constexpr std::size_t heldBack = 64 * 1024;
/// Written without being gathered first.
constexpr std::size_t passedOn = 16 * 1024;

/// Of a file or the null device, which take whatever they are given.
constexpr std::size_t widestPiece = 1024 * 1024;

/// Whether the system knows no waiting for it, as for files on a disk.
bool isNeverWaitedFor(int descriptor) noexcept {
    const FileDescriptor set(epoll_create1(EPOLL_CLOEXEC));
    epoll_event event{};
    return set.isOpen() && epoll_ctl(set.number(), EPOLL_CTL_ADD, descriptor, &event) != 0 &&
           errno == EPERM;
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

class OutputBuffer : public std::streambuf {
public:
    OutputBuffer(int descriptor, bool isGuarded, bool isByLine)
        : descriptor_(descriptor), isGuarded_(isGuarded), isByLine_(isByLine) {}

    std::error_code error() const { return error_; }

protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return traits_type::eq_int_type(c, traits_type::eof()) || xsputn(&byte, 1) == 1
                   ? traits_type::not_eof(c)
                   : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override {
        if (!isGuarded_ && static_cast<std::size_t>(size) >= passedOn) {
            writePending(pending_.size());
            write({text, static_cast<std::size_t>(size)});
            return error_ ? 0 : size;
        }
        pending_.append(text, static_cast<std::size_t>(size));
        if (isByLine_ || pending_.size() > heldBack) {
            writeLines();
        }
        return error_ ? 0 : size;
    }

    int sync() override {
        writePending(pending_.size());
        return error_ ? -1 : 0;
    }

private:
    /// Whole lines, so that no character is cut where text is guarded.
    void writeLines() {
        const std::size_t end = isGuarded_ ? pending_.rfind('\n') + 1 : pending_.size();
        writePending(end);
    }

    void writePending(std::size_t size) {
        std::string rest = pending_.substr(size);
        pending_.resize(size);
        const std::string text = std::exchange(pending_, std::move(rest));
        if (isGuarded_) {
            write(safeForTerminal(text));
        } else {
            write(text);
        }
    }

    void write(std::string_view text) {
        while (!text.empty() && !error_) {
            if (!waitUntilReady(descriptor_, POLLOUT)) {
                error_ = std::make_error_code(std::errc::interrupted);
                return;
            }
            const auto written = ::write(descriptor_, text.data(), std::min(text.size(), atOnce()));
            if (written >= 0) {
                text.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno != EINTR && errno != EAGAIN) {
                error_ = lastError();
            }
        }
    }

    std::size_t atOnce() {
        if (!isNeverWaitedFor_) {
            isNeverWaitedFor_ = isNeverWaitedFor(descriptor_);
        }
        return *isNeverWaitedFor_ ? widestPiece : pieceSize;
    }

    int descriptor_;
    std::optional<bool> isNeverWaitedFor_;
    bool isGuarded_;
    bool isByLine_;
    std::string pending_;
    std::error_code error_;
};

class InputBuffer : public std::streambuf {
protected:
    int_type underflow() override {
        ssize_t size = -1;
        do {
            if (!waitUntilReady(STDIN_FILENO, POLLIN)) {
                return traits_type::eof();
            }
            size = read(STDIN_FILENO, piece_.data(), piece_.size());
        } while (size < 0 && (errno == EINTR || errno == EAGAIN));
        if (size < 0) {
            throw std::system_error(lastError());
        }
        setg(piece_.data(), piece_.data(), piece_.data() + size);
        return size == 0 ? traits_type::eof() : traits_type::to_int_type(piece_.front());
    }

private:
    std::array<char, pieceSize> piece_{};
};

} // namespace

struct StandardStreams::Buffers {
    OutputBuffer output{STDOUT_FILENO, isatty(STDOUT_FILENO) == 1, isatty(STDOUT_FILENO) == 1};
    OutputBuffer errors{STDERR_FILENO, true, true};
    InputBuffer input;
    std::streambuf* formerOutput = std::cout.rdbuf(&output);
    std::streambuf* formerErrors = std::cerr.rdbuf(&errors);
    std::streambuf* formerInput = std::cin.rdbuf(&input);
};

StandardStreams::StandardStreams() : buffers_(std::make_unique<Buffers>()) {
    std::cerr << std::nounitbuf;
}

StandardStreams::~StandardStreams() {
    std::cout.flush();
    std::cerr.flush();
    std::cerr << std::unitbuf;
    std::cout.rdbuf(buffers_->formerOutput);
    std::cerr.rdbuf(buffers_->formerErrors);
    std::cin.rdbuf(buffers_->formerInput);
}

std::error_code StandardStreams::finish() {
    std::cout.flush();
    std::error_code error = buffers_->output.error();
    // Some file systems tell only here that there was no room.
    if (close(STDOUT_FILENO) != 0 && errno != EBADF && !error) {
        error = lastError();
    }
    return error;
}

} // namespace quen::tools
