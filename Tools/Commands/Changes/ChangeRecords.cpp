#include "Tools/Commands/Changes/ChangeRecords.h"

#include "Foundation/Number.h"
#include "Host/Facts/ChangeWords.h"
#include "Tools/Commands/Session/ShortNames.h"
#include "Tools/Console/JsonOutput.h"

namespace quen::tools {

namespace {

const char* wordFor(ConflictOutcome::Kind kind) {
    switch (kind) {
    case ConflictOutcome::Kind::text: return "text";
    case ConflictOutcome::Kind::property: return "property";
    case ConflictOutcome::Kind::tree: return "tree";
    case ConflictOutcome::Kind::unspecified: return "unspecified";
    }
    return "unspecified";
}

Dictionary recordOf(const ChangedItem& item) {
    return {{"path", item.path},
            {"action", String(wordOf(item.text))},
            {"properties", String(wordOf(item.properties))}};
}

Dictionary recordOf(const ConflictOutcome& outcome) {
    const bool isSettled = outcome.state == ConflictState::settled;
    return {{"path", outcome.path},
            {"kind", String(wordFor(outcome.kind))},
            {"state", String(isSettled ? "settled" : "left")},
            {"theirs", textOrNull(outcome.theirs)},
            {"mine", textOrNull(outcome.mine)},
            {"description", textOrNull(outcome.description)},
            {"revision", outcome.revision ? Value(*outcome.revision) : Value()}};
}

Dictionary recordOf(const SkippedItem& item) {
    return {{"path", item.path}, {"reason", textOrNull(item.reason)}};
}

template <typename Item> Array recordsOf(const std::vector<Item>& items) {
    Array records = Array::empty();
    for (const Item& item : items) {
        records.append(recordOf(item));
    }
    return records;
}

} // namespace

Dictionary changeRecord(const Value& result, const std::string& summary,
                        const ChangeOutput& output) {
    Dictionary record = Dictionary::empty();
    const Array* const records = result.array();
    if (records != nullptr && records->count() == 1 && (*records)[0].dictionary() != nullptr) {
        record = withShortNames(*(*records)[0].dictionary());
    }
    record.set("summary", String(summary));
    if (record.find("revision") == nullptr) {
        const auto revision = numberFrom(output.revision());
        record.set("revision", revision ? Value(*revision) : Value());
    }
    record.set("items", static_cast<std::int64_t>(output.items()));
    return record;
}

void addTransfer(Dictionary& record, const ChangeFacts& facts,
                 const std::vector<ConflictOutcome>& outcomes) {
    record.set("revision", facts.revision ? Value(*facts.revision) : Value());
    record.set("changes", recordsOf(facts.items));
    record.set("conflicts", recordsOf(outcomes));
    record.set("skipped", recordsOf(facts.skipped));
}

} // namespace quen::tools
