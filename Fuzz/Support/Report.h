#pragma once

#include "Fuzz/Support/Host.h"
#include "Fuzz/Support/Input.h"
#include "Tests/Support/RequestBuilder.h"

#include <initializer_list>
#include <memory>

namespace quen::fuzz {

using namespace test;

/// What the input's first three bytes choose for a target that reads a report.
struct ReportChoices {
    /// Left to the target.
    unsigned options = 0;
    PlayedRun run;
};

/// The rest of the input is the report, whole in `run.output` and cut in `run.pieces`.
ReportChoices reportChoices(FuzzInput& input);

/// Runs two operations on the same report, one that sees it in pieces as it arrives and one that
/// finds it whole at the end. Both must leave the same, which is returned.
Outcome agreedOutcome(const ReportChoices& choices, const QuenSourceControlOperationPtr& piecewise,
                      const QuenSourceControlOperationPtr& whole);

template <typename Class>
Outcome agreedOutcome(const ReportChoices& choices, const Request& request) {
    const auto make = [&] {
        auto operation = std::make_shared<Class>();
        operation->initWithRequest(request.make());
        return operation;
    };
    return agreedOutcome(choices, make(), make());
}

enum class FieldKind { text, integer, boolean, date, table };

/// What a record may hold, or must.
struct Field {
    const String& key;
    FieldKind kind;
    bool isAlwaysThere = false;
};

/// The result is nothing, or a list of records that hold these fields and no others.
void requireRecords(const Value& result, std::initializer_list<Field> fields);

} // namespace quen::fuzz
