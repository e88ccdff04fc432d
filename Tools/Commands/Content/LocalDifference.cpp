#include "Tools/Commands/Content/LocalDifference.h"

#include "Host/Places/Locations.h"

namespace quen::tools {

namespace {

/// The client finds no local changes of a name that is closed with an `@` (seen on 1.14.2). A name
/// that ends in `/.` holds none in its last component and needs no closing; the client drops it.
String fileFor(const std::string& path) {
    const bool isClosed = closedClientPath(path) != clientPath(path);
    return isClosed ? String(clientPath(path).str() + "/.") : clientPath(path);
}

} // namespace

QuenSourceControlRequestPtr localDifference(const SourceTree& source,
                                            const std::vector<std::string>& paths) {
    StringArray files;
    for (const std::string& path : paths) {
        files.push_back(fileFor(path));
    }
    auto request = makeRequest(RequestTypeDiff, source, files);
    if (!paths.empty()) {
        // A request without revisions is about the whole directory, whatever its files. The change
        // with no number is to the client (seen on 1.14.2) what no revision at all is.
        request->setStartingRevision("^");
        request->setEndingRevision("");
    }
    return request;
}

} // namespace quen::tools
