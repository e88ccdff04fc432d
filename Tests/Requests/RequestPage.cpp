#include "Tests/Requests/RequestPage.h"

#include "Foundation/PathComponents.h"
#include "Foundation/ShellWord.h"
#include "Host/HostSourceTrees.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "Tests/Requests/RequestNotes.h"
#include "Tools/Console/RequestEncoder.h"

#include <memory>
#include <optional>
#include <vector>

namespace quen::test {

namespace {

QuenSourceControlRepositoryPtr exampleRepository() {
    HostRepository::Facts facts;
    facts.name = "server";
    facts.location = "https://host/repo";
    facts.user = "jane";
    facts.trunkLocation = URL::fromString("https://host/repo/trunk");
    facts.branchesLocation = URL::fromString("https://host/repo/branches");
    return std::make_shared<HostRepository>(facts);
}

QuenSourceControlSourceTreePtr exampleWorkingCopy() {
    HostWorkingTree::Facts facts;
    facts.name = "project";
    facts.location = "/home/jane/project";
    facts.repository = exampleRepository();
    return std::make_shared<HostWorkingTree>(facts);
}

/// Types that are about the repository itself: two of them take nothing else for a source tree.
bool isAboutRepository(std::int32_t type) {
    return type == RequestTypeRemoteCopy || type == RequestTypeRemoteRemove ||
           type == RequestTypeImport || type == RequestTypeCheckout || type == RequestTypeList;
}

/// What stands in an example for an input, where it depends on the type.
String exampleFile(std::int32_t type) {
    switch (type) {
    case RequestTypeCheckout:
    case RequestTypeList: return "https://host/repo/trunk";
    case RequestTypeImport: return "/home/jane/new";
    default: return "/home/jane/project/a.c";
    }
}

String exampleDestination(std::int32_t type) {
    switch (type) {
    case RequestTypeRemoteCopy:
    case RequestTypeRemoteRemove: return "polite";
    case RequestTypeMerge:
    case RequestTypeSwitch:
    case RequestTypeDiff: return "https://host/repo/branches/polite";
    case RequestTypeCheckout: return "/home/jane/project";
    default: return "/home/jane/project/b.c";
    }
}

void give(QuenSourceControlRequest& request, RequestInput input) {
    Dictionary options = request.options();
    const String key = nameOfRequestInput(input);
    switch (input) {
    case RequestInput::sourceTree:
        request.setSourceTree(isAboutRepository(request.type())
                                  ? QuenSourceControlSourceTreePtr(exampleRepository())
                                  : exampleWorkingCopy());
        return;
    case RequestInput::repositoryToAuthenticate:
        request.setRepositoryToAuthenticate(exampleRepository());
        return;
    case RequestInput::destination:
        request.setDestination(exampleDestination(request.type()));
        return;
    case RequestInput::files:
    case RequestInput::oneFile: request.setFiles(StringArray{exampleFile(request.type())}); return;
    case RequestInput::startingRevision: request.setStartingRevision("10"); return;
    case RequestInput::endingRevision: request.setEndingRevision("12"); return;
    case RequestInput::message: options.set(key, "Why"); break;
    case RequestInput::sourceLocation: options.set(key, "https://host/repo/trunk"); break;
    case RequestInput::logOutputLimit: options.set(key, 50); break;
    default: options.set(key, true); break;
    }
    request.setOptions(options);
}

QuenSourceControlRequestPtr exampleOf(const RequestFacts& facts, bool isComplete) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->setType(facts.type);
    for (const RequestInputs& inputs : {facts.checked, facts.alsoRequired}) {
        for (const RequestInput input : inputs) {
            give(*request, input);
        }
    }
    if (isComplete) {
        for (const RequestInput input : facts.optional) {
            give(*request, input);
        }
    }
    return request;
}

/// nil for an operation that runs no client itself.
String commandLine(QuenSourceControlProtocol& provider,
                   const QuenSourceControlRequestPtr& request) {
    const auto task = std::dynamic_pointer_cast<QuenSourceControlTaskOperation>(
        provider.operationForRequest(request));
    if (task == nullptr || !task->arguments()) {
        return {};
    }
    std::string text = "svn";
    for (const String& argument : *task->arguments()) {
        // The place of a temporary file is another one each time.
        const bool isTemporary = request->type() == RequestTypeExportFile &&
                                 argument.isIdenticalTo(task->arguments()->back());
        text += " " + (isTemporary ? "TEMPORARY-FILE" : shellWord(argument.view()));
    }
    return text;
}

std::string codeWord(std::string_view text) {
    return std::string("`").append(text).append("`");
}

std::string namesOf(const RequestInputs& first, const RequestInputs& second = {}) {
    std::string text;
    for (const RequestInputs& inputs : {first, second}) {
        for (const RequestInput input : inputs) {
            text.append(text.empty() ? "" : ", ").append(codeWord(nameOfRequestInput(input)));
            text.append(input == RequestInput::oneFile ? " (exactly one)" : "");
        }
    }
    return text.empty() ? "nothing" : text;
}

const char* wordsOf(RequestFiles files) {
    switch (files) {
    case RequestFiles::none: return "not used";
    case RequestFiles::first: return "the first; further ones are ignored";
    case RequestFiles::last: return "the last";
    case RequestFiles::all: return "all";
    case RequestFiles::single: return "the only one; with several, none";
    }
    return "";
}

std::string authenticationOf(std::uint8_t conditions) {
    struct Condition {
        RequestAuthentication flag;
        const char* words;
    };
    constexpr std::array all{
        Condition{AuthenticationAlways, "always"},
        Condition{AuthenticationUnlessBase, "unless the starting revision is the BASE constant"},
        Condition{AuthenticationForRemoteFile, "where a file is a URL other than `file:`"},
        Condition{AuthenticationForRemoteDestination,
                  "where the destination is a URL other than `file:`"},
        Condition{AuthenticationForRevision, "where there is a starting revision"}};
    std::string text;
    for (const Condition& condition : all) {
        if ((conditions & condition.flag) != 0) {
            text.append(text.empty() ? "" : "; ").append(condition.words);
        }
    }
    return text.empty() ? "never" : text;
}

std::string resultOf(const RequestFacts& facts) {
    std::string text;
    for (const RequestResultKey& key : facts.resultKeys) {
        text.append(text.empty() ? "" : ", ").append(codeWord(key.key->view()));
        text.append(" (").append(nameOfResultType(key.type)).append(")");
    }
    return text.empty() ? "none" : text;
}

std::string overviewRow(const RequestFacts& facts) {
    const std::string name(facts.name);
    return "| [" + name + "](#" + name + ") | " + std::to_string(facts.type) + " | " +
           namesOf(facts.checked, facts.alsoRequired) + " | " +
           authenticationOf(facts.authentication) + " | " +
           (facts.resultKeys.isEmpty() ? "none" : "records") + " |\n";
}

void addLine(std::string& page, const char* label, std::string_view text) {
    if (!text.empty()) {
        page.append("- ").append(label).append(": ").append(text).append("\n");
    }
}

std::string section(QuenSourceControlProtocol& provider, const RequestFacts& facts) {
    const RequestNotes notes = notesOfRequest(facts.name);
    std::string page = "\n## " + std::string(facts.name) + "\n\n";
    page.append(notes.purpose).append("\n\n");
    addLine(page, "required", namesOf(facts.checked, facts.alsoRequired));
    addLine(page, "optional", namesOf(facts.optional));
    addLine(page, "files that are used", wordsOf(facts.files));
    addLine(page, "authentication", authenticationOf(facts.authentication));
    addLine(page, "result", resultOf(facts));
    addLine(page, "effects", notes.effects);
    addLine(page, "may leave the working copy locked when killed",
            facts.writesWorkingCopy ? "yes" : "no");
    addLine(page, "pitfalls", notes.pitfalls);
    const auto least = exampleOf(facts, false);
    const std::string json = tools::requestText(*least);
    const String leastLine = commandLine(provider, least);
    const String wholeLine = commandLine(provider, exampleOf(facts, true));
    page.append("\n```console\n$ echo '{\"request\": ").append(json);
    page.append(", \"dryRun\": true}' | quen request\n```\n\n```text\n");
    page.append(leastLine.isNil() ? "svn propget svn:ignore DIRECTORY, then propset or propdel"
                                  : leastLine.view());
    if (!(wholeLine == leastLine)) {
        page.append("\n").append(wholeLine.view());
    }
    return page.append("\n```\n");
}

} // namespace

std::string requestPage(QuenSourceControlProtocol& provider) {
    std::string page =
        "# Requests\n\n"
        "Every type of request that the provider serves: what goes in, what comes out, what "
        "happens, and what surprises.\nThis page is made from the table in "
        "`QuenFoundation/QuenSourceControlRequestFacts.h` and from the\nprovider's own answers; a "
        "test holds it to them.\n\n"
        "*Required* is what the provider asserts, or what validation or the client cannot do "
        "without.\nNot every record has every key of a result. The command lines are those of the "
        "request as shown, and of\none with everything optional besides. The user's name comes "
        "from the source tree's repository. The\nclient runs in the working directory of the run's "
        "context, else in that of the process.\n\n"
        "| type | code | required | authentication | result |\n|---|---|---|---|---|\n";
    for (const RequestFacts& facts : requestFactsTable) {
        page += facts.isServed() ? overviewRow(facts) : "";
    }
    page += "\nOther codes have no operation; 27 and 29 are also reported as assertions.\n";
    for (const RequestFacts& facts : requestFactsTable) {
        page += facts.isServed() ? section(provider, facts) : "";
    }
    return page;
}

} // namespace quen::test
