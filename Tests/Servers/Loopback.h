#pragma once

#include "Host/Process/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace quen::test {

/// Where a server of a test listens. The address is this process's alone, among all loopback
/// addresses, so that tests at the same time never meet, also between finding a port free and
/// listening on it.
struct Loopback {
    std::string address;
    std::uint16_t port = 0;

    /// A place where nobody listens. Throws where there is none.
    static Loopback free();

    /// `127.0.0.1:3690`
    std::string text() const { return address + ":" + std::to_string(port); }
};

/// A socket that listens on a port of this process's address that was free, with the place's name.
/// Throws where none can be had.
FileDescriptor listenOnLoopback(Loopback& place);

/// A connection to who listens there now; not open where nobody does.
FileDescriptor connectTo(const Loopback& place);

} // namespace quen::test
