#include "Tools/Commands/Session/ErrorAdvice.h"

#include "Foundation/ShellWord.h"
#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/ErrorReason.h"

#include <algorithm>
#include <array>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

using Lines = std::vector<std::string>;

std::string cleanupAdvice(const ErrorFacts& facts) {
    const std::string command = cleanupCommandFor(facts.names.empty() ? "." : facts.names.front());
    return command.empty() ? "" : "Unless another svn is at work there, run: " + command;
}

std::string adviceOnVersioning(const ErrorFacts& facts, const Lines& reason) {
    if ((facts.saysOutside() && !facts.filesOutside().empty()) ||
        anyLineHas(reason, "does not lie in a working copy")) {
        return "Go into a working copy, or make one with: quen checkout URL";
    }
    if (!facts.filesMissing().empty()) {
        return "";
    }
    const ErrorFacts::Names present = facts.filesPresent();
    return present.size() == 1 && present.front() != "."
               ? "Put it under version control with: quen add " + shellWord(present.front())
               : "";
}

bool hasClient() {
    const std::string client = RunContext::current().toolsDirectory().str() + "/svn";
    return ::access(client.c_str(), X_OK) == 0;
}

std::string adviceByFailure(const ErrorFacts& facts) {
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

std::string adviceByNumber(const ErrorFacts& facts) {
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
std::string adviceOnLookingThere(const ErrorFacts& facts) {
    const bool isAboutBranch =
        facts.requestType == RequestTypeSwitch || facts.requestType == RequestTypeMerge;
    return isAboutBranch ? "`quen branches` lists the branches."
                         : "`quen list` of the directory above shows what is there.";
}

std::string adviceByText(const ErrorFacts& facts, const Lines& reason) {
    if (anyLineHas(reason, "Unrecognized URL scheme")) {
        return "A repository's URL begins with https://, http://, svn://, svn+ssh:// or file://.";
    }
    if (anyLineHas(reason, "Invalid control character")) {
        return "A name under version control cannot hold a control character. Rename the item.";
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

std::string adviceFor(const ErrorFacts& facts, const Lines& reason) {
    for (const std::string& advice :
         {adviceByText(facts, reason), adviceByFailure(facts), adviceByNumber(facts)}) {
        if (!advice.empty()) {
            return advice;
        }
    }
    return facts.saysOutside() || facts.has({155010, 200005}) ||
                   anyLineHas(reason, "is not under version control")
               ? adviceOnVersioning(facts, reason)
               : "";
}

/// The next step that signing in has found out; it is among the reasons already. nil for none.
String signInAdvice(const Error& error) {
    const Dictionary& userInfo = error.userInfo();
    return userInfo.find(QuenSourceControlSignInFailureKey) == nullptr
               ? String()
               : userInfo[NSLocalizedRecoverySuggestionErrorKey].stringValue();
}

} // namespace

std::vector<std::string> linesForPerson(const Error& error,
                                        const QuenSourceControlRequest* request) {
    std::string advice;
    return linesForPerson(error, request, advice);
}

std::vector<std::string> linesForPerson(const Error& error, const QuenSourceControlRequest* request,
                                        std::string& advice) {
    const ErrorFacts facts = ErrorFacts::of(error, request);
    Lines lines = reasonForPerson(error, facts);
    if (const String nextStep = signInAdvice(error); !nextStep.isEmpty()) {
        advice = nextStep.str();
        return lines;
    }
    advice = adviceFor(facts, lines);
    if (!advice.empty() && std::find(lines.begin(), lines.end(), advice) == lines.end()) {
        lines.push_back(advice);
    }
    return lines;
}

} // namespace quen::tools
