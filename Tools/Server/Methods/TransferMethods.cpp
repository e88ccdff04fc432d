#include "Host/Places/Locations.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"

#include <utility>

namespace quen::tools::server {

namespace {

/// Keeps what came in and was decided against, beside what was here.
using KeepTheirs = std::function<std::vector<KeptTheirs>(const ChangeFacts& facts)>;

OrderedJson transfer(const Services& services, Call& call, WorkingCopyChange change,
                     const QuenSourceControlRequestPtr& request, const KeepTheirs& keep = {}) {
    std::vector<KeptTheirs> kept;
    if (keep) {
        change.afterRun = [&](const ChangeFacts& facts) {
            // Not to be cancelled: the text is nowhere else on the disk.
            const RunContext::Scope scope(services.runs.context());
            kept = keep(facts);
        };
    }
    ChangeFacts facts;
    const Ran ran = runChange(services, call, change, facts, [&](const RunOptions& options) {
        return services.runs.perform(request, options);
    });
    const std::vector<ConflictOutcome> outcomes = conflictOutcomes(facts, kept, change.root);
    OrderedJson json{{"revision", numberJson(facts.revision)},
                     {"items", itemsJson(facts, change.root)},
                     {"settled", settledJson(outcomes)},
                     {"conflicts", conflictsJson(outcomes)}};
    addOutcome(json, ran);
    return json;
}

struct UpdateParams {
    std::string root;
    std::vector<std::string> paths;
    std::string revision;
};

UpdateParams decodeUpdate(const JsonInput& params) {
    params.requireObject({"workingCopy", "paths", "revision"});
    if (params.has("workingCopy") == params.has("paths")) {
        params.fail("expected either \"workingCopy\" or \"paths\"");
    }
    UpdateParams update;
    if (params.has("workingCopy")) {
        update.root = readWorkingCopy(params);
        update.paths = {update.root};
    } else {
        update.paths = readPaths(params);
        update.root = rootOf(params, update.paths);
    }
    update.revision = readRevision(params, "revision");
    return update;
}

OrderedJson update(const Services& services, Call& call, const UpdateParams& params) {
    const auto request = makeRequest(RequestTypeUpdate, placeOf(params.root), params.paths);
    if (!params.revision.empty()) {
        request->setStartingRevision(params.revision);
    }
    return transfer(
        services, call, {"Updating", params.root, {}}, request,
        [&](const ChangeFacts& facts) { return keepTheirsOfUpdate(facts, params.root); });
}

struct SwitchParams {
    std::string root;
    std::string url;
};

SwitchParams decodeSwitch(const JsonInput& params) {
    params.requireObject({"workingCopy", "url"});
    return {readWorkingCopy(params), readURL(params.member("url"))};
}

OrderedJson switchTo(const Services& services, Call& call, const SwitchParams& params) {
    const auto request = makeRequest(RequestTypeSwitch, placeOf(params.root), {params.root});
    request->setDestination(closedClientPath(params.url));
    OrderedJson json = transfer(services, call, {"Switching", params.root, {}}, request);
    services.copies.readAgain(params.root, optionsOf(call));
    return json;
}

struct MergeParams {
    std::string root;
    std::string url;
    std::string from;
    std::string to;
};

MergeParams decodeMerge(const JsonInput& params) {
    params.requireObject({"workingCopy", "url", "from", "to"});
    MergeParams merge{readWorkingCopy(params), readURL(params.member("url")),
                      readRevision(params, "from"), readRevision(params, "to")};
    if (merge.from.empty() != merge.to.empty()) {
        params.fail("expected both \"from\" and \"to\", or neither");
    }
    return merge;
}

OrderedJson merge(const Services& services, Call& call, const MergeParams& params) {
    const auto request = makeRequest(RequestTypeMerge, placeOf(params.root), {params.root});
    request->setDestination(closedClientPath(params.url));
    if (!params.from.empty()) {
        request->setStartingRevision(params.from);
        request->setEndingRevision(params.to);
    }
    return transfer(services, call, {"Merging", params.root, {}}, request,
                    [&](const ChangeFacts& facts) {
                        return keepTheirsOfMerge(facts, params.root, params.url);
                    });
}

struct CheckoutParams {
    std::string root;
    std::string url;
    std::string revision;
};

CheckoutParams decodeCheckout(const JsonInput& params) {
    params.requireObject({"url", "path", "revision"});
    return {readPath(params.member("path")), readURL(params.member("url")),
            readRevision(params, "revision")};
}

OrderedJson checkout(const Services& services, Call& call, const CheckoutParams& params) {
    const auto request = makeRequest(RequestTypeCheckout, placeOf(params.url), {params.url});
    request->setDestination(closedDirectory(params.root));
    // The client's own default. Said, so that a URL that leads nowhere is told with its revision.
    request->setStartingRevision(params.revision.empty() ? "HEAD" : params.revision.c_str());
    return transfer(services, call, {"Checking out", params.root, {}}, request);
}

} // namespace

void addTransferMethods(Server& server, const Services& services) {
    Dispatcher& methods = server.dispatcher();
    methods.add(change<UpdateParams>("workingCopy/update", decodeUpdate,
                                     [services](Call& call, const UpdateParams& params) {
                                         return update(services, call, params);
                                     }));
    methods.add(change<SwitchParams>("workingCopy/switch", decodeSwitch,
                                     [services](Call& call, const SwitchParams& params) {
                                         return switchTo(services, call, params);
                                     }));
    methods.add(change<MergeParams>("branch/merge", decodeMerge,
                                    [services](Call& call, const MergeParams& params) {
                                        return merge(services, call, params);
                                    }));
    methods.add(change<CheckoutParams>("workingCopy/checkout", decodeCheckout,
                                       [services](Call& call, const CheckoutParams& params) {
                                           return checkout(services, call, params);
                                       }));
}

} // namespace quen::tools::server
