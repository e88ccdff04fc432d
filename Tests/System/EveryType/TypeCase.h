#pragma once

#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"
#include "Tests/System/Sandbox.h"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quen::test {

/// Stands for the file that the result names.
constexpr std::string_view resultFile = "RESULT";

/// What the client itself says afterwards, and what it must say, word for word but for what differs
/// from run to run (`Sandbox::neutral`).
struct Effect {
    Sandbox::Words words;
    std::string out;
};

/// An error as far as the table fixes it. A code of 0 stands for no error.
struct ExpectedError {
    std::int64_t code = 0;
    /// Whose it is: the provider's own, or the host's about the client's complaint.
    bool isProviders = false;
    /// A piece of the error as tests print it, with its description and what lies under it.
    const char* text = "";
};

using MakeRequest = std::function<Request(const Sandbox&)>;

/// One request to the loaded module, run by the real client on a repository of its own.
struct TypeCase {
    std::string name;
    std::int32_t type;
    /// Null where the type has no operation.
    const char* className;
    /// What goes before the request, beyond `makeProject`.
    std::function<void(const Sandbox&)> prepare;
    MakeRequest request;
    /// The result as tests print values, without what differs from run to run.
    std::string result = "nothing";
    ExpectedError error = {};
    std::vector<Effect> effects = {};
    /// Files of the working copy, or the `resultFile`, and what they must hold.
    std::vector<std::pair<std::string, std::string>> contents = {};

    friend void PrintTo(const TypeCase& self, std::ostream* out) { *out << self.name; }
};

/// Where every case begins: `a.txt` ("one\n"), `b.txt` ("b\n") and `dir/c.txt` ("c\n") on the trunk
/// in r2, by alice; the branch `one`, copied in r3 by bob; the working copy at r3.
void makeProject(const Sandbox& sandbox);

/// Another person changes a file of the trunk, from a working copy of their own, and commits.
void changeElsewhere(const Sandbox& sandbox, const std::string& file, const std::string& text);

/// The repository with the usual layout, and the working copy on its trunk.
QuenSourceControlRepositoryPtr repositoryOf(const Sandbox& sandbox);
QuenSourceControlSourceTreePtr treeOf(const Sandbox& sandbox);
/// A file of the working copy, as a path from the root.
String inTree(const Sandbox& sandbox, std::string_view name);

/// A request about files of the working copy.
MakeRequest about(std::int32_t type, std::vector<std::string> names, Dictionary options = {});
/// The same, from a revision on, or for a range.
MakeRequest atRevision(MakeRequest make, String start, String end = {});

std::vector<TypeCase> queryCases();
std::vector<TypeCase> changeCases();
std::vector<TypeCase> unservedCases();

} // namespace quen::test
