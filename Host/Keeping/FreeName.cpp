#include "Host/Keeping/FreeName.h"

#include "Foundation/PathComponents.h"

#include <cerrno>
#include <climits>

namespace quen {

namespace {

/// `name` with at most `size` bytes, cut between characters.
std::string_view beginning(std::string_view name, std::size_t size) {
    if (name.size() <= size) {
        return name;
    }
    while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return name.substr(0, size);
}

String nameWith(const std::string& path, const std::string& suffix) {
    const std::string_view name = beginning(lastPathComponent(path), NAME_MAX - suffix.size());
    return appendingPathComponent(deletingLastPathComponent(path), std::string(name) + suffix);
}

} // namespace

Placement atFreeName(const std::string& path, std::string_view suffix,
                     const std::function<Error(const String& path)>& put) {
    constexpr int attempts = 10'000;
    Placement placement;
    for (int number = 1; number <= attempts; ++number) {
        const std::string numbered = number == 1 ? "" : "." + std::to_string(number);
        const String name = nameWith(path, std::string(suffix) + numbered);
        placement.error = put(name);
        if (!placement.error) {
            placement.path = name;
            return placement;
        }
        if (placement.error.code() != EEXIST) {
            return placement;
        }
    }
    return placement;
}

} // namespace quen
