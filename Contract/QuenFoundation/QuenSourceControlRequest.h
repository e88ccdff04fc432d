#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "QuenFoundation/QuenSourceControlSourceTree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quen {

using StringArray = std::vector<String>;

/// What a host asks of a provider. Members are defined by the host, and `State` is the host's own.
///
/// The provider reads a request, makes new ones for the steps of a longer work, and rewrites the
/// file list of one that it makes a client operation for: names that hold an `@` are closed with
/// another. The host sees that list afterwards.
///
/// Threads: one thread at a time. The host hands a request over with the call that asks for an
/// operation, and leaves it alone until the operation has ended.
class QUEN_EXPORT QuenSourceControlRequest {
public:
    /// An empty request of type 0; one of the two initialisers or the setters fill it.
    QuenSourceControlRequest();
    QuenSourceControlRequest(const QuenSourceControlRequest&) = delete;
    QuenSourceControlRequest& operator=(const QuenSourceControlRequest&) = delete;
    virtual ~QuenSourceControlRequest();

    /// The provider's way to make a request of its own; what is not given is absent.
    void initWithType(std::int32_t type, QuenSourceControlSourceTreePtr sourceTree,
                      String destination, std::optional<StringArray> files, Dictionary options);
    void initWithType(std::int32_t type, QuenSourceControlSourceTreePtr sourceTree,
                      std::optional<StringArray> files, Dictionary options);

    /// One of RequestType, or any other number.
    std::int32_t type() const;
    void setType(std::int32_t type);

    /// What the request is about; null for none.
    QuenSourceControlSourceTreePtr sourceTree() const;
    void setSourceTree(QuenSourceControlSourceTreePtr sourceTree);

    /// A target path or URL; nil for none.
    String destination() const;
    void setDestination(String destination);

    /// Paths or URLs; absent is not the same as empty. The reference is good until `setFiles`.
    const std::optional<StringArray>& files() const;
    void setFiles(std::optional<StringArray> files);

    /// Further parameters under the option keys; nil for none.
    const Dictionary& options() const;
    void setOptions(Dictionary options);

    /// A revision, or the first and the last of a range: a number, a date in braces, or one of the
    /// revision-name constants; nil for none.
    String startingRevision() const;
    void setStartingRevision(String revision);
    String endingRevision() const;
    void setEndingRevision(String revision);

    /// The repository that authentication is about; null for none.
    QuenSourceControlRepositoryPtr repositoryToAuthenticate() const;
    void setRepositoryToAuthenticate(QuenSourceControlRepositoryPtr repository);

private:
    struct State;
    std::unique_ptr<State> state_;
};

using QuenSourceControlRequestPtr = std::shared_ptr<QuenSourceControlRequest>;

} // namespace quen
