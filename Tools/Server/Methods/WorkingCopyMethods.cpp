#include "Host/Facts/InfoFacts.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/Services.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <optional>
#include <utility>

namespace quen::tools::server {

namespace {

struct OpenParams {
    std::string path;
};

OpenParams decodeOpen(const JsonInput& params) {
    params.requireObject({"path"});
    return {readPath(params.member("path"))};
}

OrderedJson open(const Services& services, const Call& call, const OpenParams& params) {
    WorkingCopies::Opened opened = services.copies.open(params.path, optionsOf(call));
    if (opened.copy == nullptr && opened.ran.isWell()) {
        return nullptr;
    }
    if (opened.copy != nullptr && !opened.isNew) {
        opened.ran = services.copies.readAgainWhereChanged(opened.copy, optionsOf(call));
    }
    OrderedJson json =
        opened.copy == nullptr ? unknownWorkingCopyJson() : workingCopyJson(*opened.copy);
    addOutcome(json, opened.ran);
    return json;
}

struct StatusParams {
    std::string root;
    bool refresh = false;
    bool includeIgnored = false;
};

StatusParams decodeStatus(const JsonInput& params) {
    params.requireObject({"workingCopy", "refresh", "includeIgnored"});
    return {readWorkingCopy(params), readFlag(params, "refresh"),
            readFlag(params, "includeIgnored")};
}

OrderedJson itemsJson(const std::vector<StatusItem>& items, bool includeIgnored) {
    OrderedJson json = OrderedJson::array();
    for (const StatusItem& item : items) {
        if (includeIgnored || !item.isIgnored()) {
            json.push_back(statusItemJson(item));
        }
    }
    return json;
}

/// Sends items in parts of a size that a client takes easily.
void sendItems(Call& call, const std::vector<StatusItem>& items, bool includeIgnored) {
    constexpr std::size_t partSize = 1000;
    for (std::size_t at = 0; at < items.size(); at += partSize) {
        const auto begin = items.begin() + static_cast<std::ptrdiff_t>(at);
        const auto end =
            items.begin() + static_cast<std::ptrdiff_t>(std::min(at + partSize, items.size()));
        const OrderedJson part = itemsJson({begin, end}, includeIgnored);
        if (!part.empty()) {
            call.sendPart(part);
        }
    }
}

OrderedJson status(const Services& services, Call& call, const StatusParams& params) {
    std::size_t seen = 0;
    bool isSent = false;
    std::optional<std::uint64_t> sentGeneration;
    WorkingCopies::StatusWatcher watcher;
    watcher.items = [&](const std::vector<StatusItem>& items) {
        seen += items.size();
        call.progress().report("Reading the status", seen);
        if (call.wantsParts()) {
            isSent = true;
            sendItems(call, items, params.includeIgnored);
        }
    };
    watcher.takenIn = [&](std::uint64_t generation) { sentGeneration = generation; };
    WorkingCopies::Opened opened = services.copies.open(params.root, optionsOf(call), watcher);
    if (opened.copy == nullptr) {
        OrderedJson json{
            {"generation", 0}, {"items", OrderedJson::array()}, {"counts", OrderedJson::object()}};
        addOutcome(json, opened.ran);
        return json;
    }
    if (!opened.copy->isKnown()) {
        opened.ran = services.copies.makeKnown(opened.copy, optionsOf(call), watcher);
    } else if (!sentGeneration &&
               ((params.refresh && !opened.isNew) || !services.copies.isKept(*opened.copy))) {
        opened.ran = services.copies.refresh(opened.copy, optionsOf(call), watcher);
    }
    WorkingCopy::Snapshot known;
    if (isSent) {
        known.summary = opened.copy->summary(params.includeIgnored);
        // What has changed since then its own differences tell, which are newer than these items.
        known.summary.generation = sentGeneration.value_or(known.summary.generation);
    } else {
        known = opened.copy->snapshot(params.includeIgnored);
    }
    if (call.wantsParts()) {
        sendItems(call, std::exchange(known.items, {}), params.includeIgnored);
    }
    OrderedJson json{{"generation", known.summary.generation},
                     {"items", itemsJson(known.items, params.includeIgnored)},
                     {"counts", known.summary.counts}};
    addOutcome(json, opened.ran);
    return json;
}

struct RootParams {
    std::string root;
};

RootParams decodeRoot(const JsonInput& params) {
    params.requireObject({"workingCopy"});
    return {readWorkingCopy(params)};
}

/// Also of a working copy that is gone from the disk by now.
RootParams decodeClose(const JsonInput& params) {
    params.requireObject({"workingCopy"});
    return {readPath(params.member("workingCopy"))};
}

OrderedJson incoming(const Services& services, Call& call, const RootParams& params) {
    StatusFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        call.progress().report("Comparing with the repository", reader.facts().entries.size());
    };
    const Ran ran = services.runs.perform(
        makeRequest(RequestTypeRemoteStatus, placeOf(params.root), {params.root}), options);
    static_cast<void>(reader.finish());
    OrderedJson items = OrderedJson::array();
    for (const StatusEntry& entry : reader.facts().entries) {
        if (isIncoming(entry)) {
            items.push_back(statusItemJson(statusItemOf(entry)));
        }
    }
    OrderedJson json{{"items", std::move(items)}};
    addOutcome(json, ran);
    return json;
}

struct PathsParams {
    std::vector<std::string> paths;
};

PathsParams decodePaths(const JsonInput& params) {
    params.requireObject({"paths"});
    return {readPaths(params)};
}

OrderedJson info(const Services& services, const Call& call, const PathsParams& params) {
    InfoFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.take(piece); };
    const Ran ran = services.runs.perform(
        makeRequest(RequestTypeInfo, placeOf(params.paths.front()), params.paths), options);
    static_cast<void>(reader.finish());
    OrderedJson items = OrderedJson::array();
    for (const std::string& path : params.paths) {
        items.push_back(infoJson(path, reader.facts()));
    }
    OrderedJson json{{"items", std::move(items)}};
    addOutcome(json, ran);
    return json;
}

void didChange(const Services& services, const JsonInput& params) {
    params.requireObject({"paths"});
    std::vector<std::string> paths;
    for (const JsonInput& path : params.member("paths").array()) {
        paths.push_back(readPath(path));
    }
    services.copies.noteTouched(paths);
}

} // namespace

void addWorkingCopyMethods(Server& server, const Services& services) {
    Dispatcher& methods = server.dispatcher();
    methods.add(query<OpenParams>("workingCopy/open", decodeOpen,
                                  [services](const Call& call, const OpenParams& params) {
                                      return open(services, call, params);
                                  }));
    methods.add(query<RootParams>("workingCopy/close", decodeClose,
                                  [services](const Call&, const RootParams& params) {
                                      services.copies.close(params.root);
                                      return nullptr;
                                  }));
    Method ofStatus = query<StatusParams>("workingCopy/status", decodeStatus,
                                          [services](Call& call, const StatusParams& params) {
                                              return status(services, call, params);
                                          });
    ofStatus.hasParts = true;
    methods.add(std::move(ofStatus));
    methods.add(query<RootParams>("workingCopy/incoming", decodeRoot,
                                  [services](Call& call, const RootParams& params) {
                                      return incoming(services, call, params);
                                  }));
    methods.add(query<PathsParams>("workingCopy/info", decodePaths,
                                   [services](const Call& call, const PathsParams& params) {
                                       return info(services, call, params);
                                   }));
    server.add({"workingCopy/didChange",
                [services](const JsonInput& params) { didChange(services, params); }});
}

} // namespace quen::tools::server
