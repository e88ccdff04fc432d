#include "Tests/Servers/Loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace quen::test {

namespace {

/// The numbers of processes stay below 2^22; the first half of 127/8 is left to everybody else.
in_addr_t addressOfThisProcess() {
    return htonl((127U << 24U) | (1U << 23U) | static_cast<std::uint32_t>(getpid()));
}

sockaddr_in socketAddress(in_addr_t address, std::uint16_t port) {
    sockaddr_in whole{};
    whole.sin_family = AF_INET;
    whole.sin_port = htons(port);
    whole.sin_addr.s_addr = address;
    return whole;
}

FileDescriptor makeSocket() {
    return FileDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

/// A socket bound to a port of this process's address that was free, with the place's name.
FileDescriptor bindLoopback(Loopback& place) {
    sockaddr_in address = socketAddress(addressOfThisProcess(), 0);
    socklen_t size = sizeof address;
    FileDescriptor socket = makeSocket();
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket.number(), general, size) != 0 ||
        getsockname(socket.number(), general, &size) != 0) {
        throw std::runtime_error("No port of a loopback address can be had.");
    }
    place.address = inet_ntoa(address.sin_addr);
    place.port = ntohs(address.sin_port);
    return socket;
}

} // namespace

Loopback Loopback::free() {
    Loopback place;
    bindLoopback(place);
    return place;
}

FileDescriptor listenOnLoopback(Loopback& place) {
    FileDescriptor socket = bindLoopback(place);
    if (listen(socket.number(), SOMAXCONN) != 0) {
        throw std::runtime_error("Nobody can listen at " + place.text() + ".");
    }
    return socket;
}

FileDescriptor connectTo(const Loopback& place) {
    const sockaddr_in address = socketAddress(inet_addr(place.address.c_str()), place.port);
    FileDescriptor socket = makeSocket();
    if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
        0) {
        socket.close();
    }
    return socket;
}

} // namespace quen::test
