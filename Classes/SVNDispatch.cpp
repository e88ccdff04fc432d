#include "Classes/SVNDispatch.h"

#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Classes/SVNOperations/SVNCommitOperation.h"
#include "Classes/SVNOperations/SVNCurrentBranchOperation.h"
#include "Classes/SVNOperations/SVNDiffOperation.h"
#include "Classes/SVNOperations/SVNExportFileOperation.h"
#include "Classes/SVNOperations/SVNIgnoreOperation.h"
#include "Classes/SVNOperations/SVNInfoOperation.h"
#include "Classes/SVNOperations/SVNListOperation.h"
#include "Classes/SVNOperations/SVNLocalEdits.h"
#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Classes/SVNOperations/SVNTransfers.h"
#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <array>
#include <memory>

namespace quen {

namespace {

std::size_t fileCount(const QuenSourceControlRequest& request) {
    return request.files() ? request.files()->size() : 0;
}

bool hasOption(const QuenSourceControlRequest& request, const String& key) {
    return !request.options()[key].isNothing();
}

constexpr SVNPrecondition someFiles{
    "[request.files count] > 0",
    [](const QuenSourceControlRequest& request) { return fileCount(request) > 0; }};

constexpr SVNPrecondition oneFile{
    "[request.files count] == 1",
    [](const QuenSourceControlRequest& request) { return fileCount(request) == 1; }};

constexpr SVNPrecondition destination{
    "request.destination",
    [](const QuenSourceControlRequest& request) { return !request.destination().isNil(); }};

constexpr SVNPrecondition sourceTree{
    "request.sourceTree",
    [](const QuenSourceControlRequest& request) { return request.sourceTree() != nullptr; }};

constexpr auto hasMessage = [](const QuenSourceControlRequest& request) {
    return hasOption(request, QuenSourceControlRequestOptionMessage);
};

constexpr SVNPrecondition message{
    "[request.options objectForKey:QuenSourceControlRequestOptionMessage]", hasMessage};

constexpr SVNPrecondition messageNotNil{
    "([request.options objectForKey:QuenSourceControlRequestOptionMessage])", hasMessage, true};

constexpr SVNPrecondition sourceLocationNotNil{
    "([request.options objectForKey:QuenSourceControlRequestOptionSourceLocation])",
    [](const QuenSourceControlRequest& request) {
        return hasOption(request, QuenSourceControlRequestOptionSourceLocation);
    },
    true};

/// The lists that occur in the table, in the order in which they are checked.
constexpr std::array needsFiles{someFiles};
constexpr std::array needsOneFile{oneFile};
constexpr std::array needsDestination{destination};
constexpr std::array needsTree{sourceTree};
constexpr std::array needsMessage{message};
constexpr std::array needsMessageAndDestination{message, destination};
constexpr std::array needsFilesAndTree{someFiles, sourceTree};
constexpr std::array needsFilesAndDestination{someFiles, destination};
constexpr std::array needsForMerge{destination, sourceTree, oneFile};
constexpr std::array needsForMove{someFiles, destination, sourceTree};
constexpr std::array needsForImport{oneFile, messageNotNil, sourceLocationNotNil};

template <typename Class>
QuenSourceControlOperationPtr make(const QuenSourceControlRequestPtr& request) {
    auto operation = std::make_shared<Class>();
    return operation->initWithRequest(request) ? operation : nullptr;
}

constexpr std::size_t typeCount = RequestTypeLogAll + 1;

std::array<SVNDispatchRow, typeCount> makeTable() {
    std::array<SVNDispatchRow, typeCount> table;
    table[RequestTypeAdd] = {{}, make<SVNAddOperation>};
    table[RequestTypeRemoteCopy] = {needsMessageAndDestination, make<SVNCopyOperation>};
    table[RequestTypeRemoteRemove] = {needsMessage, make<SVNRemoveOperation>};
    table[RequestTypeCommit] = {needsFiles, make<SVNCommitOperation>};
    table[RequestTypeIgnore] = {needsFilesAndTree, make<SVNIgnoreOperation>};
    table[RequestTypeRemove] = {{}, make<SVNRemoveOperation>};
    table[RequestTypeResolve] = {needsFiles, make<SVNResolveOperation>};
    table[RequestTypeRevert] = {needsFiles, make<SVNRevertOperation>};
    table[RequestTypeMakeDirectory] = {needsDestination, make<SVNMakeDirectoryOperation>};
    table[RequestTypeMerge] = {needsForMerge, make<SVNMergeOperation>};
    table[RequestTypeCopy] = {needsDestination, make<SVNCopyOperation>};
    table[RequestTypeMove] = {needsForMove, make<SVNMoveOperation>};
    table[RequestTypeUnignore] = {needsFilesAndTree, make<SVNIgnoreOperation>};
    table[RequestTypeUpdate] = {needsFilesAndTree, make<SVNUpdateOperation>};
    table[RequestTypeSwitch] = {needsFilesAndDestination, make<SVNSwitchOperation>};
    table[RequestTypeStatus] = {needsFiles, make<SVNStatusOperation>};
    table[RequestTypeRemoteStatus] = {needsFiles, make<SVNStatusOperation>};
    table[RequestTypeList] = {needsFiles, make<SVNListOperation>};
    table[RequestTypeLog] = {needsFiles, make<SVNLogOperation>};
    table[RequestTypeInfo] = {needsFiles, make<SVNInfoOperation>};
    table[RequestTypeCheckout] = {needsFilesAndDestination, make<SVNCheckoutOperation>};
    table[RequestTypeExportFile] = {needsOneFile, make<SVNExportFileOperation>};
    table[RequestTypeImport] = {needsForImport, make<SVNImportOperation>};
    table[RequestTypeListBranches] = {needsTree, make<SVNListOperation>};
    table[RequestTypeCurrentBranch] = {{}, make<SVNCurrentBranchOperation>};
    table[RequestTypeUnreachable27].isUnreachable = true;
    table[RequestTypeBlame] = {needsOneFile, make<SVNBlameOperation>};
    table[RequestTypeUnreachable29].isUnreachable = true;
    table[RequestTypeDiff] = {needsTree, make<SVNDiffOperation>};
    table[RequestTypeInfoCheck] = {needsFiles, make<SVNInfoOperation>};
    table[RequestTypeInfoCheckAlternate] = {needsFiles, make<SVNInfoOperation>};
    table[RequestTypeLogAll] = {{}, make<SVNLogOperation>};
    return table;
}

} // namespace

const SVNDispatchRow& dispatchRowForType(std::int32_t type) {
    static const std::array<SVNDispatchRow, typeCount> table = makeTable();
    static const SVNDispatchRow outside;
    const bool isInside = type >= 0 && type < static_cast<std::int32_t>(typeCount);
    return isInside ? table.at(static_cast<std::size_t>(type)) : outside;
}

} // namespace quen
