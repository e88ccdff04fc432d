#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/System/Sandbox.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

TEST(Tour, GoesThroughEveryRequestTypeAndLeavesNothing) {
    const Sandbox sandbox;
    const std::filesystem::path temporary = sandbox.root() / "temporary";
    std::filesystem::create_directory(temporary);

    const Ran ran =
        sandbox.run({Sandbox::program(), "tour"}, sandbox.root(), {"TMPDIR=" + temporary.string()});

    EXPECT_EQ(ran.status, 0) << ran.out;
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, HasSubstr(" requests, 0 failed, "));
    for (std::int32_t type = RequestTypeAdd; type < RequestTypeEnd; ++type) {
        const std::string name(nameOfRequestType(type));
        if (!name.empty()) {
            EXPECT_THAT(ran.out, HasSubstr(name + " (" + std::to_string(type) + ")"));
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
}

TEST(Tour, ColoursOnlyWhereAsked) {
    const Sandbox sandbox;
    EXPECT_THAT(sandbox.quen({"tour"}).out, ::testing::Not(HasSubstr("\x1b")));
    EXPECT_THAT(sandbox.quen({"tour", "--color", "always"}).out, HasSubstr("\x1b"));
}

} // namespace

} // namespace quen::test
