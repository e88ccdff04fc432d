#pragma once

#include "Foundation/Value.h"
#include "Host/ToolRunner.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <optional>
#include <string_view>
#include <vector>

namespace quen::fuzz {

/// A run of the client as a target plays it. The texts outlive the run.
struct PlayedRun {
    std::string_view output = {};
    std::string_view errors = {};
    std::optional<int> exitStatus = 0;
    std::optional<int> signal = {};
    /// What the operation sees of the output before the run's end.
    std::vector<std::string_view> pieces = {};
};

/// What an operation left, what it had to say, and which runs it asked for.
struct Outcome {
    Value result;
    Error error;
    bool isDataReleased = false;
    /// Failed assertions and log messages, in the order in which they came.
    std::vector<String> remarks;
    /// The class that asked, then the arguments.
    std::vector<StringArray> runs;

    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend void PrintTo(const Outcome& outcome, std::ostream* out);
};

/// Runs the operation on a host that starts nothing, prints nothing and touches no file: on a queue
/// without threads, with the played runs one after the other; those behind the last are empty.
Outcome outcomeOf(const QuenSourceControlOperationPtr& operation, std::vector<PlayedRun> runs);

} // namespace quen::fuzz
