#include "Host/Places/BranchNames.h"

#include "Foundation/PegPath.h"

#include <string>

namespace quen {

namespace {

bool isUnreserved(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~").find(static_cast<char>(c)) != std::string_view::npos;
}

std::string percentEncoded(unsigned char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {'%', digits[c >> 4U], digits[c & 0xFU]};
}

} // namespace

bool isBranchName(std::string_view name) {
    while (true) {
        const std::size_t end = name.find('/');
        const std::string_view part = name.substr(0, end);
        if (part.empty() || part == "." || part == "..") {
            return false;
        }
        if (end == std::string_view::npos) {
            return true;
        }
        name.remove_prefix(end + 1);
    }
}

std::string encodedName(std::string_view name) {
    std::string encoded;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        // The client takes `%40` for an `@` all the same, see closedClientPath.
        encoded +=
            c == '/' || c == '@' || isUnreserved(byte) ? std::string(1, c) : percentEncoded(byte);
    }
    return encoded;
}

String branchNameInURL(std::string_view name) {
    return withPegClosed(encodedName(name));
}

} // namespace quen
