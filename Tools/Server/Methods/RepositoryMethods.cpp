#include "Host/Facts/ListFacts.h"
#include "Host/Places/BranchNames.h"
#include "Host/Places/Locations.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace quen::tools::server {

namespace {

namespace fs = std::filesystem;

struct ListParams {
    std::string location;
};

ListParams decodeList(const JsonInput& params) {
    params.requireObject({"path", "url"});
    return {readLocation(params)};
}

OrderedJson entryJson(const std::string& location, const ListEntry& entry) {
    OrderedJson json{{"name", toJson(entry.name)}, {"kind", toJson(entry.kind)}};
    if (entry.size) {
        json["size"] = *entry.size;
    }
    addCommit(json, entry.commit);
    json["url"] = isRepositoryURL(location)
                      ? toJson(String(location + "/" + encodedName(entry.name.view())))
                      : OrderedJson();
    if (entry.lock) {
        json["lock"] = {{"owner", toJson(entry.lock->owner)},
                        {"comment", toJson(entry.lock->comment)},
                        {"created", toJson(entry.lock->created)}};
    }
    return json;
}

OrderedJson list(const Services& services, Call& call, const ListParams& params) {
    std::string location = params.location;
    while (location.ends_with('/')) {
        location.pop_back();
    }
    ListFactsReader reader;
    OrderedJson entries = OrderedJson::array();
    std::size_t next = 0;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        const std::vector<ListEntry>& read = reader.facts().entries;
        OrderedJson part = OrderedJson::array();
        for (; next < read.size(); ++next) {
            part.push_back(entryJson(location, read[next]));
        }
        call.progress().report("Listing", next);
        if (!call.wantsParts()) {
            entries.insert(entries.end(), part.begin(), part.end());
        } else if (!part.empty()) {
            call.sendPart(part);
        }
    };
    const Ran ran =
        services.runs.perform(makeRequest(RequestTypeList, placeOf(location), {location}), options);
    OrderedJson json{{"entries", std::move(entries)}};
    addOutcome(json, ran);
    return json;
}

struct ExportParams {
    std::string location;
    std::string revision;
    std::string to;
};

ExportParams decodeExport(const JsonInput& params) {
    params.requireObject({"path", "url", "revision", "to"});
    ExportParams wanted{readLocation(params), readRevision(params, "revision"),
                        readPath(params.member("to"))};
    std::error_code error;
    if (fs::exists(fs::symlink_status(wanted.to, error))) {
        params.member("to").fail("there is something in that place already");
    }
    return wanted;
}

/// Puts what was fetched into its place; the reason where that is not possible, or the empty text.
std::string moveIntoPlace(const Value& result, const std::string& to) {
    const Array* const records = result.array();
    if (records == nullptr || records->count() == 0) {
        return "the client left nothing";
    }
    const Dictionary& record = *(*records)[0].dictionary();
    const FilePathValue* const path = record[QuenSourceControlOperationPathKey].filePath();
    const fs::path from = path == nullptr ? "" : (*path)->pathString().str();
    std::error_code error;
    fs::rename(from, to, error);
    if (error == std::errc::cross_device_link) {
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    }
    return error ? error.message() : std::string();
}

OrderedJson exportTo(const Services& services, Call& call, const ExportParams& params) {
    const bool isURL = isRepositoryURL(params.location);
    const auto request = makeRequest(
        RequestTypeExportFile, placeOf(params.location), {params.location},
        {{QuenSourceControlRequestOptionSupplyDirectRevision, isURL && !params.revision.empty()}});
    if (!params.revision.empty()) {
        request->setStartingRevision(params.revision == "BASE" ? QuenSourceControlBASERevisionName
                                                               : String(params.revision));
    }
    ChangeFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        call.progress().report("Exporting", reader.facts().items.size());
    };
    const Ran ran = services.runs.perform(request, options);
    OrderedJson json{{"path", nullptr}, {"revision", numberJson(reader.facts().revision)}};
    if (ran.isWell()) {
        const std::string problem = moveIntoPlace(ran.operation->result(), params.to);
        if (!problem.empty()) {
            throw ProtocolError(InternalError, params.to + ": " + problem);
        }
        json["path"] = toJson(String(params.to));
    }
    addOutcome(json, ran);
    return json;
}

struct ImportParams {
    std::string path;
    std::string url;
    std::string message;
};

ImportParams decodeImport(const JsonInput& params) {
    params.requireObject({"path", "url", "message"});
    return {readPath(params.member("path")), readURL(params.member("url")),
            params.member("message").string()};
}

OrderedJson import(const Services& services, Call& call, const ImportParams& params) {
    const auto request =
        makeRequest(RequestTypeImport, placeOf(params.url), {importedPath(params.path).str()},
                    {{QuenSourceControlRequestOptionMessage, messageFor(services, params.message)},
                     {QuenSourceControlRequestOptionSourceLocation, clientPath(params.url)}});
    ChangeFactsReader reader(ChangeColumns::schedule);
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        call.progress().report("Importing", reader.facts().items.size());
    };
    const Ran ran = services.runs.perform(request, options);
    OrderedJson json{{"revision", numberJson(reader.facts().revision)},
                     {"items", itemsJson(reader.facts(), {})}};
    addOutcome(json, ran);
    return json;
}

} // namespace

void addRepositoryMethods(Server& server, const Services& services) {
    Method ofList = query<ListParams>(
        "repository/list", decodeList,
        [services](Call& call, const ListParams& params) { return list(services, call, params); });
    ofList.hasParts = true;
    server.dispatcher().add(std::move(ofList));
    server.dispatcher().add(query<ExportParams>("repository/export", decodeExport,
                                                [services](Call& call, const ExportParams& params) {
                                                    return exportTo(services, call, params);
                                                }));
    server.dispatcher().add(query<ImportParams>("repository/import", decodeImport,
                                                [services](Call& call, const ImportParams& params) {
                                                    return import(services, call, params);
                                                }));
}

} // namespace quen::tools::server
