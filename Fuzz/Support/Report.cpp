#include "Fuzz/Support/Report.h"

#include "Fuzz/Support/Check.h"
#include "Host/TaskErrors.h"

#include <algorithm>
#include <cstddef>

namespace quen::fuzz {

namespace {

/// A cut in two, many cuts, or pieces that stop before the end.
std::vector<std::string_view> cut(std::string_view report, unsigned way, unsigned position) {
    constexpr unsigned stops = 0x80;
    const std::size_t size = way & ~stops;
    std::vector<std::string_view> pieces;
    if (size == 0) {
        const std::size_t first = position * report.size() / 256;
        pieces = {report.substr(0, first), report.substr(first)};
    } else {
        // A byte at a time costs most and says least where the report is long.
        const std::size_t step = std::max(size, report.size() / 64);
        for (; !report.empty(); report.remove_prefix(std::min(step, report.size()))) {
            pieces.push_back(report.substr(0, step));
        }
    }
    if ((way & stops) != 0 && !pieces.empty()) {
        pieces.pop_back();
    }
    return pieces;
}

bool isOfKind(const Value& value, FieldKind kind) {
    switch (kind) {
    case FieldKind::text: return value.string() != nullptr;
    case FieldKind::integer: return value.integer() != nullptr;
    case FieldKind::boolean: return value.boolean() != nullptr;
    case FieldKind::date: return value.date() != nullptr;
    case FieldKind::table: return value.dictionary() != nullptr;
    }
    return false;
}

void requireRecord(const Dictionary& record, std::initializer_list<Field> fields) {
    std::size_t known = 0;
    for (const Field& field : fields) {
        const Value* const value = record.find(field.key);
        require(value != nullptr || !field.isAlwaysThere, "a record lacks a field");
        require(value == nullptr || isOfKind(*value, field.kind), "a field is of another kind");
        known += value == nullptr ? 0 : 1;
    }
    requireEqual(record.count(), known, "a record has a field of its own");
}

} // namespace

ReportChoices reportChoices(FuzzInput& input) {
    ReportChoices choices;
    choices.options = input.byte();
    const unsigned way = input.byte();
    const unsigned position = input.byte();
    choices.run.output = input.rest();
    choices.run.pieces = cut(input.rest(), way, position);
    return choices;
}

Outcome agreedOutcome(const ReportChoices& choices, const QuenSourceControlOperationPtr& piecewise,
                      const QuenSourceControlOperationPtr& whole) {
    const Outcome inPieces = outcomeOf(piecewise, {choices.run});
    const Outcome atOnce = outcomeOf(whole, {{.output = choices.run.output}});
    requireEqual(inPieces, atOnce, "pieces leave something else than the whole");
    require(atOnce.error.domain() != QuenSourceControlTaskErrorDomain, "an exception was thrown");
    return atOnce;
}

void requireRecords(const Value& result, std::initializer_list<Field> fields) {
    if (result.isNothing()) {
        return;
    }
    require(result.array() != nullptr, "the result is not a list");
    for (const Value& record : *result.array()) {
        require(record.dictionary() != nullptr, "a record is not a dictionary");
        requireRecord(*record.dictionary(), fields);
    }
}

} // namespace quen::fuzz
