#include "Host/Credentials/Secret.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace quen {

namespace {

std::size_t pageSize() noexcept {
    static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

std::size_t roundedToPages(std::size_t size) noexcept {
    return (size + pageSize() - 1) / pageSize() * pageSize();
}

} // namespace

Secret::~Secret() {
    release();
}

void Secret::swap(Secret& other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
}

void Secret::release() noexcept {
    if (bytes_ != nullptr) {
        explicit_bzero(bytes_, capacity_);
        munmap(bytes_, capacity_);
        bytes_ = nullptr;
    }
}

void Secret::grow(std::size_t capacity) {
    capacity = roundedToPages(capacity);
    void* const pages =
        mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        throw std::bad_alloc();
    }
    // None of them matters enough to fail for: a locked page counts against a small limit.
    madvise(pages, capacity, MADV_DONTDUMP);
    madvise(pages, capacity, MADV_WIPEONFORK);
    mlock(pages, capacity);
    auto* const bytes = static_cast<char*>(pages);
    std::copy_n(bytes_, size_, bytes);
    release();
    bytes_ = bytes;
    capacity_ = capacity;
}

void Secret::append(std::string_view text) {
    if (size_ + text.size() > capacity_) {
        grow(2 * size_ + text.size());
    }
    std::copy(text.begin(), text.end(), bytes_ + size_);
    size_ += text.size();
}

void Secret::removeLast() noexcept {
    if (size_ > 0) {
        bytes_[--size_] = '\0';
    }
}

Secret Secret::takenFrom(std::string& text) {
    Secret secret(text);
    clearText(text);
    return secret;
}

void clearText(std::string& text) noexcept {
    text.resize(text.capacity());
    explicit_bzero(text.data(), text.size());
    text.clear();
}

std::optional<Secret> readSecretLine(int descriptor) {
    constexpr std::size_t longest = 65536;
    Secret line;
    char character = 0;
    bool sawAny = false;
    while (line.view().size() < longest) {
        const ssize_t count = ::read(descriptor, &character, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0 && sawAny ? std::optional(std::move(line)) : std::nullopt;
        }
        if (character == '\n') {
            return line;
        }
        sawAny = true;
        line.append(std::exchange(character, '\0'));
    }
    return std::nullopt;
}

bool writeAll(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        ssize_t count = ::send(descriptor, text.data(), text.size(), MSG_NOSIGNAL);
        if (count < 0 && errno == ENOTSOCK) {
            count = ::write(descriptor, text.data(), text.size());
        }
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

void preventCoreFiles() noexcept {
    rlimit limit{};
    if (getrlimit(RLIMIT_CORE, &limit) == 0) {
        limit.rlim_cur = 0;
        setrlimit(RLIMIT_CORE, &limit);
    }
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace quen
