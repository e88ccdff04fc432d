#include "Tools/Server/Methods/FileContent.h"

#include "Host/Places/Locations.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace quen::tools::server {

namespace {

namespace fs = std::filesystem;

/// What the bytes are kept under. Those of a numbered revision never change; what a path rests on
/// changes with the working copy's database. Empty for what may change unseen.
std::string nameOf(const std::string& location, const std::string& revision) {
    if (isRepositoryURL(location)) {
        return revision == "HEAD" ? "" : "content " + revision + " " + location;
    }
    if (revision != "BASE") {
        return {};
    }
    const std::string stamp = databaseStampOf(rootAbove(location));
    return stamp.empty() ? "" : "content " + stamp + " " + location;
}

/// Where the operation left the file; empty where it did not.
fs::path pathIn(const QuenSourceControlOperation& operation) {
    const Array* const records = operation.result().array();
    if (records == nullptr || records->count() == 0) {
        return {};
    }
    const Dictionary& record = *(*records)[0].dictionary();
    const FilePathValue* const path = record[QuenSourceControlOperationPathKey].filePath();
    return path == nullptr ? std::string() : (*path)->pathString().str();
}

std::optional<std::string> bytesAt(const fs::path& path) {
    std::error_code error;
    if (fs::is_symlink(path, error)) {
        return "link " + fs::read_symlink(path, error).string();
    }
    if (fs::is_directory(path, error)) {
        throw InputError("params: the content of a directory cannot be had");
    }
    std::ifstream stream(path, std::ios::binary);
    if (path.empty() || !stream.is_open()) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

QuenSourceControlRequestPtr requestFor(const std::string& location, const std::string& revision) {
    const bool isURL = isRepositoryURL(location);
    const auto request = makeRequest(
        RequestTypeExportFile, placeOf(location), {location},
        {{QuenSourceControlRequestOptionSupplyDirectRevision, isURL && revision != "HEAD"}});
    // The very constants: they tell that the network is not needed.
    request->setStartingRevision(revision == "BASE"   ? QuenSourceControlBASERevisionName
                                 : revision == "HEAD" ? QuenSourceControlHEADRevisionName
                                                      : String(revision));
    return request;
}

} // namespace

FileContent readContent(const Services& services, const std::stop_token& stop,
                        const std::string& location, const std::string& revision) {
    const std::string name = nameOf(location, revision);
    if (const auto kept = name.empty() ? nullptr : services.cache.find(name)) {
        return {*kept, {}};
    }
    FileContent content;
    content.ran = services.runs.perform(requestFor(location, revision), {stop, {}, {}});
    if (!content.ran.isWell()) {
        return content;
    }
    content.bytes = bytesAt(pathIn(*content.ran.operation));
    if (content.bytes && !name.empty()) {
        services.cache.keep(name, std::make_shared<const std::string>(*content.bytes));
    }
    return content;
}

std::string base64Of(std::string_view bytes) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto byte = [&](std::size_t i) -> std::uint32_t {
            return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U;
        };
        const std::uint32_t bits = (byte(0) << 16U) | (byte(1) << 8U) | byte(2);
        text += alphabet[bits >> 18U];
        text += alphabet[(bits >> 12U) & 63U];
        text += at + 1 < bytes.size() ? alphabet[(bits >> 6U) & 63U] : '=';
        text += at + 2 < bytes.size() ? alphabet[bits & 63U] : '=';
    }
    return text;
}

} // namespace quen::tools::server
