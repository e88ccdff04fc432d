#include "Tools/Server/Methods/WorkingCopyJson.h"

#include "Tools/Console/JsonOutput.h"
#include "Tools/Server/WorkingCopies/WorkingCopies.h"

#include <algorithm>

namespace quen::tools::server {

namespace {

OrderedJson pathsJson(const std::vector<std::string>& paths) {
    OrderedJson json = OrderedJson::array();
    for (const std::string& path : paths) {
        json.push_back(toJson(String(path)));
    }
    return json;
}

OrderedJson conflictsJson(const InfoEntry& entry) {
    OrderedJson json = OrderedJson::array();
    for (const InfoConflict& conflict : entry.conflicts) {
        json.push_back({{"kind", toJson(conflict.type)},
                        {"operation", toJson(conflict.operation)},
                        {"action", toJson(conflict.action)},
                        {"reason", toJson(conflict.reason)},
                        {"base", toJson(conflict.previousBaseFile)},
                        {"mine", toJson(conflict.mineFile)},
                        {"theirs", toJson(conflict.incomingFile)},
                        {"properties", toJson(conflict.propertyFile)}});
    }
    return json;
}

} // namespace

OrderedJson numberJson(const std::optional<std::int64_t>& number) {
    return number && *number >= 0 ? OrderedJson(*number) : OrderedJson();
}

void addCommit(OrderedJson& json, const CommitFacts& commit) {
    json["revision"] = numberJson(commit.revision);
    json["author"] = toJson(commit.author);
    json["date"] = toJson(commit.date);
}

OrderedJson workingCopyJson(const WorkingCopy& copy) {
    const WorkingCopyFacts facts = copy.facts();
    OrderedJson branch;
    if (!facts.branch.isNil()) {
        branch = {{"name", toJson(facts.branch)}, {"isTrunk", facts.isTrunk}};
    }
    return {{"workingCopy", toJson(String(facts.root))},
            {"url", toJson(String(facts.url))},
            {"repositoryRoot", toJson(String(facts.repositoryRoot))},
            {"repositoryUUID", toJson(String(facts.repositoryUUID))},
            {"revision", numberJson(facts.revision)},
            {"branch", std::move(branch)},
            {"nested", pathsJson(WorkingCopies::nestedIn(copy))},
            {"externals", pathsJson(copy.externals())}};
}

OrderedJson unknownWorkingCopyJson() {
    return {{"workingCopy", nullptr},
            {"url", nullptr},
            {"repositoryRoot", nullptr},
            {"repositoryUUID", nullptr},
            {"revision", nullptr},
            {"branch", nullptr},
            {"nested", OrderedJson::array()},
            {"externals", OrderedJson::array()}};
}

OrderedJson infoJson(const std::string& path, const InfoFacts& facts) {
    const auto found =
        std::find_if(facts.entries.begin(), facts.entries.end(),
                     [&](const InfoEntry& entry) { return entry.path == std::string_view(path); });
    const InfoEntry entry = found == facts.entries.end() ? InfoEntry() : *found;
    OrderedJson changed;
    addCommit(changed, entry.commit);
    return {{"path", toJson(String(path))},
            {"kind", toJson(entry.kind)},
            {"url", toJson(entry.url)},
            {"repositoryRoot", toJson(entry.repositoryRoot)},
            {"repositoryUUID", toJson(entry.repositoryUUID)},
            {"revision", numberJson(entry.revision)},
            {"changed", entry.commit.revision ? std::move(changed) : OrderedJson()},
            {"workingCopy", toJson(entry.workingCopy)},
            {"schedule", toJson(entry.schedule)},
            {"depth", toJson(entry.depth)},
            {"changelist", toJson(entry.changelist)},
            {"copiedFrom", toJson(entry.copiedFromURL)},
            {"movedFrom", toJson(entry.movedFrom)},
            {"movedTo", toJson(entry.movedTo)},
            {"conflicts", conflictsJson(entry)}};
}

} // namespace quen::tools::server
