#include "Tools/Server/Methods/FileContent.h"
#include "Tools/Server/Methods/Params.h"

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

} // namespace

void addFileMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<ContentParams>(
        "file/content", decodeContent, [services](const Call& call, const ContentParams& params) {
            return content(services, call, params);
        }));
}

} // namespace quen::tools::server
