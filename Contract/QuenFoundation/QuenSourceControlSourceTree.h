#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Foundation/URL.h"

#include <memory>

namespace quen {

/// A place that source control knows: a repository or a working copy. The host implements these
/// classes and owns the records; the provider only reads them, and tells the two kinds apart by a
/// class test alone. A host may have further kinds; the provider treats them as neither.
///
/// Threads: a record may be read from any thread while an operation made with it lives. A host that
/// changes one meanwhile must guard it.
class QUEN_EXPORT QuenSourceControlSourceTree {
public:
    QuenSourceControlSourceTree() = default;
    QuenSourceControlSourceTree(const QuenSourceControlSourceTree&) = delete;
    QuenSourceControlSourceTree& operator=(const QuenSourceControlSourceTree&) = delete;
    virtual ~QuenSourceControlSourceTree() = default;

    /// What people call it, for error texts. May be nil.
    virtual String name() const = 0;
    /// The repository (a working tree's own one) can be contacted now.
    virtual bool reachable() const = 0;
    /// The record is usable.
    virtual bool isValid() const = 0;
    /// The working copy's path or the repository's URL, as the client is to be given it. May be
    /// nil.
    virtual String location() const = 0;
    /// Whether a path or URL lies inside this tree.
    virtual bool containsItemAtLocation(const String& location) const = 0;
    /// How an assertion message shows this object.
    virtual String descriptionForAssertionMessage() const = 0;
};

using QuenSourceControlSourceTreePtr = std::shared_ptr<QuenSourceControlSourceTree>;

/// A repository.
class QUEN_EXPORT QuenSourceControlRepository : public QuenSourceControlSourceTree {
public:
    /// The user name for the client; nil or empty for none.
    virtual String user() const = 0;
    /// The URL of the trunk, and of the folder that holds the branches; nil where not configured.
    virtual URL trunkLocation() const = 0;
    virtual URL branchesLocation() const = 0;
};

using QuenSourceControlRepositoryPtr = std::shared_ptr<QuenSourceControlRepository>;

/// A working copy.
class QUEN_EXPORT QuenSourceControlWorkingTree : public QuenSourceControlSourceTree {
public:
    /// The repository that it was checked out from; null where the host knows none.
    virtual QuenSourceControlRepositoryPtr repository() const = 0;
};

using QuenSourceControlWorkingTreePtr = std::shared_ptr<QuenSourceControlWorkingTree>;

} // namespace quen
