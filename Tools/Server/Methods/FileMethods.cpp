#include "Host/Places/Locations.h"
#include "Tools/Server/Methods/FileContent.h"
#include "Tools/Server/Methods/HistoryRecords.h"
#include "Tools/Server/Methods/Params.h"

#include <map>
#include <utility>

namespace quen::tools::server {

namespace {

struct ContentParams {
    std::string location;
    std::string revision;
};

ContentParams decodeContent(const JsonInput& params) {
    params.requireObject({"path", "url", "revision"});
    ContentParams content{readLocation(params), readRevision(params, "revision")};
    if (content.revision.empty()) {
        params.member("revision").fail("expected \"BASE\", \"HEAD\" or a number");
    }
    if (content.revision == "BASE" && params.has("url")) {
        params.member("revision").fail("a URL has no BASE");
    }
    return content;
}

OrderedJson content(const Services& services, const Call& call, const ContentParams& params) {
    const FileContent read = readContent(services, call.stop(), params.location, params.revision);
    OrderedJson json{{"base64", read.bytes ? OrderedJson(base64Of(*read.bytes)) : OrderedJson()}};
    addOutcome(json, read.ran);
    return json;
}

struct BlameParams {
    std::string location;
    std::string revision;
};

BlameParams decodeBlame(const JsonInput& params) {
    params.requireObject({"path", "url", "revision"});
    return {readLocation(params), readRevision(params, "revision")};
}

OrderedJson revisionJson(const BlameLine& line) {
    return {{"revision", line.revision ? OrderedJson(*line.revision) : OrderedJson()},
            {"author", toJson(line.author)},
            {"date", toJson(line.date)}};
}

/// Lines that share their revisions.
class BlameTable {
public:
    void add(const BlameLine& line) {
        if (!line.revision) {
            lines_.push_back(-1);
            return;
        }
        const auto [found, isNew] = indexes_.try_emplace(*line.revision, revisions_.size());
        if (isNew) {
            revisions_.push_back(revisionJson(line));
        }
        lines_.push_back(found->second);
    }
    OrderedJson json() const { return {{"revisions", revisions_}, {"lines", lines_}}; }

private:
    std::map<std::int64_t, std::size_t> indexes_;
    OrderedJson revisions_ = OrderedJson::array();
    OrderedJson lines_ = OrderedJson::array();
};

OrderedJson blame(const Services& services, Call& call, const BlameParams& params) {
    const auto request = makeRequest(RequestTypeBlame, placeOf(params.location), {params.location});
    if (!params.revision.empty()) {
        request->setStartingRevision(params.revision);
    }
    BlameReader reader;
    BlameTable table;
    std::size_t count = 0;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) {
        reader.take(piece);
        OrderedJson part = OrderedJson::array();
        for (const BlameLine& line : reader.takeNew()) {
            ++count;
            if (call.wantsParts()) {
                part.push_back(revisionJson(line));
            } else {
                table.add(line);
            }
        }
        call.progress().report("Reading who changed each line", count);
        if (!part.empty()) {
            call.sendPart(part);
        }
    };
    const Ran ran = services.runs.perform(request, options);
    OrderedJson json = table.json();
    addOutcome(json, ran);
    return json;
}

} // namespace

void addFileMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<ContentParams>(
        "file/content", decodeContent, [services](const Call& call, const ContentParams& params) {
            return content(services, call, params);
        }));
    Method ofBlame = query<BlameParams>("file/blame", decodeBlame,
                                        [services](Call& call, const BlameParams& params) {
                                            return blame(services, call, params);
                                        });
    ofBlame.hasParts = true;
    server.dispatcher().add(std::move(ofBlame));
}

} // namespace quen::tools::server
