#include "Host/Credentials/KeptPassword.h"

#include <array>
#include <cstdint>
#include <md5.h>

namespace quen {

namespace {

void appendPair(std::string& entry, std::string_view key, std::string_view value) {
    entry.append("K ").append(std::to_string(key.size())).append("\n").append(key);
    entry.append("\nV ").append(std::to_string(value.size())).append("\n").append(value);
    entry.append("\n");
}

} // namespace

std::string entryNameOf(std::string_view realm) {
    std::array<char, MD5_DIGEST_STRING_LENGTH> digits{};
    MD5Data(reinterpret_cast<const std::uint8_t*>(realm.data()), realm.size(), digits.data());
    return digits.data();
}

std::string secureShellRealm(std::string_view prompt) {
    return "ssh: " + std::string(prompt);
}

std::string agentEntry(const KeptPassword& password) {
    std::string entry;
    appendPair(entry, "passtype", "gpg-agent");
    appendPair(entry, "svn:realmstring", password.realm);
    appendPair(entry, "username", password.user);
    return entry + "END\n";
}

std::string userOfEntry(std::string_view entry) {
    constexpr std::string_view key = "K 8\nusername\nV ";
    const std::size_t at = entry.find(key);
    if (at == std::string_view::npos) {
        return {};
    }
    entry.remove_prefix(at + key.size());
    const std::size_t begin = entry.find('\n') + 1;
    return begin == 0 ? std::string()
                      : std::string(entry.substr(begin, entry.find('\n', begin) - begin));
}

} // namespace quen
