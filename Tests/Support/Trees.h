#pragma once

#include "Host/HostSourceTrees.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quen::test {

/// What a test says of a source tree. What is not named is absent, except that a tree can be
/// reached and is valid.
struct TreeFacts {
    String name = {};
    String location = {};
    bool reachable = true;
    bool isValid = true;
    std::optional<std::vector<String>> contains = {};
    /// Of a repository.
    String user = {};
    String trunkLocation = {};
    String branchesLocation = {};
    /// Of a working tree.
    QuenSourceControlRepositoryPtr repository = {};
};

inline std::shared_ptr<HostRepository> repository(const TreeFacts& facts = {}) {
    return std::make_shared<HostRepository>(HostRepository::Facts{
        facts.name, facts.location, facts.reachable, facts.isValid, facts.contains, facts.user,
        URL::fromString(facts.trunkLocation), URL::fromString(facts.branchesLocation)});
}

inline std::shared_ptr<HostWorkingTree> workingTree(const TreeFacts& facts = {}) {
    return std::make_shared<HostWorkingTree>(
        HostWorkingTree::Facts{facts.name, facts.location, facts.reachable, facts.isValid,
                               facts.contains, facts.repository});
}

/// A tree that is neither.
inline std::shared_ptr<HostOtherTree> otherTree(const TreeFacts& facts = {}) {
    return std::make_shared<HostOtherTree>(HostOtherTree::Facts{
        facts.name, facts.location, facts.reachable, facts.isValid, facts.contains});
}

} // namespace quen::test
