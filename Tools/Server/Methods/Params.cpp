#include "Tools/Server/Methods/Params.h"

#include "Host/Places/Locations.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <filesystem>

namespace quen::tools::server {

std::string readPath(const JsonInput& input) {
    const std::string text = input.string();
    if (!text.starts_with('/') || text.find('\0') != std::string::npos) {
        input.fail("expected an absolute path");
    }
    std::filesystem::path path = std::filesystem::path(text).lexically_normal();
    if (!path.has_filename()) {
        path = path.parent_path(); // a slash at the end
    }
    const std::string directory = realPathOf(path.parent_path().string());
    return directory.empty() || path == path.parent_path()
               ? path.string()
               : (std::filesystem::path(directory) / path.filename()).string();
}

std::vector<std::string> readPaths(const JsonInput& params, std::string_view name) {
    const JsonInput list = params.member(name);
    std::vector<std::string> paths;
    for (const JsonInput& path : list.array()) {
        paths.push_back(readPath(path));
    }
    if (paths.empty()) {
        list.fail("expected at least one path");
    }
    return paths;
}

std::string readURL(const JsonInput& input) {
    std::string url = input.string();
    if (!isRepositoryURL(url) || url.find('\0') != std::string::npos) {
        input.fail("expected a URL such as \"https://host/repository\"");
    }
    return url;
}

std::string readLocation(const JsonInput& params) {
    if (params.has("path") == params.has("url")) {
        params.fail("expected either \"path\" or \"url\"");
    }
    return params.has("path") ? readPath(params.member("path")) : readURL(params.member("url"));
}

std::string readPathOrURL(const JsonInput& input) {
    return isRepositoryURL(input.string()) ? readURL(input) : readPath(input);
}

std::string readRevision(const JsonInput& params, std::string_view name) {
    if (!params.has(name) || params.member(name).isNull()) {
        return {};
    }
    const JsonInput member = params.member(name);
    if (member.isString()) {
        const std::string word = member.string();
        if (word != "BASE" && word != "HEAD") {
            member.fail("expected \"BASE\", \"HEAD\" or a number");
        }
        return word;
    }
    return std::to_string(member.integer(0, INT32_MAX));
}

bool readFlag(const JsonInput& params, std::string_view name) {
    return params.has(name) && params.member(name).boolean();
}

std::string readText(const JsonInput& params, std::string_view name) {
    return params.has(name) ? params.member(name).stringOrNil().str() : std::string();
}

std::string readWorkingCopy(const JsonInput& params) {
    const JsonInput member = params.member("workingCopy");
    const std::string path = realPathOf(readPath(member));
    if (path.empty() || rootAbove(path) != path) {
        member.fail("expected the top directory of a working copy");
    }
    return path;
}

std::string rootOf(const JsonInput& params, const std::vector<std::string>& paths,
                   std::string_view name) {
    const JsonInput member = params.member(name);
    std::string root;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const JsonInput at = member.isString() ? member : member.array()[i];
        const std::string own = rootAbove(paths[i]);
        if (own.empty()) {
            at.fail("lies in no working copy");
        }
        if (!root.empty() && own != root) {
            at.fail("lies in another working copy than the paths before it: " + own);
        }
        root = own;
    }
    return root;
}

} // namespace quen::tools::server
