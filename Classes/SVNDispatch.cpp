#include "Classes/SVNDispatch.h"

#include "Classes/SVNOperations/SVNArguments.h"
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

#include <algorithm>
#include <array>
#include <memory>

namespace quen {

namespace {

struct Row {
    std::int32_t type;
    SVNOperationMaker make;
};

template <typename Class>
QuenSourceControlOperationPtr make(const QuenSourceControlRequestPtr& request) {
    auto operation = std::make_shared<Class>();
    return operation->initWithRequest(request) ? operation : nullptr;
}

constexpr std::array rows{
    Row{RequestTypeAdd, make<SVNAddOperation>},
    Row{RequestTypeRemoteCopy, make<SVNCopyOperation>},
    Row{RequestTypeRemoteRemove, make<SVNRemoveOperation>},
    Row{RequestTypeCommit, make<SVNCommitOperation>},
    Row{RequestTypeIgnore, make<SVNIgnoreOperation>},
    Row{RequestTypeRemove, make<SVNRemoveOperation>},
    Row{RequestTypeResolve, make<SVNResolveOperation>},
    Row{RequestTypeRevert, make<SVNRevertOperation>},
    Row{RequestTypeMakeDirectory, make<SVNMakeDirectoryOperation>},
    Row{RequestTypeMerge, make<SVNMergeOperation>},
    Row{RequestTypeCopy, make<SVNCopyOperation>},
    Row{RequestTypeMove, make<SVNMoveOperation>},
    Row{RequestTypeUnignore, make<SVNIgnoreOperation>},
    Row{RequestTypeUpdate, make<SVNUpdateOperation>},
    Row{RequestTypeSwitch, make<SVNSwitchOperation>},
    Row{RequestTypeStatus, make<SVNStatusOperation>},
    Row{RequestTypeRemoteStatus, make<SVNStatusOperation>},
    Row{RequestTypeList, make<SVNListOperation>},
    Row{RequestTypeLog, make<SVNLogOperation>},
    Row{RequestTypeInfo, make<SVNInfoOperation>},
    Row{RequestTypeCheckout, make<SVNCheckoutOperation>},
    Row{RequestTypeExportFile, make<SVNExportFileOperation>},
    Row{RequestTypeImport, make<SVNImportOperation>},
    Row{RequestTypeListBranches, make<SVNListOperation>},
    Row{RequestTypeCurrentBranch, make<SVNCurrentBranchOperation>},
    Row{RequestTypeBlame, make<SVNBlameOperation>},
    Row{RequestTypeDiff, make<SVNDiffOperation>},
    Row{RequestTypeInfoCheck, make<SVNInfoOperation>},
    Row{RequestTypeInfoCheckAlternate, make<SVNInfoOperation>},
    Row{RequestTypeLogAll, make<SVNLogOperation>},
};

constexpr bool everyServedTypeHasOneClass() {
    return std::ranges::all_of(requestFactsTable, [](const RequestFacts& facts) {
        const auto count =
            std::ranges::count_if(rows, [&](const Row& row) { return row.type == facts.type; });
        return count == (facts.isServed() ? 1 : 0);
    });
}

static_assert(everyServedTypeHasOneClass());

} // namespace

SVNOperationMaker operationMakerForType(std::int32_t type) {
    const auto* const row = std::ranges::find(rows, type, &Row::type);
    return row == rows.end() ? nullptr : row->make;
}

bool hasInput(const QuenSourceControlRequest& request, RequestInput input) {
    switch (input) {
    case RequestInput::sourceTree: return request.sourceTree() != nullptr;
    case RequestInput::repositoryToAuthenticate:
        return request.repositoryToAuthenticate() != nullptr;
    case RequestInput::destination: return !request.destination().isNil();
    case RequestInput::files: return fileCountOf(request) > 0;
    case RequestInput::oneFile: return fileCountOf(request) == 1;
    case RequestInput::startingRevision: return !request.startingRevision().isNil();
    case RequestInput::endingRevision: return !request.endingRevision().isNil();
    case RequestInput::message: return hasOption(request, QuenSourceControlRequestOptionMessage);
    case RequestInput::sourceLocation:
        return hasOption(request, QuenSourceControlRequestOptionSourceLocation);
    case RequestInput::logOutputFilesChanged:
        return hasOption(request, QuenSourceControlRequestOptionLogOutputFilesChanged);
    case RequestInput::logOutputLimit:
        return hasOption(request, QuenSourceControlRequestOptionLogOutputLimit);
    case RequestInput::logStopOnBranching:
        return hasOption(request, QuenSourceControlRequestOptionLogStopOnBranching);
    case RequestInput::supplyDirectRevision:
        return hasOption(request, QuenSourceControlRequestOptionSupplyDirectRevision);
    }
    return false;
}

SVNCondition conditionOf(RequestInput input, std::int32_t type) {
    const bool isImport = type == RequestTypeImport;
    switch (input) {
    case RequestInput::files: return {"[request.files count] > 0"};
    case RequestInput::oneFile: return {"[request.files count] == 1"};
    case RequestInput::destination: return {"request.destination"};
    case RequestInput::sourceTree: return {"request.sourceTree"};
    case RequestInput::message:
        return isImport
                   ? SVNCondition{"([request.options "
                                  "objectForKey:QuenSourceControlRequestOptionMessage])",
                                  true}
                   : SVNCondition{
                         "[request.options objectForKey:QuenSourceControlRequestOptionMessage]"};
    case RequestInput::sourceLocation:
        return {"([request.options objectForKey:QuenSourceControlRequestOptionSourceLocation])",
                true};
    case RequestInput::repositoryToAuthenticate:
    case RequestInput::startingRevision:
    case RequestInput::endingRevision:
    case RequestInput::logOutputFilesChanged:
    case RequestInput::logOutputLimit:
    case RequestInput::logStopOnBranching:
    case RequestInput::supplyDirectRevision: break; // never checked
    }
    return {nameOfRequestInput(input)};
}

} // namespace quen
