#include "Tests/Servers/SignIn/SecretSearch.h"

#include "Host/Credentials/AgentConversation.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

std::string base64Of(std::string_view text) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t at = 0; at + 2 < text.size(); at += 3) { // the rest depends on what follows
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
        const unsigned bits = (unsigned{byte(0)} << 16U) | (unsigned{byte(1)} << 8U) | byte(2);
        for (const unsigned shift : {18U, 12U, 6U, 0U}) {
            out += alphabet[(bits >> shift) & 63U];
        }
    }
    return out;
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

bool isBelowAny(const std::string& path, const std::vector<fs::path>& directories) {
    return std::any_of(directories.begin(), directories.end(), [&](const fs::path& directory) {
        return path == directory.string() || path.starts_with(directory.string() + "/");
    });
}

bool isNumber(const std::string& name) {
    return std::all_of(name.begin(), name.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// The fourth word, behind a name in brackets that may hold anything.
int parentIn(const std::string& stat) {
    const std::size_t end = stat.rfind(") ");
    return end == std::string::npos ? 0 : std::atoi(stat.c_str() + end + 4);
}

/// All processes with the number of their parent.
std::map<int, int> parents() {
    std::map<int, int> parents;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (isNumber(name)) {
            parents[std::atoi(name.c_str())] = parentIn(contentOf(entry.path() / "stat"));
        }
    }
    return parents;
}

bool descendsFrom(int process, int ancestor, const std::map<int, int>& parents) {
    while (process > 1 && process != ancestor) {
        const auto found = parents.find(process);
        process = found == parents.end() ? 0 : found->second;
    }
    return process == ancestor;
}

} // namespace

SecretSearch::SecretSearch(const std::vector<std::string>& secrets, const std::string& user) {
    for (const std::string& secret : secrets) {
        forms_.push_back(secret);
        forms_.emplace_back(escapedForAgent(secret).view());
        forms_.push_back(base64Of(user + ":" + secret));
    }
}

bool SecretSearch::isIn(std::string_view text) const {
    return std::any_of(forms_.begin(), forms_.end(), [text](const std::string& form) {
        return text.find(form) != std::string_view::npos;
    });
}

std::vector<std::string> SecretSearch::filesWith(const fs::path& directory,
                                                 const std::vector<fs::path>& others) const {
    std::vector<std::string> found;
    std::error_code error;
    for (fs::recursive_directory_iterator at(directory, error), end; !error && at != end;
         at.increment(error)) {
        const std::string path = at->path();
        if (isBelowAny(path, others)) {
            at.disable_recursion_pending();
            continue;
        }
        std::error_code ignored;
        const bool isRead = at->symlink_status(ignored).type() == fs::file_type::regular;
        if (isIn(path) || (isRead && isIn(contentOf(path)))) {
            found.push_back(path);
        }
    }
    return found;
}

std::vector<std::string> SecretSearch::processesWith(const std::string& mark,
                                                     const std::vector<fs::path>& others) const {
    std::vector<std::string> found;
    const auto all = parents();
    for (const auto& [number, parent] : all) {
        const fs::path process = fs::path("/proc") / std::to_string(number);
        const std::string environment = contentOf(process / "environ");
        const bool isOurs =
            environment.find(mark) != std::string::npos || descendsFrom(number, ::getpid(), all);
        if (!isOurs) {
            continue;
        }
        if (isIn(environment)) {
            found.push_back(process / "environ");
        }
        if (isIn(contentOf(process / "cmdline"))) {
            found.push_back(process / "cmdline");
        }
        std::error_code error;
        for (fs::directory_iterator at(process / "fd", error), end; !error && at != end;
             at.increment(error)) {
            std::error_code ignored;
            const std::string target = fs::read_symlink(at->path(), ignored);
            const bool isRead = target.starts_with('/') && !isBelowAny(target, others) &&
                                fs::is_regular_file(at->path(), ignored);
            if (isRead && isIn(contentOf(at->path()))) {
                found.push_back(at->path().string() + " -> " + target);
            }
        }
    }
    return found;
}

} // namespace quen::test
