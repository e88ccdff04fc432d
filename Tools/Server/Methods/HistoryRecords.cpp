#include "Tools/Server/Methods/HistoryRecords.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

namespace quen::tools::server {

namespace {

constexpr std::pair<char, const char*> actions[] = {
    {'M', "modified"}, {'A', "added"}, {'D', "deleted"}, {'R', "replaced"}};

/// A letter that is not known changed the item all the same.
const char* wordOf(char action) {
    const auto* const found =
        std::ranges::find(actions, action, [](auto& row) { return row.first; });
    return found == std::end(actions) ? actions->second : found->second;
}

char letterOf(const std::string& word) {
    const auto* const found =
        std::ranges::find(actions, word, [](auto& row) { return std::string(row.second); });
    return found == std::end(actions) ? actions->first : found->first;
}

String stringIn(const OrderedJson& json) {
    return json.is_null() ? String() : String(json.get<std::string>());
}

} // namespace

OrderedJson logEntryJson(const HistoryEntry& entry) {
    OrderedJson files = OrderedJson::array();
    for (const HistoryPath& file : entry.paths) {
        files.push_back({{"path", toJson(file.path)}, {"action", wordOf(file.action)}});
    }
    return {{"revision", entry.commit.revision.value_or(0)},
            {"author", toJson(entry.commit.author)},
            {"date", toJson(entry.commit.date)},
            {"message", toJson(entry.message)},
            {"files", std::move(files)}};
}

HistoryEntry logEntryFrom(const OrderedJson& json) {
    HistoryEntry entry;
    entry.commit = {json.at("revision").get<std::int64_t>(), stringIn(json.at("author")),
                    stringIn(json.at("date"))};
    entry.message = stringIn(json.at("message"));
    for (const OrderedJson& file : json.at("files")) {
        HistoryPath path;
        path.path = stringIn(file.at("path"));
        path.action = letterOf(file.at("action").get<std::string>());
        entry.paths.push_back(std::move(path));
    }
    return entry;
}

OrderedJson commitJson(const CommitFacts& commit) {
    return {{"revision", commit.revision ? OrderedJson(*commit.revision) : OrderedJson()},
            {"author", toJson(commit.author)},
            {"date", toJson(commit.date)}};
}

} // namespace quen::tools::server
