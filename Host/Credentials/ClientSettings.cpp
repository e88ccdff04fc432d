#include "Host/Credentials/ClientSettings.h"

#include "Foundation/Lines.h"

#include <algorithm>
#include <cctype>

namespace quen {

namespace {

bool isName(std::string_view text, std::string_view name) {
    return std::equal(text.begin(), text.end(), name.begin(), name.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
    });
}

/// Lines that begin with a blank belong to the line above.
std::string continuation(std::string_view& text) {
    std::string more;
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        more.append(" ").append(trimmed(takeLine(text)));
    }
    return more;
}

/// `NAME = VALUE` or `NAME: VALUE`.
std::optional<std::string_view> valueFor(std::string_view name, std::string_view line) {
    const std::size_t at = line.find_first_of("=:");
    if (at == std::string_view::npos || !isName(trimmed(line.substr(0, at)), name)) {
        return std::nullopt;
    }
    return trimmed(line.substr(at + 1));
}

} // namespace

std::optional<std::string> passwordStoresOf(std::string_view settings) {
    std::optional<std::string> stores;
    bool isInAuth = false;
    while (!settings.empty()) {
        const std::string_view line = takeLine(settings);
        if (line.starts_with('#')) {
            continue;
        }
        const std::string more = continuation(settings);
        if (line.starts_with('[')) {
            isInAuth = isName(line.substr(0, line.find(']') + 1), "[auth]");
        } else if (const auto value = valueFor("password-stores", line); isInAuth && value) {
            stores = std::string(trimmed(std::string(*value) + more));
        }
    }
    return stores;
}

std::optional<std::string> settingsWithAgent(std::string_view settings, std::string_view common) {
    std::optional<std::string> stores = passwordStoresOf(settings);
    stores = stores ? stores : passwordStoresOf(common);
    if (!stores || stores->find("gpg-agent") != std::string::npos) {
        return std::nullopt;
    }
    // A later line counts for more than an earlier one.
    return std::string(settings) + "\n[auth]\npassword-stores = " + *stores +
           (stores->empty() ? "" : ",") + "gpg-agent\n";
}

} // namespace quen
