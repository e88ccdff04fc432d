#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Host/Process/Process.h"

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace quen::test {

/// A program on a terminal of its own, with a person in front of it. No wait lasts longer than half
/// a minute.
class Terminal {
public:
    /// Throws where there is no terminal to be had.
    explicit Terminal(const ProcessInvocation& invocation);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    /// Ends the program if it is still there.
    ~Terminal();

    /// Reads until the text has been shown; false where it never is.
    bool waitFor(std::string_view text);
    /// Reads until one of the texts is shown behind what this found before; its place in the list,
    /// or nothing where the program ends first.
    std::optional<std::size_t> waitForNext(std::initializer_list<std::string_view> texts);
    void type(std::string_view keys) const;
    /// Reads until the program has ended; its exit status, -1 where it has none.
    int waitForEnd();

    /// Everything that has been shown. Lines end with a carriage return and a line feed.
    const std::string& shown() const { return shown_; }

private:
    bool read(std::chrono::steady_clock::time_point deadline);

    FileDescriptor keyboard_;
    int child_ = -1;
    std::string shown_;
    std::size_t found_ = 0;
};

} // namespace quen::test
