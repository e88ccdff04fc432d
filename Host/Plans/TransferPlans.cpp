#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"
#include "Foundation/XMLReport.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Facts/ListFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/PlanQueries.h"
#include "Host/Plans/Plans.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace quen {

namespace {

bool isNew(const StatusEntry& entry) noexcept {
    return entry.item.view() == "unversioned" || entry.item.view() == "ignored";
}

/// A switch and a merge ask for the state of the target alone.
template <typename Plan>
StatusFacts takeLocalChanges(Plan& plan, const String& path, const QueryRunner& run) {
    StatusAnswer answer =
        askStatus({plainPath(path.str())}, {"--no-ignore", "--ignore-externals"}, run);
    plan.error = answer.error;
    plan.unreadable = answer.facts.unreadable;
    for (const StatusEntry& entry : answer.facts.entries) {
        if (isLocallyChanged(entry) && !entry.isFileExternal) {
            plan.localChanges.push_back(entry);
        }
    }
    return std::move(answer.facts);
}

/// What differs between two places of the repository, below them; `item` words by path.
std::map<std::string, std::string> askSummary(const String& from, const String& to, Error& error,
                                              const QueryRunner& run) {
    const auto query = ClientCommand::makeQuery({"diff", "--summarize", "--xml", from, to});
    run(*query);
    std::map<std::string, std::string> found;
    XMLReportReader reader({"paths", "path"}, [&](const XMLElement& record, std::size_t) {
        const std::string_view url = record.text();
        // The client names what lies below the first place by its URL.
        const std::string_view base = withoutPeg(from.view());
        const std::string_view below =
            url.starts_with(base) ? url.substr(base.size()) : std::string_view();
        found[percentDecoded(below)] = std::string(record.attribute("item").value_or(""));
    });
    const Error broken = reader.readAll(query->output()->bytes());
    const Error failed = query->error() ? query->error() : broken;
    error = error ? error : failed;
    return found;
}

/// The place that a working copy rests on, with its revision.
String restingPlace(const String& path, Error& error, const QueryRunner& run) {
    const auto query = ClientCommand::makeQuery({"info", "--xml", closedClientPath(path.str())});
    run(*query);
    InfoFactsReader reader;
    reader.take(query->output()->bytes());
    const Error broken = reader.finish();
    const Error failed = query->error() ? query->error() : broken;
    error = error ? error : failed;
    if (failed || reader.facts().entries.empty()) {
        return {};
    }
    const InfoEntry& entry = reader.facts().entries.front();
    return withPeg(entry.url, std::to_string(entry.revision.value_or(0)));
}

} // namespace

LocalState localStateOf(const std::vector<String>& paths, const QueryRunner& run) {
    LocalState state;
    StatusAnswer answer = askStatus(paths, {"--no-ignore", "--ignore-externals"}, run);
    state.error = answer.error;
    state.unreadable = std::move(answer.facts.unreadable);
    for (const StatusEntry& entry : answer.facts.entries) {
        if (isNew(entry)) {
            state.unversioned.push_back(entry);
        } else if (isLocallyChanged(entry) && !entry.isFileExternal) {
            state.changes.push_back(entry);
        }
    }
    return state;
}

UpdatePlan planUpdate(const std::vector<String>& paths, const String& revision,
                      const QueryRunner& run) {
    UpdatePlan plan;
    StringArray options{"-u", "--no-ignore"};
    if (!revision.isEmpty()) {
        options.insert(options.end(), {"-r", revision});
    }
    StatusAnswer answer = askStatus(paths, options, run);
    plan.error = answer.error;
    plan.unreadable = std::move(answer.facts.unreadable);
    plan.revision = answer.facts.against;
    for (const StatusEntry& entry : answer.facts.entries) {
        if (isIncoming(entry)) {
            plan.incoming.push_back(entry);
        }
        if (isLocallyChanged(entry)) {
            plan.localChanges.push_back(entry);
        }
        if (isIncoming(entry) && isLocallyChanged(entry)) {
            plan.changedOnBothSides.push_back(entry);
        }
        if (isIncoming(entry) && isNew(entry)) {
            plan.inTheWay.push_back(entry);
        }
    }
    return plan;
}

MergePlan planMerge(const String& source, const String& target, const String& range,
                    const QueryRunner& run) {
    MergePlan plan;
    takeLocalChanges(plan, target, run);
    StringArray arguments{"merge", "--dry-run", "--accept", "postpone"};
    if (!range.isEmpty()) {
        arguments.insert(arguments.end(), {"-r", range});
    }
    arguments.push_back(source);
    arguments.push_back(closedClientPath(target.str()));
    const auto query = ClientCommand::makeQuery(std::move(arguments));
    run(*query);
    ChangeFactsReader reader;
    reader.take(query->output()->bytes());
    plan.facts = reader.takeFacts();
    plan.error = plan.error ? plan.error : query->error();
    return plan;
}

namespace {

/// Adds what differs at the new place.
void compareWithPlace(SwitchPlan& plan, const StatusFacts& facts, const String& top,
                      const String& url, const QueryRunner& run) {
    const String from = restingPlace(top, plan.error, run);
    if (from.isNil()) {
        return;
    }
    const String to = needsPegClosed(url.view()) ? url : withPeg(url, "HEAD");
    const auto differences = askSummary(from, to, plan.error, run);
    for (const auto& [below, item] : differences) {
        plan.incoming.push_back({String(top.str() + below), String(item)});
    }
    for (const StatusEntry& entry : facts.entries) {
        const std::string below = isAtOrBelow(entry.path.view(), top.view())
                                      ? entry.path.str().substr(top.length())
                                      : std::string();
        if (!differences.contains(below)) {
            continue;
        }
        if (isLocallyChanged(entry)) {
            plan.changedOnBothSides.push_back(entry);
        } else if (isNew(entry)) {
            plan.inTheWay.push_back(entry);
        }
    }
}

} // namespace

SwitchPlan planSwitch(const String& path, const String& url, const QueryRunner& run) {
    SwitchPlan plan;
    const String top = plainPath(path.str());
    const StatusFacts facts = takeLocalChanges(plan, top, run);
    compareWithPlace(plan, facts, top, url, run);
    return plan;
}

SwitchPlan planSwitchOfWork(const String& path, const String& url, const QueryRunner& run) {
    SwitchPlan plan;
    const String top = plainPath(path.str());
    const StatusFacts facts = takeLocalChanges(plan, top, run);
    const bool isAnyNew = std::any_of(facts.entries.begin(), facts.entries.end(), isNew);
    if (plan.error || !plan.localChanges.empty() || isAnyNew) {
        compareWithPlace(plan, facts, top, url, run);
    }
    return plan;
}

} // namespace quen
