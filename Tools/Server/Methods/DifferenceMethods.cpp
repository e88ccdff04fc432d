#include "Foundation/XMLReport.h"
#include "Host/ClientCommand.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/FileContent.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <filesystem>
#include <utility>

namespace quen::tools::server {

namespace {

/// A place in the repository, and the revision to look at it in.
struct Side {
    std::string location;
    std::string revision;
};

Side readSide(const JsonInput& input) {
    input.requireObject({"path", "url", "revision"});
    return {readLocation(input), readRevision(input, "revision")};
}

struct SummaryParams {
    Side from;
    Side to;
};

SummaryParams decodeSummary(const JsonInput& params) {
    params.requireObject({"from", "to"});
    return {readSide(params.member("from")), readSide(params.member("to"))};
}

class SummaryReader {
public:
    SummaryReader()
        : reader_({"paths", "path"}, [this](const XMLElement& path, std::size_t) {
              items_.push_back(
                  {{"path", toJson(String(path.text()))},
                   {"status", toJson(String(path.attribute("item").value_or("none")))},
                   {"property", toJson(String(path.attribute("props").value_or("none")))},
                   {"kind", toJson(String(path.attribute("kind").value_or("file")))}});
          }) {}

    void take(std::string_view piece) { reader_.read(piece); }
    OrderedJson takeItems() { return std::move(items_); }

private:
    OrderedJson items_ = OrderedJson::array();
    XMLReportReader reader_;
};

OrderedJson summary(const Services& services, const Call& call, const SummaryParams& params) {
    const bool isPinned = !params.from.revision.empty() || !params.to.revision.empty();
    const auto request =
        makeRequest(RequestTypeDiff, placeOf(params.from.location), {params.from.location},
                    {{QuenSourceControlRequestOptionSupplyDirectRevision, isPinned}});
    request->setDestination(isPinned ? clientPath(params.to.location)
                                     : closedClientPath(params.to.location));
    if (isPinned) {
        request->setStartingRevision(params.from.revision.empty() ? "HEAD"
                                                                  : params.from.revision.c_str());
        request->setEndingRevision(params.to.revision.empty() ? "HEAD"
                                                              : params.to.revision.c_str());
    }
    SummaryReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.take(piece); };
    const Ran ran = services.runs.perform(request, options);
    OrderedJson json{{"items", reader.takeItems()}};
    addOutcome(json, ran);
    return json;
}

struct TextParams {
    std::vector<std::string> paths;
    std::string from;
    std::string to;
};

TextParams decodeText(const JsonInput& params) {
    params.requireObject({"paths", "url", "from", "to"});
    if (params.has("paths") == params.has("url")) {
        params.fail("expected either \"paths\" or \"url\"");
    }
    TextParams text;
    text.paths = params.has("url") ? std::vector{readURL(params.member("url"))} : readPaths(params);
    text.from = readRevision(params, "from");
    text.to = readRevision(params, "to");
    if (params.has("url") && (text.from.empty() || text.to.empty())) {
        params.fail("expected \"from\" and \"to\": a URL has no text on disk");
    }
    if (text.from.empty() && !text.to.empty()) {
        params.fail("expected \"from\" beside \"to\"");
    }
    return text;
}

/// Paths as a patch names them: from the top of their working copy, which is where the client then
/// runs; as they are where they lie in several.
std::vector<std::string> patchPaths(const TextParams& params, std::string& top) {
    top = realPathOf(rootAbove(params.paths.front()));
    std::vector<std::string> paths;
    for (const std::string& path : params.paths) {
        if (top.empty() || rootAbove(path) != rootAbove(params.paths.front())) {
            top.clear();
            return params.paths;
        }
        paths.push_back("./" + std::filesystem::path(path).lexically_relative(top).string());
    }
    return paths;
}

/// What is on disk, against what it rests on or a revision: nothing that the provider is asked for.
QuenSourceControlOperationPtr makeLocalDifference(const TextParams& params,
                                                  const std::vector<std::string>& paths) {
    std::vector<std::string> words{"diff"};
    if (!params.from.empty()) {
        words.insert(words.end(), {"-r", params.from});
    }
    return ClientCommand::make(words, paths);
}

OrderedJson text(const Services& services, const Call& call, const TextParams& params) {
    std::string bytes;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { bytes += piece; };
    Ran ran;
    if (params.to.empty()) {
        const std::vector<std::string> paths = patchPaths(params, options.directory);
        ran = services.runs.run([&] { return makeLocalDifference(params, paths); }, options);
    } else {
        const auto request =
            makeRequest(RequestTypeDiff, placeOf(params.paths.front()), params.paths);
        request->setStartingRevision(params.from);
        request->setEndingRevision(params.to);
        ran = services.runs.perform(request, options);
    }
    OrderedJson json{{"base64", ran.isWell() ? OrderedJson(base64Of(bytes)) : OrderedJson()}};
    addOutcome(json, ran);
    return json;
}

} // namespace

void addDifferenceMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<SummaryParams>(
        "diff/summary", decodeSummary, [services](const Call& call, const SummaryParams& params) {
            return summary(services, call, params);
        }));
    server.dispatcher().add(query<TextParams>(
        "diff/text", decodeText, [services](const Call& call, const TextParams& params) {
            return text(services, call, params);
        }));
}

} // namespace quen::tools::server
