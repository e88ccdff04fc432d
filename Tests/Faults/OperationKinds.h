#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tests/Support/RequestBuilder.h"

#include <string>
#include <vector>

namespace quen::test {

/// What an operation makes of the client's standard output.
enum class OutputUse {
    nothing,
    /// A text, of which any will do.
    text,
    /// A report that must be well-formed,
    report,
    /// or else is passed over in silence.
    summary,
    /// A file that must lie on the disk afterwards; the output does not count.
    file,
    /// The report of a query, for an edit that may follow; the query's error is wrapped.
    chain,
};

/// A request of one type, as complete as its class wants it, or one of two of which each takes
/// another way through the class.
struct OperationKind {
    std::string name;
    Request request;
    /// The client's sub-command.
    std::string command;
    OutputUse reading;
    /// A right output; empty where none is read.
    std::string output = {};
    /// For `OutputUse::file`: whether it is there.
    bool fileIsThere = false;
};

/// One for each way through each class: every type that is served. The places in the requests are
/// in no repository, but for one directory that exists.
std::vector<OperationKind> operationKinds(const String& existingDirectory);

/// The provider in the loaded module.
QuenSourceControlProtocolPtr loadedProvider();

/// Ready to run; throws where the provider refuses it.
QuenSourceControlOperationPtr operationOf(const OperationKind& kind);

} // namespace quen::test
