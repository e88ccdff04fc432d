#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/HistoryQuery.h"
#include "Tools/Server/Methods/HistoryRecords.h"
#include "Tools/Server/Methods/Params.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace quen::tools::server {

namespace {

constexpr std::int64_t greatestLimit = 1'000'000;
/// How many revisions a search reads at a time.
constexpr std::int64_t searchPage = 1000;

struct LogParams {
    HistoryQuery query;
};

HistoryQuery readQuery(const JsonInput& params) {
    HistoryQuery query;
    query.location = readLocation(params);
    query.from = readRevision(params, "from");
    query.to = readRevision(params, "to");
    query.limit = params.member("limit").integer(1, greatestLimit);
    query.files = readFlag(params, "files");
    query.stopOnCopy = readFlag(params, "stopOnCopy");
    return query;
}

LogParams decodeLog(const JsonInput& params) {
    params.requireObject({"path", "url", "from", "to", "limit", "files", "stopOnCopy"});
    return {readQuery(params)};
}

OrderedJson entriesJson(const std::vector<HistoryEntry>& entries) {
    OrderedJson json = OrderedJson::array();
    for (const HistoryEntry& entry : entries) {
        json.push_back(logEntryJson(entry));
    }
    return json;
}

OrderedJson pageJson(OrderedJson entries, const std::optional<std::int64_t>& next, const Ran& ran) {
    OrderedJson json{{"entries", std::move(entries)},
                     {"next", next ? OrderedJson(*next) : OrderedJson()}};
    addOutcome(json, ran);
    return json;
}

OrderedJson log(const Services& services, Call& call, const LogParams& params) {
    std::size_t count = 0;
    const HistoryPage page = readHistory(services, call.stop(), params.query,
                                         [&](const std::vector<HistoryEntry>& entries) {
                                             count += entries.size();
                                             call.progress().report("Reading the history", count);
                                             if (call.wantsParts()) {
                                                 call.sendPart(entriesJson(entries));
                                             }
                                         });
    return pageJson(call.wantsParts() ? OrderedJson::array() : entriesJson(page.entries), page.next,
                    page.ran);
}

struct SearchParams {
    HistoryQuery query;
    std::string author;
    std::string text;
    std::string since;
    std::string until;
};

SearchParams decodeSearch(const JsonInput& params) {
    params.requireObject({"path", "url", "from", "to", "limit", "files", "stopOnCopy", "author",
                          "text", "since", "until"});
    return {readQuery(params), readText(params, "author"), readText(params, "text"),
            readText(params, "since"), readText(params, "until")};
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) ==
                      std::tolower(static_cast<unsigned char>(b));
           }) != text.end();
}

/// Dates are compared as texts, as far as the shorter goes: `2026-11` is all of that month.
bool matches(const SearchParams& params, const HistoryEntry& entry) {
    const std::string date = entry.commit.date.str();
    return (params.author.empty() ||
            containsIgnoringCase(entry.commit.author.view(), params.author)) &&
           (params.text.empty() || containsIgnoringCase(entry.message.view(), params.text)) &&
           (params.since.empty() || date >= params.since) &&
           (params.until.empty() || date.substr(0, params.until.size()) <= params.until);
}

OrderedJson search(const Services& services, Call& call, const SearchParams& params) {
    const auto limit = static_cast<std::size_t>(params.query.limit);
    HistoryQuery query = params.query;
    query.limit = searchPage;
    OrderedJson found = OrderedJson::array();
    std::size_t count = 0;
    std::size_t seen = 0;
    while (true) {
        const HistoryPage page = readHistory(services, call.stop(), query, {});
        std::optional<std::int64_t> next = page.next;
        OrderedJson part = OrderedJson::array();
        for (const HistoryEntry& entry : page.entries) {
            if (count == limit) {
                next = entry.commit.revision;
                break;
            }
            if (matches(params, entry)) {
                part.push_back(logEntryJson(entry));
                ++count;
            }
        }
        seen += page.entries.size();
        call.progress().report("Searching the history", seen);
        if (call.wantsParts() && !part.empty()) {
            call.sendPart(part);
        } else {
            found.insert(found.end(), part.begin(), part.end());
        }
        const bool isTooOld = !params.since.empty() && !page.entries.empty() &&
                              page.entries.back().commit.date.str() < params.since;
        if (!page.ran.isWell() || !next || count == limit || isTooOld) {
            return pageJson(std::move(found), isTooOld && count < limit ? std::nullopt : next,
                            page.ran);
        }
        query.from = std::to_string(*next);
        call.throwIfCancelled();
    }
}

} // namespace

void addHistoryMethods(Server& server, const Services& services) {
    Method ofLog =
        query<LogParams>("history/log", decodeLog, [services](Call& call, const LogParams& params) {
            return log(services, call, params);
        });
    ofLog.hasParts = true;
    server.dispatcher().add(std::move(ofLog));
    Method ofSearch = query<SearchParams>("history/search", decodeSearch,
                                          [services](Call& call, const SearchParams& params) {
                                              return search(services, call, params);
                                          });
    ofSearch.hasParts = true;
    server.dispatcher().add(std::move(ofSearch));
}

} // namespace quen::tools::server
