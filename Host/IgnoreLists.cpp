#include "Host/IgnoreLists.h"

#include "Foundation/Lines.h"
#include "Foundation/PathComponents.h"
#include "Foundation/XMLReport.h"
#include "Host/Places/Locations.h"
#include "Host/TaskFailure.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace quen {

namespace {

constexpr std::string_view ignoreProperty = "svn:ignore";

struct DirectoryList {
    std::optional<StringArray> names;
    Error error;
};

using Lists = std::map<std::string, DirectoryList>;

std::string directoryOf(const String& path) {
    const std::string directory(deletingLastPathComponent(path.view()));
    return directory.empty() ? "." : directory;
}

Lists listsFor(const std::vector<String>& paths, const QueryRunner& run) {
    Lists lists;
    for (const String& path : paths) {
        const std::string directory = directoryOf(path);
        if (lists.contains(directory)) {
            continue;
        }
        const auto query = ClientCommand::makeQuery(
            {"propget", "--xml", String(ignoreProperty), closedClientPath(directory)});
        run(*query);
        lists[directory] = {ignoreListIn(query->output()->bytes()), query->error()};
    }
    return lists;
}

bool isControl(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool holds(const StringArray& list, std::string_view name) {
    return std::any_of(list.begin(), list.end(),
                       [&](const String& each) { return each.view() == name; });
}

/// The provider takes no entry for one that has neither, so that it cannot take it out.
bool mayHoldLetterOrDigit(std::string_view name) noexcept {
    return std::any_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x80 || std::isalnum(byte) != 0;
    });
}

std::string problemOfUnignoring(std::string_view name, const StringArray& list,
                                const std::string& directory) {
    if (!holds(list, name)) {
        return "is not among the ignored names of \"" + directory + "\".";
    }
    return mayHoldLetterOrDigit(name)
               ? ""
               : "holds no letter and no digit, and can only be taken out with: svn propedit "
                 "svn:ignore";
}

bool meansNoList(const Error& error) {
    switch (taskFailureOf(error)) {
    case TaskFailure::cancelled:
    case TaskFailure::couldNotStart:
    case TaskFailure::killed: return true;
    default: return false;
    }
}

std::string problemOf(const String& path, RequestType type, const DirectoryList& list) {
    const std::string directory = directoryOf(path);
    if (list.error) {
        return "cannot be ignored, since \"" + directory +
               "\" is not a directory under version control.";
    }
    if (!list.names) {
        return "cannot be ignored, since the ignored names of \"" + directory +
               "\" are not plain text. Write them anew with: svn propedit svn:ignore";
    }
    std::string problem = problemOfIgnoredName(path.str(), type);
    if (problem.empty() && type == RequestTypeUnignore) {
        problem = problemOfUnignoring(lastPathComponent(path.view()), *list.names, directory);
    }
    return problem;
}

} // namespace

std::optional<StringArray> ignoreListIn(std::string_view report) {
    StringArray list;
    bool isText = true;
    XMLReportReader reader({"target", "property"}, [&](const XMLElement& property, std::size_t) {
        if (property.attribute("name") != ignoreProperty) {
            return;
        }
        isText = !property.attribute("encoding").has_value();
        list.clear();
        for (const std::string_view line : linesOf(property.text())) {
            if (!line.empty()) {
                list.emplace_back(line);
            }
        }
    });
    const bool isWhole = !reader.readAll(report);
    return isWhole && isText ? std::optional(std::move(list)) : std::nullopt;
}

std::string problemOfIgnoredName(const std::string& path, RequestType type) {
    std::string name(lastPathComponent(path));
    if (name.empty() || name == "." || name == "..") {
        return "is not the name of anything in a directory.";
    }
    if (std::any_of(name.begin(), name.end(), isControl)) {
        return "holds a control character, which no line of the list of ignored names can.";
    }
    if (name.find('@') != std::string::npos) {
        // It would be closed for the client, and get into the list like that.
        std::replace(name.begin(), name.end(), '@', '?');
        return "holds an @, which cannot be written to the list of ignored names. The pattern \"" +
               name + "\" matches it.";
    }
    if (name.starts_with('-') && type == RequestTypeIgnore) {
        return "begins with -, which would be taken for an option. The pattern \"[-]" +
               name.substr(1) + "\" matches it.";
    }
    return {};
}

IgnorePlan planIgnore(const std::vector<String>& paths, RequestType type, const QueryRunner& run) {
    IgnorePlan plan;
    const Lists lists = listsFor(paths, run);
    for (const String& path : paths) {
        const DirectoryList& list = lists.at(directoryOf(path));
        if (list.error && meansNoList(list.error)) {
            plan.error = list.error;
            return plan;
        }
        const std::string problem = problemOf(path, type, list);
        if (!problem.empty()) {
            plan.problems.push_back({path, problem});
        }
    }
    return plan;
}

std::vector<String> undoneIgnores(const std::vector<String>& paths, RequestType type,
                                  const QueryRunner& run) {
    const Lists lists = listsFor(paths, run);
    std::vector<String> undone;
    for (const String& path : paths) {
        const auto& names = lists.at(directoryOf(path)).names;
        const bool isIgnored = names && holds(*names, lastPathComponent(path.view()));
        if (isIgnored != (type == RequestTypeIgnore)) {
            undone.push_back(path);
        }
    }
    return undone;
}

} // namespace quen
