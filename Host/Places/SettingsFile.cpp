#include "Host/Places/SettingsFile.h"

#include "Foundation/Lines.h"
#include "Host/WorkingCopyCleanup.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace quen {

namespace {

std::string* memberNamed(Settings& settings, std::string_view name) {
    if (name == "trunk") {
        return &settings.layout.trunk;
    }
    if (name == "branches") {
        return &settings.layout.branches;
    }
    return name == "username" ? &settings.user : nullptr;
}

/// Takes one line in; what is wrong with it, or the empty text.
std::string readLine(std::string_view line, Settings& settings) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
        return "expected `name = value`, as in `trunk = ^/trunk`.";
    }
    const std::string name(trimmed(line.substr(0, equals)));
    std::string* const member = memberNamed(settings, name);
    if (member == nullptr) {
        return "\"" + name + "\" is not a setting; there are trunk, branches and username.";
    }
    *member = trimmed(line.substr(equals + 1));
    return member->empty() ? "\"" + name + "\" is given no value." : "";
}

/// The directory itself and those above it, as far as the first for which `holds`.
template <typename Predicate>
std::filesystem::path firstFrom(std::filesystem::path directory, Predicate holds) {
    for (; !holds(directory); directory = directory.parent_path()) {
        if (directory == directory.parent_path()) {
            return {};
        }
    }
    return directory;
}

bool isThere(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

} // namespace

std::optional<Settings> parseSettings(std::string_view text, const std::string& file,
                                      std::string& problem) {
    Settings settings;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = trimmed(takeLine(text));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (const std::string fault = readLine(line, settings); !fault.empty()) {
            problem = file + ":" + std::to_string(number) + ": " + fault;
            return std::nullopt;
        }
    }
    return settings;
}

std::optional<Settings> settingsFor(const std::filesystem::path& path, std::string& problem) {
    const std::filesystem::path top = topDirectoryOf(path);
    const auto directory = top.empty() ? top : firstFrom(top, [](const std::filesystem::path& at) {
        return isThere(at / ".quen");
    });
    if (directory.empty()) {
        return Settings();
    }
    const std::string file = (directory / ".quen").string();
    std::error_code error;
    std::ifstream stream(file);
    if (!stream.is_open() || !std::filesystem::is_regular_file(file, error)) {
        problem = file + " cannot be read; make it a readable file, or take it away.";
        return std::nullopt;
    }
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    return parseSettings(text, file, problem);
}

std::filesystem::path topDirectoryOf(const std::filesystem::path& path) {
    const String top = topOfWorkingCopy(path.string());
    return top.isNil() ? std::filesystem::path() : std::filesystem::path(top.str());
}

} // namespace quen
