#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tests/Support/Printers.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace quen::test {

/// A request as a test's table writes it down: `Request{.type = RequestTypeStatus,
/// .files = StringArray{"a.c"}}.make()`. What is not named is absent.
struct Request {
    std::int32_t type = 0;
    QuenSourceControlSourceTreePtr sourceTree = {};
    String destination = {};
    std::optional<StringArray> files = {};
    Dictionary options = {};
    String startingRevision = {};
    String endingRevision = {};
    QuenSourceControlRepositoryPtr repositoryToAuthenticate = {};

    /// A new request each time: operations change the file list of theirs.
    QuenSourceControlRequestPtr make() const {
        auto request = std::make_shared<QuenSourceControlRequest>();
        request->initWithType(type, sourceTree, destination, files, options);
        request->setStartingRevision(startingRevision);
        request->setEndingRevision(endingRevision);
        request->setRepositoryToAuthenticate(repositoryToAuthenticate);
        return request;
    }
};

} // namespace quen::test
