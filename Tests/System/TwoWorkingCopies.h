#pragma once

#include "Tests/System/Sandbox.h"

#include <filesystem>
#include <stdexcept>
#include <string>

namespace quen::test {

/// Two people at work on one trunk: ours is the sandbox's working copy, in which `quen` runs, and
/// theirs lies beside it.
class TwoWorkingCopies {
public:
    TwoWorkingCopies() { sandbox.svn({"checkout", "-q", sandbox.url("trunk"), theirs().string()}); }

    std::filesystem::path theirs() const { return sandbox.root() / "theirs"; }

    void write(const std::string& name, std::string_view text) const { sandbox.write(name, text); }
    void writeTheirs(const std::string& name, std::string_view text) const {
        sandbox.write(theirs() / name, text);
    }
    std::string svnTheirs(Sandbox::Words words) const {
        words.insert(words.begin(), {"svn", "--non-interactive"});
        const Ran ran = sandbox.run(words, theirs());
        if (ran.status != 0) {
            throw std::runtime_error("svn " + words[2] + ": " + ran.err);
        }
        return ran.out;
    }
    /// Adds and commits all of theirs.
    void commitTheirs() const {
        svnTheirs({"add", "-q", "--force", "."});
        svnTheirs({"commit", "-q", "--username", "bob", "-m", "Theirs"});
        svnTheirs({"update", "-q"});
    }
    /// Adds and commits all of ours, and brings both up to date.
    void commitOurs() const {
        sandbox.svn({"add", "-q", "--force", "."});
        sandbox.commit("Ours");
        svnTheirs({"update", "-q"});
    }
    bool exists(const std::string& name) const {
        return std::filesystem::exists(
            std::filesystem::symlink_status(sandbox.workingCopy() / name));
    }

    const Sandbox sandbox;
};

} // namespace quen::test
