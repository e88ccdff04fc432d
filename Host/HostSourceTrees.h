#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlSourceTree.h"

#include <memory>
#include <optional>
#include <vector>

namespace quen {

/// What the reference host knows of any source tree. Set up before the tree is handed to anybody.
struct HostSourceTreeFacts {
    String name;
    String location;
    bool reachable = true;
    bool isValid = true;
    /// The exact locations that count as inside the tree. Absent: the tree's own location and
    /// everything below it, compared by whole path components.
    std::optional<std::vector<String>> contains;
};

/// Whether `location` is `tree` or lies below it, by whole path components: `/a/b` is inside `/a`,
/// `/ab` is not. Nothing is inside a nil location.
QUEN_EXPORT bool isLocationInside(const String& location, const String& tree);

/// The reference host's repository record.
class QUEN_EXPORT HostRepository : public QuenSourceControlRepository {
public:
    struct Facts : HostSourceTreeFacts {
        String user;
        URL trunkLocation;
        URL branchesLocation;
    };
    explicit HostRepository(Facts facts);

    String name() const override { return facts_.name; }
    bool reachable() const override { return facts_.reachable; }
    bool isValid() const override { return facts_.isValid; }
    String location() const override { return facts_.location; }
    bool containsItemAtLocation(const String& location) const override;
    String descriptionForAssertionMessage() const override;
    String user() const override { return facts_.user; }
    URL trunkLocation() const override { return facts_.trunkLocation; }
    URL branchesLocation() const override { return facts_.branchesLocation; }

private:
    Facts facts_;
};

/// The reference host's working copy record.
class QUEN_EXPORT HostWorkingTree : public QuenSourceControlWorkingTree {
public:
    struct Facts : HostSourceTreeFacts {
        QuenSourceControlRepositoryPtr repository;
    };
    explicit HostWorkingTree(Facts facts);

    String name() const override { return facts_.name; }
    bool reachable() const override { return facts_.reachable; }
    bool isValid() const override { return facts_.isValid; }
    String location() const override { return facts_.location; }
    bool containsItemAtLocation(const String& location) const override;
    String descriptionForAssertionMessage() const override;
    QuenSourceControlRepositoryPtr repository() const override { return facts_.repository; }

private:
    Facts facts_;
};

/// A source tree that is neither.
class QUEN_EXPORT HostOtherTree : public QuenSourceControlSourceTree {
public:
    using Facts = HostSourceTreeFacts;
    explicit HostOtherTree(Facts facts);

    String name() const override { return facts_.name; }
    bool reachable() const override { return facts_.reachable; }
    bool isValid() const override { return facts_.isValid; }
    String location() const override { return facts_.location; }
    bool containsItemAtLocation(const String& location) const override;
    String descriptionForAssertionMessage() const override;

private:
    Facts facts_;
};

} // namespace quen
