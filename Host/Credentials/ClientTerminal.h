#pragma once

#include "Host/Process/ChildProcess.h"
#include "Host/Process/FileDescriptor.h"
#include "Host/Process/Process.h"

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

namespace quen {

/// A client on a terminal that nobody sees, so that it asks what it would ask a person. It ends
/// with this object, with all that it started.
class ClientTerminal {
public:
    /// Null where there is no terminal or no client to be had.
    static std::unique_ptr<ClientTerminal> start(const ProcessInvocation& invocation);
    ClientTerminal(const ClientTerminal&) = delete;
    ClientTerminal& operator=(const ClientTerminal&) = delete;
    ~ClientTerminal();

    /// Reads until `isEnough` says so of all that has been shown; false where the client ends,
    /// falls silent for longer than `patience`, or `stop` is requested before that.
    template <typename Predicate>
    bool readUntil(Predicate isEnough, std::chrono::milliseconds patience, std::stop_token stop) {
        while (!isEnough(shown())) {
            if (!readMore(patience, stop)) {
                return false;
            }
        }
        return true;
    }

    /// What the client has shown so far. Lines end with a line feed.
    std::string_view shown() const { return shown_; }

    void type(std::string_view keys) const { writeKeys(keys); }

private:
    ClientTerminal(FileDescriptor terminal, pid_t pid);

    bool readMore(std::chrono::milliseconds patience, const std::stop_token& stop);
    void writeKeys(std::string_view keys) const;

    FileDescriptor terminal_;
    ChildProcess child_;
    std::string shown_;
};

/// Runs a program that reads `input`, and nothing else, from its standard input, and throws away
/// what it writes. Its exit status; -1 where it did not end by itself in time.
int runWithInput(const ProcessInvocation& invocation, std::string_view input,
                 std::chrono::milliseconds patience, const std::stop_token& stop);

} // namespace quen
