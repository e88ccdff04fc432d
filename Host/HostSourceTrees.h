#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlSourceTree.h"

#include <memory>
#include <optional>
#include <vector>

namespace quen {

// What each tree knows is written down by name, and what is not named has the value that it has
// most often:
//
//     HostWorkingTree::Facts{.location = "/home/me/project", .repository = repository}
//
// Inside a tree are its own location and everything below it, compared by whole path components,
// unless `contains` lists the exact locations that count.

/// Whether `location` is `tree` or lies below it, by whole path components: `/a/b` is inside `/a`,
/// `/ab` is not. Nothing is inside a nil location.
QUEN_EXPORT bool isLocationInside(const String& location, const String& tree);

/// The reference host's repository record.
class QUEN_EXPORT HostRepository : public QuenSourceControlRepository {
public:
    struct Facts {
        String name = {};
        String location = {};
        bool reachable = true;
        bool isValid = true;
        /// The exact locations that count as inside; absent: as said above.
        std::optional<std::vector<String>> contains = {};
        String user = {};
        URL trunkLocation = {};
        URL branchesLocation = {};
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
    struct Facts {
        String name = {};
        String location = {};
        bool reachable = true;
        bool isValid = true;
        /// The exact locations that count as inside; absent: as said above.
        std::optional<std::vector<String>> contains = {};
        QuenSourceControlRepositoryPtr repository = {};
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
    struct Facts {
        String name = {};
        String location = {};
        bool reachable = true;
        bool isValid = true;
        /// The exact locations that count as inside; absent: as said above.
        std::optional<std::vector<String>> contains = {};
    };
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
