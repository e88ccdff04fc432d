#include "Host/ClientRunner.h"
#include "Host/RequestRefusal.h"
#include "Host/TaskFailure.h"
#include "Tests/Support/Operations.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

struct Case {
    const char* destination;
    bool isRefused;
};

TEST(RequestRefusal, MeetsARemovalOfTheFolderOfBranches) {
    for (const Case& each :
         {Case{"", true}, Case{"/", true}, Case{"//", true}, Case{".", true}, Case{"./", true},
          Case{"..", true}, Case{"%2e", true}, Case{"%2F%2E", true}, Case{"@", true},
          Case{"@5", true}, Case{"/@HEAD", true}, Case{"old", false}, Case{"...", false},
          Case{".old", false}, Case{"old@", false}, Case{"@old@", false}, Case{"%2f%20", false},
          Case{"/old", false}, Case{nullptr, false}}) {
        const Request request{.type = RequestTypeRemoteRemove, .destination = each.destination};
        EXPECT_EQ(!refusalOfRequest(*request.make()).isNil(), each.isRefused)
            << String(each.destination);
    }
}

TEST(RequestRefusal, MeetsNoOtherType) {
    for (std::int32_t type = -1; type <= RequestTypeEnd; ++type) {
        const Request request{.type = type, .destination = "", .files = StringArray{""}};
        EXPECT_EQ(refusalOfRequest(*request.make()).isNil(), type != RequestTypeRemoteRemove);
    }
}

TEST(RequestRefusal, StartsNoClient) {
    ClientRunner runner;
    for (const char* const destination : {"", "old"}) {
        QuenSourceControlOperation operation;
        operation.initWithRequest(
            Request{.type = RequestTypeRemoteRemove, .destination = destination}.make());
        ToolInvocation invocation;
        invocation.launchPath = "/bin/echo";
        invocation.operation = &operation;
        const ToolRun run = runner.run(invocation, {});
        const bool isRefused = std::string_view(destination).empty();
        EXPECT_EQ(run.end, isRefused ? RunEnd::couldNotStart : RunEnd::ended);
        EXPECT_EQ(run.reason.isNil(), !isRefused);
        EXPECT_EQ(run.output->isEmpty(), isRefused);
    }
}

} // namespace
} // namespace quen::test
