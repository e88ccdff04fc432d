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
#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "Classes/SVNOperations/SVNPropertyEdits.h"
#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Classes/SVNOperations/SVNTransfers.h"
#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Reports.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

template <typename Class> class SVNOperationWithoutRequest : public testing::Test {};

using AllClasses =
    testing::Types<SVNOperation, SVNAddOperation, SVNBlameOperation, SVNCheckoutOperation,
                   SVNCommitOperation, SVNCopyOperation, SVNCurrentBranchOperation,
                   SVNDiffOperation, SVNExportFileOperation, SVNImportOperation, SVNInfoOperation,
                   SVNListOperation, SVNLogOperation, SVNMakeDirectoryOperation, SVNMergeOperation,
                   SVNMoveOperation, SVNPropDelOperation, SVNPropGetOperation, SVNPropSetOperation,
                   SVNRemoveOperation, SVNResolveOperation, SVNRevertOperation, SVNStatusOperation,
                   SVNSwitchOperation, SVNUpdateOperation>;
TYPED_TEST_SUITE(SVNOperationWithoutRequest, AllClasses);

void expectNothing(SVNOperation& operation) {
    operation.sanitizeFilenames();
    EXPECT_EQ(operation.defaultArguments(), StringArray());
    for (const char* const text : {"Host not found", "svn: 'x' is not a working copy", "other"}) {
        EXPECT_EQ(operation.errorFromErrorMessage(text), Error());
    }
    for (const char* const output : {"", "<info/>", "junk", "Committed revision 3."}) {
        operation.outputArrived(output);
        operation.setData(dataOf(output));
        operation.parseData();
    }
    operation.setArguments(StringArray{"info"});
    operation.main();
    operation.cancel();
    EXPECT_EQ(operation.result(), Value());
    EXPECT_EQ(operation.error(), Error());
}

TYPED_TEST(SVNOperationWithoutRequest, AnswersNothing) {
    HostRecorder host(3);
    TypeParam neverInitialised;
    expectNothing(neverInitialised);
    TypeParam refused;
    EXPECT_FALSE(refused.initWithRequest(nullptr));
    EXPECT_EQ(refused.arguments(), std::nullopt);
    expectNothing(refused);
    EXPECT_EQ(host.log(), std::vector<LogLine>());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
    EXPECT_EQ(host.invocations().size(), 0U);
}

TEST(SVNIgnoreOperationWithoutRequest, AnswersNothing) {
    HostRecorder host(3);
    SVNIgnoreOperation operation;
    operation.main();
    EXPECT_FALSE(operation.initWithRequest(nullptr));
    operation.main();
    operation.cancel();
    EXPECT_EQ(operation.result(), Value());
    EXPECT_EQ(operation.error(), Error());
    EXPECT_EQ(host.invocations().size(), 0U);
}

} // namespace
} // namespace quen::test
