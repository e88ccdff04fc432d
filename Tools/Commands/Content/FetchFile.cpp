#include "Tools/Commands/Content/FetchFile.h"

#include "Host/Places/Locations.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Places/RevisionArguments.h"

#include <fstream>
#include <system_error>

namespace quen::tools {

namespace {

/// Where the operation left the file; empty where it did not.
std::filesystem::path pathIn(const Value& result) {
    const Array* const records = result.array();
    if (records == nullptr || records->count() == 0) {
        return {};
    }
    const Dictionary& record = *(*records)[0].dictionary();
    const FilePathValue* const path = record[QuenSourceControlOperationPathKey].filePath();
    return path == nullptr ? std::string() : (*path)->pathString().str();
}

} // namespace

Outcome<FetchedFile> fetchFile(Session& session, const SourceTree& source,
                               const FileToFetch& file) {
    auto request =
        makeRequest(RequestTypeExportFile, source, {clientPath(file.location)},
                    Dictionary{{QuenSourceControlRequestOptionSupplyDirectRevision, file.pegs}});
    request->setStartingRevision(startingRevisionFor(file.revision));
    const auto operation = session.query(request, Follow::progress);
    if (!operation) {
        return operation.explained();
    }
    return FetchedFile{*operation, pathIn((*operation)->result())};
}

std::optional<std::string> contentOf(const FetchedFile& file) {
    std::error_code error;
    if (std::filesystem::is_symlink(file.path, error)) {
        return "link " + std::filesystem::read_symlink(file.path, error).string();
    }
    std::ifstream stream(file.path, std::ios::binary);
    if (!stream.is_open() || !std::filesystem::is_regular_file(file.path, error)) {
        return std::nullopt;
    }
    std::string content(std::filesystem::file_size(file.path, error), '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(stream.gcount()));
    return content;
}

} // namespace quen::tools
