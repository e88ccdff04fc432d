#include "Tests/Faults/OperationKinds.h"

#include "Host/PlugInLoader.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/Reports.h"
#include "Tests/Support/Trees.h"

#include <stdexcept>

namespace quen::test {

namespace {

constexpr const char* place = "http://host/repository";

Request completeRequest(std::int32_t type) {
    const std::string root = place;
    return {.type = type,
            .sourceTree = repository({.name = "tree",
                                      .location = root,
                                      .trunkLocation = root + "/trunk",
                                      .branchesLocation = root + "/branches"}),
            .destination = root + "/b.c",
            .files = StringArray{root + "/a.c"},
            .options = {{QuenSourceControlRequestOptionMessage, "Why"},
                        {QuenSourceControlRequestOptionSourceLocation, String(root + "/trunk")}}};
}

OperationKind kind(std::string name, std::int32_t type, std::string command,
                   OutputUse reading = OutputUse::nothing, std::string output = {}) {
    return {std::move(name), completeRequest(type), std::move(command), reading, std::move(output)};
}

OperationKind report(std::string name, std::int32_t type, std::string command,
                     std::string_view captured) {
    return kind(std::move(name), type, std::move(command), OutputUse::report,
                testData("Reports/" + std::string(captured)));
}

void appendQueries(std::vector<OperationKind>& kinds) {
    kinds.push_back(report("status", RequestTypeStatus, "status", "status/working-copy.xml"));
    kinds.push_back(
        report("remote status", RequestTypeRemoteStatus, "status", "status/remote.xml"));
    kinds.push_back(report("list", RequestTypeList, "list", "list/directory.xml"));
    kinds.push_back(report("list branches", RequestTypeListBranches, "list", "list/branches.xml"));
    kinds.push_back(report("log", RequestTypeLog, "log", "log/with-files.xml"));
    kinds.push_back(report("log of all", RequestTypeLogAll, "log", "log/file.xml"));
    kinds.push_back(report("info", RequestTypeInfo, "info", "info/items.xml"));
    kinds.push_back(report("current branch", RequestTypeCurrentBranch, "info", "info/branch.xml"));
    kinds.push_back(report("blame", RequestTypeBlame, "blame", "blame/file.xml"));
    kinds.push_back(kind("info check", RequestTypeInfoCheck, "info"));
    kinds.push_back(kind("other info check", RequestTypeInfoCheckAlternate, "info"));
    kinds.push_back(kind("diff summary", RequestTypeDiff, "diff", OutputUse::summary,
                         testData("Reports/diff/summary.xml")));
    kinds.push_back(kind("diff text", RequestTypeDiff, "diff", OutputUse::text,
                         testData("Reports/diff/range.txt")));
    kinds.back().request.destination = nullptr;
    kinds.back().request.startingRevision = "1";
    kinds.back().request.endingRevision = "2";
    kinds.push_back(kind("export", RequestTypeExportFile, "export", OutputUse::file));
}

void appendChanges(std::vector<OperationKind>& kinds) {
    kinds.push_back(kind("add", RequestTypeAdd, "add"));
    kinds.push_back(kind("remote copy", RequestTypeRemoteCopy, "copy"));
    kinds.push_back(kind("remote remove", RequestTypeRemoteRemove, "remove"));
    kinds.push_back(kind("commit", RequestTypeCommit, "commit", OutputUse::text,
                         testData("Reports/commit/changes.txt")));
    kinds.push_back(kind("remove", RequestTypeRemove, "remove"));
    kinds.push_back(kind("resolve", RequestTypeResolve, "resolve"));
    kinds.push_back(kind("revert", RequestTypeRevert, "revert"));
    kinds.push_back(kind("make directory", RequestTypeMakeDirectory, "mkdir"));
    kinds.push_back(kind("merge", RequestTypeMerge, "merge"));
    kinds.push_back(kind("copy", RequestTypeCopy, "copy"));
    kinds.push_back(kind("move", RequestTypeMove, "move"));
    kinds.push_back(kind("update", RequestTypeUpdate, "update"));
    kinds.push_back(kind("switch", RequestTypeSwitch, "switch"));
    kinds.push_back(kind("import", RequestTypeImport, "import"));
    kinds.push_back(kind("ignore", RequestTypeIgnore, "propget", OutputUse::chain,
                         testData("Reports/propget/single.xml")));
    kinds.push_back(kind("unignore", RequestTypeUnignore, "propget", OutputUse::chain,
                         testData("Reports/propget/none.xml")));
}

void appendCheckouts(std::vector<OperationKind>& kinds, const String& existingDirectory) {
    kinds.push_back(kind("checkout", RequestTypeCheckout, "checkout", OutputUse::file));
    kinds.back().request.destination = "/nowhere/at/all";
    kinds.push_back(kind("checkout again", RequestTypeCheckout, "checkout", OutputUse::file));
    kinds.back().request.destination = existingDirectory;
    kinds.back().fileIsThere = true;
}

} // namespace

std::vector<OperationKind> operationKinds(const String& existingDirectory) {
    std::vector<OperationKind> kinds;
    appendQueries(kinds);
    appendChanges(kinds);
    appendCheckouts(kinds, existingDirectory);
    return kinds;
}

QuenSourceControlProtocolPtr loadedProvider() {
    static const QuenSourceControlProtocolPtr provider = [] {
        Error error;
        auto loaded = loadProvider(QUEN_TEST_MODULE, &error);
        if (loaded == nullptr) {
            throw std::runtime_error(error.localizedDescription().str());
        }
        return loaded;
    }();
    return provider;
}

QuenSourceControlOperationPtr operationOf(const OperationKind& kind) {
    auto operation = loadedProvider()->operationForRequest(kind.request.make());
    if (operation == nullptr || operation->error()) {
        throw std::runtime_error("There is no operation for " + kind.name + ".");
    }
    return operation;
}

} // namespace quen::test
