#include "Tools/Commands/Session/ErrorReason.h"

#include "Host/Facts/UnreadableNames.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Commands/Session/TypedNames.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace quen::tools {

namespace {

using Names = ErrorFacts::Names;
using Lines = std::vector<std::string>;

/// What the client says on top of the reason, and that helps nobody here.
bool isFrame(std::string_view line) {
    return line == "Illegal target for the requested operation" ||
           line == "Commit failed (details follow):" || line.starts_with("Try 'svn ") ||
           line.starts_with("Run 'svn cleanup' ") ||
           line.ends_with(" ignore properties and try again.") ||
           (line.starts_with("Could not ") &&
            line.find(" all targets because ") != std::string_view::npos);
}

Lines withoutFrames(const Lines& lines) {
    Lines kept;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept),
                 [](const std::string& line) { return !isFrame(line); });
    return kept.empty() ? lines : kept;
}

std::string plainLine(std::string line, const Names& names) {
    constexpr std::string_view warning = "warning: ";
    if (line.starts_with(warning)) {
        line.erase(0, warning.size());
    }
    return withTypedNames(std::move(line), names);
}

/// The reason in the client's words.
Lines reasonOfClient(const Error& error, const Names& names) {
    Lines lines = withoutFrames(linesOfError(error));
    for (std::string& line : lines) {
        line = plainLine(std::move(line), names);
    }
    const bool isNamed = std::any_of(
        lines.begin(), lines.end(), [&](const std::string& line) { return showsAny(line, names); });
    if (names.size() == 1 && names.front() != "." && !isNamed) {
        lines.front() = "\"" + names.front() + "\": " + lines.front();
    }
    return lines;
}

/// The provider's words for what is not there at all, or not in that revision.
bool saysNotFoundAtHead(const Lines& client) {
    return anyLineHas(client, "The revision HEAD was not found for the file ") ||
           anyLineHas(client, "The revision (null) was not found for the file ");
}

Lines sentencesOn(const Names& names, const std::string& end) {
    Lines lines;
    for (const std::string& name : names) {
        std::string line = "\"";
        line.append(name).append("\" ").append(end);
        lines.push_back(std::move(line));
    }
    return lines;
}

Lines sentencesOnMissing(const ErrorFacts& facts) {
    Lines lines;
    for (const std::string& name : facts.filesMissing()) {
        lines.push_back(sentenceOnMissingPath(name));
    }
    return lines;
}

Names namesShownIn(const Lines& lines, const Names& names) {
    Names shown;
    std::copy_if(names.begin(), names.end(), std::back_inserter(shown),
                 [&](const std::string& name) { return anyLineHas(lines, "\"" + name + "\""); });
    return shown;
}

/// The files that are on the disk and that the client says it does not know.
Names filesUnknownToClient(const ErrorFacts& facts, const Lines& client) {
    return namesShownIn(client, facts.filesPresent());
}

/// The reason in better words than the client's, where the disk shows it; empty where it does not.
Lines reasonOnDisk(const ErrorFacts& facts, const Lines& client) {
    if (facts.saysOutside()) {
        if (const Names outside = facts.filesOutside(); !outside.empty()) {
            return sentencesOn(outside, "is not in a working copy.");
        }
    }
    if (facts.saysOutside() || facts.has({155010, 200005, 200009}) || saysNotFoundAtHead(client)) {
        if (Lines missing = sentencesOnMissing(facts); !missing.empty()) {
            return missing;
        }
    }
    if (saysNotFoundAtHead(client)) {
        return sentencesOn(namesShownIn(client, facts.names), "does not exist in the repository.");
    }
    return facts.has({155010, 200005})
               ? sentencesOn(filesUnknownToClient(facts, client), "is not under version control.")
               : Lines();
}

Lines namesNotInUTF8(const Error& error) {
    Lines lines;
    for (const String& name : unreadableNamesOf(error).names) {
        lines.push_back("The name \"" + name.str() + "\" is not UTF-8. Rename it.");
    }
    return lines;
}

} // namespace

std::vector<std::string> reasonForPerson(const Error& error, const ErrorFacts& facts) {
    const Lines client = reasonOfClient(error, facts.names);
    Lines lines = reasonOnDisk(facts, client);
    if (lines.empty()) {
        lines = client;
    }
    for (std::string& line : namesNotInUTF8(error)) {
        lines.push_back(std::move(line));
    }
    return lines;
}

bool anyLineHas(const std::vector<std::string>& lines, std::string_view text) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

std::string sentenceOnMissingPath(const std::string& path) {
    const std::filesystem::path whole(path);
    const auto directory = whole.parent_path();
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(
             directory.empty() ? std::filesystem::path(".") : directory, ignored)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    const std::string name = whole.filename().string();
    // Of a name of one or two letters every other one is a slip.
    const std::string meant = name.size() < 3 ? "" : nearestName(name, names);
    return "\"" + path + "\" does not exist." +
           (meant.empty() ? "" : " Did you mean \"" + (directory / meant).string() + "\"?");
}

} // namespace quen::tools
