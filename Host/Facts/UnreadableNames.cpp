#include "Host/Facts/UnreadableNames.h"

#include "Host/Text.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace quen {

namespace {

/// The directory that the client's sentence names; empty where it is not there.
std::string_view directoryIn(std::string_view text) noexcept {
    constexpr std::string_view beginning = "Error converting entry in directory '";
    constexpr std::string_view ending = "' to UTF-8";
    const std::size_t found = text.find(beginning);
    if (found == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(found + beginning.size());
    const std::size_t end = text.find(ending);
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end);
}

} // namespace

UnreadableNames unreadableNamesOf(const Error& error) {
    UnreadableNames answer;
    const String text = error.localizedDescription();
    const std::string_view directory = directoryIn(text.view());
    if (directory.empty()) {
        return answer;
    }
    answer.directory = String(directory);
    std::error_code ignored;
    for (const auto& each : std::filesystem::directory_iterator(directory, ignored)) {
        const std::string name = each.path().filename().string();
        if (!isUTF8(name)) {
            answer.names.emplace_back(name);
        }
    }
    std::sort(answer.names.begin(), answer.names.end(),
              [](const String& a, const String& b) { return a.view() < b.view(); });
    return answer;
}

} // namespace quen
