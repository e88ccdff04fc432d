#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tools/Commands/Session/CleanupAdvice.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

Error errorWithNumbers(std::initializer_list<Value> numbers) {
    return {QuenSourceControlTaskErrorDomain,
            155004,
            {{QuenSourceControlTaskErrorCodesKey, Array(numbers)}}};
}

TEST(SaysLocked, ByTheClientsNumbers) {
    EXPECT_TRUE(saysLocked(errorWithNumbers({155004})));
    EXPECT_TRUE(saysLocked(errorWithNumbers({200030, 155037})));
    EXPECT_FALSE(saysLocked(errorWithNumbers({155007})));
    EXPECT_FALSE(saysLocked(Error(QuenSourceControlErrorDomain, 155004)));
    EXPECT_FALSE(saysLocked(Error()));
}

TEST(SaysLocked, AlsoOfAnErrorBehindTheError) {
    const Error wrapped(QuenSourceControlErrorDomain, -11,
                        {{QuenSourceControlUnderlyingErrorsKey, errorWithNumbers({155004})}});
    EXPECT_TRUE(saysLocked(Error(QuenSourceControlErrorDomain, -1,
                                 {{QuenSourceControlUnderlyingErrorsKey, Array{wrapped}}})));
}

TEST(CleanupCommand, NamesTheTopOfTheWorkingCopy) {
    const ScratchDirectory directory;
    directory.write("my wc@1/.svn/wc.db", "");
    directory.write("my wc@1/src/a.c", "");

    EXPECT_EQ(cleanupCommandFor(directory.pathOf("my wc@1/src/a.c").str()),
              "quen cleanup '" + directory.pathOf("my wc@1").str() + "'");
    EXPECT_EQ(cleanupCommandFor(directory.path().str()), "");
}

} // namespace

} // namespace quen::test
