#pragma once

#include "Foundation/Value.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace quen::tools {

/// What is known of an error, from its numbers, its request and the disk.
struct ErrorFacts {
    using Names = std::vector<std::string>;

    /// `request` is the one that failed; null where there was none.
    static ErrorFacts of(const Error& error, const QuenSourceControlRequest* request);

    /// Any of the client's numbers.
    bool has(const std::vector<std::int64_t>& any) const;
    /// Something is not in a working copy, or not under version control there.
    bool saysOutside() const { return isOutside || has({155007}); }

    /// Of the request's files, those that are in no working copy, that are not on the disk, that
    /// are.
    Names filesOutside() const;
    Names filesMissing() const;
    Names filesPresent() const;

    std::set<std::int64_t> numbers;
    TaskFailure failure = TaskFailure::other;
    /// Everything that the request names, and its files alone, which must be there; as they were
    /// typed. `.` where it names nothing.
    Names names;
    Names files;
    std::int32_t requestType = 0;
    /// The provider's own code for what is not under version control.
    bool isOutside = false;
};

} // namespace quen::tools
