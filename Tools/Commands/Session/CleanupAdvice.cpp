#include "Tools/Commands/Session/CleanupAdvice.h"

#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "Host/TaskFailure.h"

#include <algorithm>

namespace quen::tools {

namespace {

bool isPlain(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("/._-+,:@%=").find(static_cast<char>(c)) != std::string_view::npos;
}

} // namespace

bool saysLocked(const Error& error) {
    return taskFailureOf(error) == TaskFailure::locked;
}

std::string shellWord(std::string_view text) {
    if (!text.empty() && std::all_of(text.begin(), text.end(), isPlain)) {
        return std::string(text);
    }
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return word + "'";
}

std::string cleanupCommandFor(const std::string& path) {
    std::string top = topDirectoryOf(path).string();
    while (top.size() > 1 && top.ends_with('/')) {
        top.pop_back();
    }
    return top.empty() ? std::string() : "svn cleanup " + shellWord(closedClientPath(top).view());
}

} // namespace quen::tools
