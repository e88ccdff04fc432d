#pragma once

#include "Tests/Server/RunningServer.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {

/// A working copy for servers that a test starts itself, and its paths as a server names them.
class FilesToServe : public ::testing::Test {
protected:
    /// `a.c` and `d/b.c` in r2, each with its name's letter on a line.
    void commitTwoFiles() const {
        sandbox.write("a.c", "a\n");
        sandbox.write("d/b.c", "b\n");
        sandbox.svn({"add", "-q", "a.c", "d"});
        sandbox.commit("Two files");
    }
    /// Somebody else commits this text, on the trunk or on a branch.
    void changeElsewhere(const std::string& name, const std::string& text,
                         const std::string& place = "trunk") const {
        const std::string other = (sandbox.root() / "other").string();
        std::filesystem::remove_all(other);
        sandbox.svn({"checkout", "-q", sandbox.url(place), other});
        sandbox.write(std::filesystem::path(other) / name, text);
        sandbox.svn({"add", "-q", "--force", other});
        sandbox.svn({"commit", "-q", "-m", "theirs", other});
    }

    std::string root() const { return sandbox.workingCopy().string(); }
    std::string path(const std::string& name) const {
        return (sandbox.workingCopy() / name).string();
    }
    /// An item of an answer.
    static Json itemOf(const std::string& path, const std::string& action) {
        return {{"path", path}, {"action", action}};
    }
    Json countsOf(RunningServer& server) const {
        return server.ask("workingCopy/status", {{"workingCopy", root()}}).at("counts");
    }

    Sandbox sandbox;
};

/// Likewise, with a server.
class ServedFiles : public FilesToServe {
protected:
    void openWorkingCopy() {
        server.initialize();
        server.ask("workingCopy/open", {{"path", root()}});
    }
    Json counts() { return countsOf(server); }

    RunningServer server{sandbox};
};

} // namespace quen::test
