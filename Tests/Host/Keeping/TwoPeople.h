#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "QuenFoundation/QuenSourceControlOperation.h"
#include "Tests/Faults/RealClient.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace quen::test {

/// What a run told: its facts, and how it ended.
struct Told {
    ChangeFacts facts;
    Error error;
    Value result;
};

/// One repository with `trunk`, `branches` and `tags`, and two working copies of its trunk. What is
/// done in ours goes through the loaded provider, as a host does it; theirs is a person elsewhere.
class TwoPeople {
public:
    TwoPeople();

    const Sandbox& sandbox() const { return client_.sandbox(); }
    std::filesystem::path ours() const { return sandbox().workingCopy(); }
    std::filesystem::path theirs() const { return sandbox().root() / "theirs"; }
    String url(std::string_view path) const { return sandbox().url(path); }
    /// A path of ours as the client prints it: it runs in the directory above both.
    std::string named(std::string_view path) const { return "wc/" + std::string(path); }

    void write(const std::filesystem::path& workingCopy, const std::filesystem::path& path,
               std::string_view text) const;
    /// `absent` where there is no file.
    std::string read(const std::filesystem::path& workingCopy,
                     const std::filesystem::path& path) const;

    /// The bare client, for what a test takes for granted.
    std::string svn(const std::filesystem::path& workingCopy, const Sandbox::Words& words) const;
    void commitOurs(const std::string& message) const;
    void commitTheirs(const std::string& message) const;
    void updateTheirs() const;

    /// The provider's operations on ours, with the facts of the run.
    Told update() const;
    Told merge(const String& source) const;
    Told perform(std::int32_t type, const std::vector<std::string>& paths) const;

private:
    Told told(const QuenSourceControlRequestPtr& request) const;

    RealClient client_;
};

} // namespace quen::test
