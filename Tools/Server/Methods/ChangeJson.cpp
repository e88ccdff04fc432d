#include "Tools/Server/Methods/ChangeJson.h"

#include "Host/Facts/ChangeWords.h"
#include "Host/Places/Locations.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace quen::tools::server {

namespace {

const char* wordOfKind(ConflictOutcome::Kind kind) {
    switch (kind) {
    case ConflictOutcome::Kind::property: return "property";
    case ConflictOutcome::Kind::tree: return "tree";
    default: return "text";
    }
}

/// The longest directory that both lie in.
std::string commonDirectory(const std::string& a, const std::string& b) {
    const auto [first, second] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    const bool isWhole =
        (first == a.end() || *first == '/') && (second == b.end() || *second == '/');
    const std::string common(a.begin(), first);
    return isWhole ? common : common.substr(0, common.rfind('/'));
}

} // namespace

String messageFor(const Services& services, const std::string& message) {
    const std::filesystem::path aside(services.runs.context().workingDirectory().str());
    std::error_code error;
    const bool isPath = !message.empty() && std::filesystem::exists(aside / message, error);
    return isPath ? String(message + "\n") : String(message);
}

std::string absolutePath(const String& path, const std::string& directory) {
    if (path.hasPrefix("/") || directory.empty() || isRepositoryURL(path.view())) {
        return path.str();
    }
    return path == "." ? directory : directory + "/" + path.str();
}

OrderedJson itemsJson(const ChangeFacts& facts, const std::string& directory) {
    OrderedJson json = OrderedJson::array();
    for (const ChangedItem& item : facts.items) {
        const ItemAction action = item.text != ItemAction::none ? item.text : item.properties;
        json.push_back({{"path", toJson(String(absolutePath(item.path, directory)))},
                        {"action", item.isTreeConflict ? "conflicted" : wordOf(action)}});
    }
    for (const SkippedItem& item : facts.skipped) {
        json.push_back(
            {{"path", toJson(String(absolutePath(item.path, directory)))}, {"action", "skipped"}});
    }
    return json;
}

OrderedJson conflictsJson(const std::vector<ConflictOutcome>& outcomes) {
    OrderedJson json = OrderedJson::array();
    for (const ConflictOutcome& each : outcomes) {
        if (each.state == ConflictState::left) {
            json.push_back({{"path", toJson(each.path)}, {"kind", wordOfKind(each.kind)}});
        }
    }
    return json;
}

OrderedJson settledJson(const std::vector<ConflictOutcome>& outcomes) {
    OrderedJson json = OrderedJson::array();
    for (const ConflictOutcome& each : outcomes) {
        if (each.state == ConflictState::settled) {
            const bool hasText = each.kind == ConflictOutcome::Kind::text && !each.theirs.isNil();
            json.push_back({{"path", toJson(each.path)},
                            {"kind", wordOfKind(each.kind)},
                            {"theirs", hasText ? toJson(each.theirs) : OrderedJson()}});
        }
    }
    return json;
}

Ran runChange(const Services& services, Call& call, const WorkingCopyChange& change,
              ChangeFacts& facts, const std::function<Ran(const RunOptions&)>& run) {
    return services.copies.change(change.root, change.touched, call.stop(), [&] {
        ChangeFactsReader reader(change.columns);
        RunOptions options = optionsOf(call);
        options.directory = change.runsAside ? std::string() : realPathOf(change.root);
        options.watcher = [&](std::string_view piece) {
            reader.take(piece);
            const ChangeFacts& sofar = reader.facts();
            call.progress().report(sofar.items.empty()
                                       ? change.title
                                       : absolutePath(sofar.items.back().path, change.root),
                                   sofar.items.size());
        };
        Ran ran = run(options);
        facts = reader.takeFacts();
        if (change.afterRun) {
            change.afterRun(facts);
        }
        if (change.runsAside) {
            // The client names items from where it runs and where they are have in common.
            const std::string common =
                commonDirectory(services.runs.context().workingDirectory().str(), change.root);
            for (ChangedItem& item : facts.items) {
                item.path = absolutePath(item.path, common);
            }
        }
        return ran;
    });
}

} // namespace quen::tools::server
