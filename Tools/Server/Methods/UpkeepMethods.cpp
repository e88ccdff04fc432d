#include "Host/ClientCommand.h"
#include "Host/Places/Locations.h"
#include "Tools/Console/Base64.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/TextFile.h"

#include <utility>

namespace quen::tools::server {

namespace {

struct PatchParams {
    std::string root;
    std::string text;
};

PatchParams decodePatch(const JsonInput& params) {
    params.requireObject({"workingCopy", "base64"});
    const JsonInput patch = params.member("base64");
    const std::optional<std::string> bytes = bytesFromBase64(patch.string());
    if (!bytes) {
        patch.fail("expected bytes in base64");
    }
    return {readWorkingCopy(params), *bytes};
}

/// The client puts the names of patched files further to the right than those of updated ones.
void takeNamesFromTheirColumn(ChangeFacts& facts) {
    constexpr std::string_view between = "     ";
    for (ChangedItem& item : facts.items) {
        if (item.path.hasPrefix(between)) {
            item.path = String(item.path.view().substr(between.size()));
        }
    }
}

/// Applies a patch at the top of a working copy. What does not fit is kept by the client in
/// `FILE.svnpatch.rej` beside the file.
OrderedJson applyPatch(const Services& services, Call& call, const PatchParams& params) {
    const TextFile file(params.text);
    ChangeFacts facts;
    const Ran ran =
        runChange(services, call, {"Applying the patch", params.root, {}}, facts,
                  [&](const RunOptions& options) {
                      return services.runs.run(
                          [&] {
                              return ClientCommand::make({"patch", file.path()}, {params.root},
                                                         RequestTypeMerge);
                          },
                          options);
                  });
    takeNamesFromTheirColumn(facts);
    OrderedJson json{{"items", itemsJson(facts, params.root)},
                     {"conflicts", conflictsJson(conflictOutcomes(facts, {}, params.root))}};
    addOutcome(json, ran);
    return json;
}

struct RelocateParams {
    std::string root;
    std::string url;
};

RelocateParams decodeRelocate(const JsonInput& params) {
    params.requireObject({"workingCopy", "url"});
    return {readWorkingCopy(params), readURL(params.member("url"))};
}

OrderedJson relocate(const Services& services, Call& call, const RelocateParams& params) {
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call, {"Relocating", params.root, {}}, facts, [&](const RunOptions& options) {
            return services.runs.run(
                [&] {
                    return ClientCommand::make({"relocate", closedClientPath(params.url).str()},
                                               {params.root}, RequestTypeSwitch);
                },
                options);
        });
    if (ran.isWell()) {
        services.copies.readAgain(params.root, optionsOf(call));
    }
    OrderedJson json = OrderedJson::object();
    addOutcome(json, ran);
    return json;
}

/// A branch, or what it changed between two revisions.
struct RecordParams {
    std::string root;
    std::string url;
    std::string from;
    std::string to;
};

RecordParams decodeRecord(const JsonInput& params) {
    params.requireObject({"workingCopy", "url", "from", "to"});
    RecordParams record{readWorkingCopy(params), readURL(params.member("url")),
                        readRevision(params, "from"), readRevision(params, "to")};
    if (record.from.empty() != record.to.empty()) {
        params.fail("expected both \"from\" and \"to\", or neither");
    }
    return record;
}

/// Later merges leave out what is recorded as merged.
OrderedJson recordMerge(const Services& services, Call& call, const RecordParams& params) {
    std::vector<std::string> words{"merge", "--record-only"};
    if (!params.from.empty()) {
        words.insert(words.end(), {"-r", std::string(params.from).append(":").append(params.to)});
    }
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call, {"Recording the merge", params.root, {}}, facts,
        [&](const RunOptions& options) {
            return services.runs.run(
                [&] {
                    return ClientCommand::make(words, {params.url, params.root}, RequestTypeMerge);
                },
                options);
        });
    OrderedJson json{{"items", itemsJson(facts, params.root)}};
    addOutcome(json, ran);
    return json;
}

struct MessageParams {
    std::string location;
    std::string revision;
    std::string message;
};

MessageParams decodeMessage(const JsonInput& params) {
    params.requireObject({"path", "url", "revision", "message"});
    MessageParams change{readLocation(params), readRevision(params, "revision"),
                         params.member("message").string()};
    if (change.revision.empty() || change.revision == "BASE") {
        params.member("revision").fail("expected \"HEAD\" or a number");
    }
    return change;
}

OrderedJson setMessage(const Services& services, const Call& call, const MessageParams& params) {
    const TextFile file(params.message);
    const Ran ran = services.runs.run(
        [&] {
            return ClientCommand::make(
                {"propset", "--revprop", "-r", params.revision, "svn:log", "-F", file.path()},
                {params.location});
        },
        optionsOf(call));
    if (ran.isWell()) {
        services.cache.clear(); // it holds histories with the old message
    }
    OrderedJson json = OrderedJson::object();
    addOutcome(json, ran);
    return json;
}

} // namespace

void addUpkeepMethods(Server& server, const Services& services) {
    server.dispatcher().add(change<PatchParams>("change/patch", decodePatch,
                                                [services](Call& call, const PatchParams& params) {
                                                    return applyPatch(services, call, params);
                                                }));
    server.dispatcher().add(
        change<RelocateParams>("workingCopy/relocate", decodeRelocate,
                               [services](Call& call, const RelocateParams& params) {
                                   return relocate(services, call, params);
                               }));
    server.dispatcher().add(change<RecordParams>(
        "branch/recordMerge", decodeRecord, [services](Call& call, const RecordParams& params) {
            return recordMerge(services, call, params);
        }));
    server.dispatcher().add(
        query<MessageParams>("history/setMessage", decodeMessage,
                             [services](const Call& call, const MessageParams& params) {
                                 return setMessage(services, call, params);
                             }));
}

} // namespace quen::tools::server
