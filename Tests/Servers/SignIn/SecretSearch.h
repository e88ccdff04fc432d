#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

/// Looks for secrets where none may be, also in the forms in which they travel: in percent escapes
/// and in base64 behind a user's name.
class SecretSearch {
public:
    SecretSearch(const std::vector<std::string>& secrets, const std::string& user);

    bool isIn(std::string_view text) const;

    /// Files at and below the directory, by name or content, without those below `others`: servers
    /// know the passwords themselves.
    std::vector<std::string> filesWith(const std::filesystem::path& directory,
                                       const std::vector<std::filesystem::path>& others) const;

    /// Arguments, environments and open files of all that this process has started, and of all that
    /// has `mark` in its environment.
    std::vector<std::string> processesWith(const std::string& mark,
                                           const std::vector<std::filesystem::path>& others) const;

private:
    std::vector<std::string> forms_;
};

} // namespace quen::test
