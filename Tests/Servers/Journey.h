#pragma once

#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Servers/Server.h"

#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace quen::test {

using Json = nlohmann::ordered_json;

/// Requests about one repository behind one server, made by the console with the module and the
/// client that people use. What they leave is looked up in the repository's files, past the server.
class Journey {
public:
    explicit Journey(ServerKind kind) : server_(sandbox_, kind) {}

    const Sandbox& sandbox() const { return sandbox_; }
    const Server& server() const { return server_; }
    Server& server() { return server_; }

    std::filesystem::path place(const std::string& name) const { return sandbox_.root() / name; }
    /// Where the relative paths of requests begin: a checkout that the journey makes first.
    std::filesystem::path workingCopy() const { return place("project"); }

    /// Source trees, as the console takes them.
    Json repository() const;
    Json workingTree(const std::filesystem::path& location) const;
    Json workingTree() const { return workingTree(workingCopy()); }

    /// The console's whole answer to a request. It stands in the working copy, if there is one.
    Json serve(const Json& request, RequestType type, const Json& tree) const;
    /// The result of a request that must pass without an error.
    Json ask(RequestType type, const Json& tree, const Json& request);
    /// Of each record the value of a key, named without its prefix and suffix: `Path`.
    static Json column(const Json& records, const std::string& key);

    const std::set<RequestType>& passed() const { return passed_; }
    int requests() const { return requests_; }

    /// Every type that the provider serves.
    static std::set<RequestType> servedTypes();

private:
    Sandbox sandbox_;
    Server server_;
    std::set<RequestType> passed_;
    int requests_ = 0;
};

} // namespace quen::test
