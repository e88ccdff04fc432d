#include "Tools/Commands/Session/ErrorAdvice.h"

#include "Foundation/ShellWord.h"
#include "Host/Facts/UnreadableNames.h"
#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "Host/RunContext.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/ErrorTexts.h"
#include "Tools/Commands/Session/TypedNames.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace quen::tools {

namespace {

using Names = std::vector<std::string>;
using Lines = std::vector<std::string>;

/// What is known of an error for advice.
struct Facts {
    std::set<std::int64_t> numbers;
    TaskFailure failure = TaskFailure::other;
    /// Everything that the request names, and its files alone, which must be there.
    Names names;
    Names files;
    std::int32_t requestType = 0;
    /// The provider's own code for what is not under version control.
    bool isOutside = false;

    bool has(const std::vector<std::int64_t>& any) const {
        return std::any_of(any.begin(), any.end(),
                           [this](std::int64_t number) { return numbers.contains(number); });
    }
};

Facts factsOf(const Error& error, const QuenSourceControlRequest* request) {
    constexpr std::int64_t notUnderVersionControl = -71;
    Facts facts;
    facts.failure = taskFailureOf(error);
    if (request != nullptr) {
        facts.names = typedNames(*request);
        facts.files = typedFiles(*request);
        facts.requestType = request->type();
    }
    if (facts.names.empty()) {
        facts.names = facts.files = {"."};
    }
    for (const Error& each : withUnderlyingErrors(error)) {
        const Array* const codes = each.userInfo()[QuenSourceControlTaskErrorCodesKey].array();
        for (const Value& code : codes == nullptr ? Array() : *codes) {
            facts.numbers.insert(code.integer() == nullptr ? 0 : *code.integer());
        }
        if (each.domain() == QuenSourceControlTaskErrorDomain) {
            facts.numbers.insert(each.code());
        }
        facts.isOutside |=
            each.domain() == QuenSourceControlErrorDomain && each.code() == notUnderVersionControl;
    }
    return facts;
}

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
Lines reasonOf(const Error& error, const Names& names) {
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

bool isThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

template <typename Predicate> Names localFiles(const Facts& facts, Predicate holds) {
    Names found;
    std::copy_if(facts.files.begin(), facts.files.end(), std::back_inserter(found),
                 [&](const std::string& name) { return !isRepositoryURL(name) && holds(name); });
    return found;
}

Names filesOutside(const Facts& facts) {
    return localFiles(facts, [](const std::string& name) { return topDirectoryOf(name).empty(); });
}

Names filesMissing(const Facts& facts) {
    return localFiles(facts, [](const std::string& name) { return !isThere(name); });
}

bool saysOutside(const Facts& facts) {
    return facts.isOutside || facts.has({155007});
}

bool anyLineHas(const Lines& lines, std::string_view text) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
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

Lines sentencesOnMissing(const Facts& facts) {
    Lines lines;
    for (const std::string& name : filesMissing(facts)) {
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
Names filesUnknownToClient(const Facts& facts, const Lines& client) {
    return namesShownIn(client, localFiles(facts, isThere));
}

/// The reason in better words than the client's, where the disk shows it; empty where it does not.
Lines reasonOnDisk(const Facts& facts, const Lines& client) {
    if (saysOutside(facts)) {
        if (const Names outside = filesOutside(facts); !outside.empty()) {
            return sentencesOn(outside, "is not in a working copy.");
        }
    }
    if (saysOutside(facts) || facts.has({155010, 200005, 200009}) || saysNotFoundAtHead(client)) {
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

std::string cleanupAdvice(const Facts& facts) {
    const std::string command = cleanupCommandFor(facts.names.empty() ? "." : facts.names.front());
    return command.empty() ? "" : "Unless another svn is at work there, run: " + command;
}

std::string adviceOnVersioning(const Facts& facts, const Lines& reason) {
    if ((saysOutside(facts) && !filesOutside(facts).empty()) ||
        anyLineHas(reason, "does not lie in a working copy")) {
        return "Go into a working copy, or make one with: quen checkout URL";
    }
    if (!filesMissing(facts).empty()) {
        return "";
    }
    const Names present = localFiles(facts, isThere);
    return present.size() == 1 && present.front() != "."
               ? "Put it under version control with: quen add " + shellWord(present.front())
               : "";
}

bool hasClient() {
    const std::string client = RunContext::current().toolsDirectory().str() + "/svn";
    return ::access(client.c_str(), X_OK) == 0;
}

std::string adviceByFailure(const Facts& facts) {
    switch (facts.failure) {
    case TaskFailure::couldNotStart:
        // A client that is there was not started for a reason that the error names.
        return hasClient()
                   ? ""
                   : "Install Subversion's command-line client (package subversion), or put the "
                     "directory that holds svn on PATH.";
    case TaskFailure::locked: return cleanupAdvice(facts);
    case TaskFailure::offline:
        return "Check the spelling of the URL, and that the server can be reached.";
    default: return "";
    }
}

struct Advice {
    std::vector<std::int64_t> numbers;
    const char* text = "";
};

std::string adviceByNumber(const Facts& facts) {
    static const std::array table{
        Advice{{155011, 160024, 160028, 170004},
               "Bring the working copy up to date first: quen update"},
        Advice{{155015}, "Edit the files, then mark them as resolved with: quen resolve FILE"},
        Advice{{160006}, "`quen log -l 1` shows the newest revision."},
        Advice{{180001, 170013, 670002},
               "Check the spelling of the URL, and that the server can be reached."},
    };
    const auto* const found = std::find_if(table.begin(), table.end(), [&](const Advice& advice) {
        return facts.has(advice.numbers);
    });
    return found == table.end() ? "" : found->text;
}

/// Of what is not in the repository.
std::string adviceOnLookingThere(const Facts& facts) {
    const bool isAboutBranch =
        facts.requestType == RequestTypeSwitch || facts.requestType == RequestTypeMerge;
    return isAboutBranch ? "`quen branches` lists the branches."
                         : "`quen list` of the directory above shows what is there.";
}

std::string adviceByText(const Facts& facts, const Lines& reason) {
    if (anyLineHas(reason, "Unrecognized URL scheme")) {
        return "A repository's URL begins with https://, http://, svn://, svn+ssh:// or file://.";
    }
    if (facts.has({160013, 160005}) || anyLineHas(reason, "non-existent in revision") ||
        anyLineHas(reason, "does not exist in the repository") ||
        (facts.has({170000}) && anyLineHas(reason, "doesn't exist"))) {
        return adviceOnLookingThere(facts);
    }
    return anyLineHas(reason, "was not found for the file \"")
               ? "`quen log` of the file shows its revisions."
               : "";
}

std::string adviceFor(const Facts& facts, const Lines& reason) {
    for (const std::string& advice :
         {adviceByText(facts, reason), adviceByFailure(facts), adviceByNumber(facts)}) {
        if (!advice.empty()) {
            return advice;
        }
    }
    return saysOutside(facts) || facts.has({155010, 200005}) ||
                   anyLineHas(reason, "is not under version control")
               ? adviceOnVersioning(facts, reason)
               : "";
}

} // namespace

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

std::vector<std::string> linesForPerson(const Error& error,
                                        const QuenSourceControlRequest* request) {
    std::string advice;
    return linesForPerson(error, request, advice);
}

std::vector<std::string> linesForPerson(const Error& error, const QuenSourceControlRequest* request,
                                        std::string& advice) {
    const Facts facts = factsOf(error, request);
    const Lines client = reasonOf(error, facts.names);
    Lines lines = reasonOnDisk(facts, client);
    if (lines.empty()) {
        lines = client;
    }
    for (std::string& line : namesNotInUTF8(error)) {
        lines.push_back(std::move(line));
    }
    advice = adviceFor(facts, lines);
    if (!advice.empty() && std::find(lines.begin(), lines.end(), advice) == lines.end()) {
        lines.push_back(advice);
    }
    return lines;
}

} // namespace quen::tools
