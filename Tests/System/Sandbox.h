#pragma once

#include "Host/Process/Process.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

/// How a program ended, and what it wrote.
struct Ran {
    /// The exit status; -1 where it did not end by itself.
    int status = -1;
    std::string out;
    std::string err;
};

/// A fresh repository with a working copy of its trunk, and a home of its own, so that no
/// configuration of the machine plays in. Removed with the test.
///
/// The repository holds `trunk`, `branches` and `tags`, made in r1; `workingCopy()` is a checkout
/// of `trunk` at r1. The clock says universal time, messages are in English.
class Sandbox {
public:
    using Words = std::vector<std::string>;

    Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox();

    /// The directory that holds everything.
    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path workingCopy() const { return root_ / "wc"; }
    /// The repository's root, or a place below it: `url("trunk/a.c")`.
    std::string url(std::string_view path = {}) const;

    /// Writes a file of the working copy, with the directories above it.
    void write(const std::filesystem::path& path, std::string_view text) const;
    /// What a file holds; a path that is not absolute is one of the working copy.
    std::string read(const std::filesystem::path& path) const;

    /// Runs the client in the working copy, and throws where it fails: for what a test takes for
    /// granted. Answers its output.
    std::string svn(const Words& words) const;
    /// Commits the working copy under a name and brings it up to date.
    void commit(const std::string& message, const std::string& author = "alice") const;

    /// Runs quen in the working copy, or in another directory.
    Ran quen(const Words& words) const { return quen(words, workingCopy()); }
    Ran quen(const Words& words, const std::filesystem::path& directory) const;
    /// Runs any program, looked up on PATH, in the sandbox's environment. `variables` are further
    /// ones: `NAME=value`.
    Ran run(const Words& words, const std::filesystem::path& directory,
            const Words& variables = {}) const;
    /// What `run` runs, for a test that must do something meanwhile.
    ProcessInvocation invocation(const Words& words, const std::filesystem::path& directory,
                                 const Words& variables = {}) const;

    /// A text with what differs from run to run replaced: the sandbox's directory by `SANDBOX`,
    /// dates by `DATE`, ages (`3 minutes ago`) by `AGE`.
    std::string neutral(std::string_view text) const;

    /// The program under test.
    static std::string program();

private:
    std::filesystem::path root_;
};

} // namespace quen::test
