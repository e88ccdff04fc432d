#include "Tools/Commands/Report/ReportPage.h"

#include "Tools/Commands/Report/PageParts.h"
#include "Tools/Console/JsonOutput.h"

#include <chrono>
#include <string_view>

namespace quen::tools {

namespace {

Value orNull(const std::optional<std::int64_t>& number) {
    return number ? Value(*number) : Value();
}

Array texts(const std::vector<std::string>& texts) {
    Array array = Array::empty();
    for (const std::string& text : texts) {
        array.append(String(text));
    }
    return array;
}

std::int64_t secondsOf(Date date) {
    return std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count();
}

Dictionary recordOf(const ReportRevision& revision) {
    Array changes = Array::empty();
    for (const auto& [path, action] : revision.changes) {
        changes.append(Array{path, String(std::string(1, action))});
    }
    return {
        {"r", revision.number}, {"t", revision.date ? Value(secondsOf(*revision.date)) : Value()},
        {"a", revision.author}, {"m", revision.message.isNil() ? String("") : revision.message},
        {"p", changes},         {"n", static_cast<std::int64_t>(revision.changeCount)},
        {"b", revision.branch}};
}

Dictionary recordOf(const ReportBranch& branch) {
    return {{"name", String(branch.name)},
            {"from", branch.from},
            {"fromRevision", orNull(branch.fromRevision)},
            {"created", orNull(branch.created)},
            {"deleted", orNull(branch.deleted)}};
}

Dictionary recordOf(const ReportMerge& merge) {
    return {{"r", merge.revision}, {"into", merge.into}, {"from", merge.from}, {"of", merge.last}};
}

Dictionary recordOf(const ReportAges& ages) {
    Array lines = Array::empty();
    for (const auto& [revision, count] : ages.lines) {
        lines.append(Array{revision, count});
    }
    return {{"path", String(ages.path)}, {"lines", lines}};
}

template <typename Item> Array recordsOf(const std::vector<Item>& items) {
    Array records = Array::empty();
    for (const Item& item : items) {
        records.append(recordOf(item));
    }
    return records;
}

std::string dataText(const ReportFacts& facts, Date now) {
    return jsonText(Dictionary{{"title", String(facts.title)},
                               {"url", String(facts.url)},
                               {"generated", now},
                               {"authors", texts(facts.authors)},
                               {"paths", texts(facts.paths)},
                               {"branches", recordsOf(facts.branches)},
                               {"revisions", recordsOf(facts.revisions)},
                               {"merges", recordsOf(facts.merges)},
                               {"ages", recordsOf(facts.ages)},
                               {"files", static_cast<std::int64_t>(facts.files)},
                               {"leftOut", texts(facts.leftOut)}});
}

/// Within a script element a `<` could begin the tag that ends it.
std::string withoutTags(const std::string& json) {
    std::string safe;
    safe.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            safe.append("\\u003c");
        } else {
            safe.push_back(c);
        }
    }
    return safe;
}

} // namespace

std::string reportPage(const ReportFacts& facts, Date now) {
    constexpr std::string_view mark = "@DATA@";
    const std::string page = pageWithoutData();
    const std::size_t place = page.find(mark);
    return page.substr(0, place) + withoutTags(dataText(facts, now)) +
           page.substr(place + mark.size());
}

} // namespace quen::tools
