#include "Tools/Server/Methods/HistoryQuery.h"

#include "Host/Places/Locations.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/HistoryRecords.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quen::tools::server {

namespace {

bool isNumber(const std::string& revision) {
    return !revision.empty() && revision.find_first_not_of("0123456789") == std::string::npos;
}

/// What a page is kept under; empty for one that may look different next time.
std::string nameOf(const HistoryQuery& query) {
    if (!isRepositoryURL(query.location) || !isNumber(query.from)) {
        return {};
    }
    return "log " + std::to_string(query.limit) + (query.files ? " files" : "") +
           (query.stopOnCopy ? " stop " : " ") + query.from + ":" + query.to + " " + query.location;
}

QuenSourceControlRequestPtr requestFor(const HistoryQuery& query, bool pegs) {
    const auto request =
        makeRequest(RequestTypeLog, placeOf(query.location), {query.location},
                    {// One more tells whether there is a next page, and where it begins.
                     {QuenSourceControlRequestOptionLogOutputLimit, query.limit + 1},
                     {QuenSourceControlRequestOptionLogStopOnBranching, query.stopOnCopy},
                     {QuenSourceControlRequestOptionLogOutputFilesChanged, query.files},
                     {QuenSourceControlRequestOptionSupplyDirectRevision, pegs}});
    request->setStartingRevision(query.from.empty() ? "HEAD" : query.from.c_str());
    request->setEndingRevision(query.to.empty() ? "1" : query.to.c_str());
    return request;
}

/// It is not there any more in the youngest revision.
bool meansGone(const Ran& ran) {
    constexpr std::array codes{"E160013", "E195012", "E170000"};
    return std::any_of(codes.begin(), codes.end(), [&](const char* code) {
        return ran.clientText.find(code) != std::string::npos;
    });
}

HistoryPage runQuery(const Services& services, const std::stop_token& stop,
                     const HistoryQuery& query, bool pegs,
                     const std::function<void(const std::vector<HistoryEntry>&)>& watcher) {
    HistoryPage page;
    std::vector<HistoryEntry> fresh;
    HistoryReader reader([&](const HistoryEntry& entry) { fresh.push_back(entry); });
    const auto limit = static_cast<std::size_t>(query.limit);
    const auto takeFresh = [&] {
        std::vector<HistoryEntry> entries = std::exchange(fresh, {});
        if (page.entries.size() + entries.size() > limit) {
            page.next = entries.back().commit.revision;
            entries.resize(limit - page.entries.size());
        }
        if (watcher && !entries.empty()) {
            watcher(entries);
        }
        page.entries.insert(page.entries.end(), std::make_move_iterator(entries.begin()),
                            std::make_move_iterator(entries.end()));
    };
    RunOptions options{stop, {}, {}};
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        takeFresh();
    };
    page.ran = services.runs.perform(requestFor(query, pegs), options);
    // What is wrong with the report the run has said.
    static_cast<void>(reader.finish());
    takeFresh();
    return page;
}

std::string textOf(const HistoryPage& page) {
    OrderedJson json = OrderedJson::array();
    json.push_back(page.next ? OrderedJson(*page.next) : OrderedJson());
    for (const HistoryEntry& entry : page.entries) {
        json.push_back(logEntryJson(entry));
    }
    return json.dump();
}

HistoryPage pageFrom(const std::string& text) {
    const OrderedJson json = OrderedJson::parse(text);
    HistoryPage page;
    if (!json.front().is_null()) {
        page.next = json.front().get<std::int64_t>();
    }
    for (auto each = std::next(json.begin()); each != json.end(); ++each) {
        page.entries.push_back(logEntryFrom(*each));
    }
    return page;
}

} // namespace

HistoryPage readHistory(const Services& services, const std::stop_token& stop,
                        const HistoryQuery& query,
                        const std::function<void(const std::vector<HistoryEntry>&)>& watcher) {
    const std::string name = nameOf(query);
    if (const auto kept = name.empty() ? nullptr : services.cache.find(name)) {
        HistoryPage page = pageFrom(*kept);
        if (watcher) {
            watcher(page.entries);
        }
        return page;
    }
    HistoryPage page = runQuery(services, stop, query, false, watcher);
    if (!page.ran.isWell() && page.entries.empty() && meansGone(page.ran)) {
        if (!name.empty()) {
            page = runQuery(services, stop, query, true, watcher);
        } else if (query.from.empty() && !isRepositoryURL(query.location)) {
            // What the path rests on has a history all the same.
            HistoryQuery ofBase = query;
            ofBase.from = "BASE";
            page = runQuery(services, stop, ofBase, false, watcher);
        }
    }
    if (page.ran.isWell() && !name.empty()) {
        services.cache.keep(name, std::make_shared<const std::string>(textOf(page)));
    }
    return page;
}

} // namespace quen::tools::server
