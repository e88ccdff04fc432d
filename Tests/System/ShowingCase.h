#pragma once

#include "Tests/System/Sandbox.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quen::test {

/// One command in the working copy, and everything that comes of it. The output is compared as a
/// whole, without what differs from run to run.
struct ShowingCase {
    Sandbox::Words words;
    std::string out;
    int status = 0;
    std::string err = "";
};

inline void expectEach(const Sandbox& sandbox, const std::vector<ShowingCase>& cases) {
    for (const ShowingCase& each : cases) {
        std::string command = "quen";
        for (const std::string& word : each.words) {
            command += " " + word;
        }
        SCOPED_TRACE(command);
        const Ran ran = sandbox.quen(each.words);
        EXPECT_EQ(sandbox.neutral(ran.out), each.out);
        EXPECT_EQ(sandbox.neutral(ran.err), each.err);
        EXPECT_EQ(ran.status, each.status);
    }
}

/// A history with something of everything: a change by another person (r3), a rename (r4), a branch
/// (r5, not in the working copy); names with a blank, an `@`, letters that are not ASCII, a `-` in
/// front; an empty file, a binary one, and one that is added and not committed.
inline void makeHistory(const Sandbox& sandbox) {
    using namespace std::string_literals;
    sandbox.write("greet.c", "one\ntwo\nthree\n");
    sandbox.write("with blank.txt", "blank\n");
    sandbox.write("icon@2x.txt", "x\n");
    sandbox.write("\xC3\xBCmlaut.txt", "u\n");
    sandbox.write("-dash.txt", "d\n");
    sandbox.write("empty", "");
    sandbox.write("blob", "\0\xFF"s);
    sandbox.write("src/main.c", "m\n");
    sandbox.svn({"add", "-q", "greet.c", "with blank.txt", "icon@2x.txt@", "\xC3\xBCmlaut.txt",
                 "./-dash.txt", "empty", "blob", "src"});
    sandbox.svn({"propset", "-q", "svn:mime-type", "application/octet-stream", "blob"});
    sandbox.commit("Add files");
    sandbox.write("greet.c", "one\nTWO\nthree\n");
    sandbox.write("icon@2x.txt", "x\ny\n");
    sandbox.commit("Shout\n\nLouder is clearer.", "bob");
    sandbox.svn({"move", "-q", "greet.c", "hello.c"});
    sandbox.commit("Rename greet.c");
    sandbox.svn({"copy", "-q", "--username", "bob", "-m", "Branch", sandbox.url("trunk"),
                 sandbox.url("branches/feature")});
    sandbox.write("new.c", "n\n");
    sandbox.svn({"add", "-q", "new.c"});
}

} // namespace quen::test
