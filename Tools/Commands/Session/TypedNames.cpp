#include "Tools/Commands/Session/TypedNames.h"

#include "Foundation/PegPath.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace quen::tools {

namespace {

/// What lies here is named from here, as most people would type it.
std::string fromHere(const std::string& path) {
    std::error_code error;
    const std::string here = std::filesystem::current_path(error).string() + "/";
    return path.starts_with(here) && path.size() > here.size() ? path.substr(here.size()) : path;
}

std::string asTyped(std::string name) {
    if (name.starts_with("./") && name.size() > 2) {
        name.erase(0, 2);
    }
    if (name.ends_with('@') && needsPegClosed(std::string_view(name).substr(0, name.size() - 1))) {
        name.pop_back();
    }
    return fromHere(name);
}

void appendNew(std::vector<std::string>& names, const String& name) {
    std::string typed = asTyped(name.str());
    if (!typed.empty() && std::find(names.begin(), names.end(), typed) == names.end()) {
        names.push_back(std::move(typed));
    }
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
        text.replace(at, what.size(), with);
        at += with.size();
    }
}

} // namespace

std::vector<std::string> typedFiles(const QuenSourceControlRequest& request) {
    std::vector<std::string> names;
    for (const String& file : request.files().value_or(StringArray())) {
        appendNew(names, file);
    }
    return names;
}

std::vector<std::string> typedNames(const QuenSourceControlRequest& request) {
    std::vector<std::string> names = typedFiles(request);
    appendNew(names, request.destination());
    appendNew(names, request.options()[QuenSourceControlRequestOptionSourceLocation].stringValue());
    return names;
}

std::string withTypedNames(std::string line, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        const std::string typed = "\"" + name + "\"";
        if (!isRepositoryURL(name)) {
            replaceAll(line, "'" + absolutePath(name) + "'", typed);
            replaceAll(line, "'" + absolutePath(name) + "@'", typed);
        }
        replaceAll(line, "'" + name + "'", typed);
        replaceAll(line, "'" + name + "@'", typed);
        replaceAll(line, "\"" + name + "@\"", typed);
        replaceAll(line, "\"./" + name + "\"", typed);
    }
    return line;
}

bool showsAny(const std::string& line, const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        return line.find(name) != std::string::npos;
    });
}

} // namespace quen::tools
