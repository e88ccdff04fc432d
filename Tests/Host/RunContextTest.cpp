#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlManager.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tests/Host/ScriptedOperation.h"
#include "Tests/Support/HostRecorder.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace quen::test {
namespace {

MarlAssertionFailure someFailure() {
    return {.selector = "run:",
            .method = "-[Class run:]",
            .file = "Classes/Class",
            .line = 7,
            .format = "%s should not be nil.",
            .arguments = {"(x)", "Assertion failed: %s", "((x)) != nil"}};
}

void logNumber(std::uint32_t level, std::int64_t number) {
    const std::array<FormatArgument, 1> arguments{number};
    QuenSourceControlManager::sourceControlLogAspect()->_logAtLogLevel(level, "number %ld",
                                                                       arguments);
}

TEST(AssertionService, HandsTheWholeFailureToTheHandler) {
    const HostRecorder recorder;
    MarlAssertionFailureHandler(someFailure());
    ASSERT_EQ(recorder.assertions().size(), 1U);
    EXPECT_EQ(recorder.assertionFacts(),
              std::vector{AssertionFacts::notNil("-[Class run:]", "Classes/Class", "(x)")});
    EXPECT_EQ(recorder.assertions().front().line, 7);
    EXPECT_EQ(recorder.assertions().front().selector, "run:");
}

TEST(AssertionService, PrintsALineWhereNobodyHandlesIt) {
    testing::internal::CaptureStderr();
    MarlAssertionFailureHandler(someFailure());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "-[Class run:] (Classes/Class:7): (x) should not be nil.\n");
}

MarlAssertionFailure failureWith(const String& format, std::vector<String> arguments) {
    MarlAssertionFailure failure = someFailure();
    failure.format = format;
    failure.arguments = std::move(arguments);
    return failure;
}

TEST(AssertionService, MakesAMessageOfTheFirstArguments) {
    EXPECT_EQ(messageOf(someFailure()), "(x) should not be nil.");
    EXPECT_EQ(messageOf(failureWith("code which should be unreachable has been reached", {"0"})),
              "code which should be unreachable has been reached");
    EXPECT_EQ(messageOf(failureWith("Assertion failed: %s", {"a > %s"})),
              "Assertion failed: a > %s");
}

TEST(LogService, EmitsWhatTheLevelAdmits) {
    const HostRecorder recorder(2);
    for (std::uint32_t level = 1; level <= 3; ++level) {
        logNumber(level, level);
    }
    EXPECT_EQ(recorder.log(), (std::vector<LogLine>{{1, "number 1"}, {2, "number 2"}}));
}

TEST(LogService, EmitsNothingAtLevelZero) {
    const HostRecorder recorder;
    logNumber(1, 1);
    EXPECT_EQ(recorder.log(), std::vector<LogLine>());
}

TEST(LogService, PrintsALineWhereNobodyHandlesIt) {
    const auto aspect = QuenSourceControlManager::sourceControlLogAspect();
    aspect->_logLevel.store(3);
    testing::internal::CaptureStderr();
    logNumber(3, 12);
    aspect->_logLevel.store(0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[3] number 12\n");
}

TEST(LogService, IsTheSameObjectInOneContext) {
    EXPECT_EQ(QuenSourceControlManager::sourceControlLogAspect(),
              QuenSourceControlManager::sourceControlLogAspect());
}

class ToolsDirectory : public testing::Test {
protected:
    /// A directory whose `svn` is there and may be executed, or may not.
    String directoryWithClient(std::string_view name, bool isExecutable) const {
        const String client = scratch_.write(std::string(name) + "/svn", "");
        if (isExecutable) {
            std::filesystem::permissions(client.str(), std::filesystem::perms::owner_all);
        }
        return scratch_.pathOf(name);
    }

    ScratchDirectory scratch_;
};

TEST_F(ToolsDirectory, IsThatOfTheFirstClientOnThePath) {
    const String plain = directoryWithClient("plain", false);
    const String first = directoryWithClient("first", true);
    const String second = directoryWithClient("second", true);
    scratch_.write("folder/svn/file", "");
    const std::string path = scratch_.pathOf("nowhere").str() + "::" + plain.str() + ":" +
                             scratch_.pathOf("folder").str() + ":" + first.str() + ":" +
                             second.str();
    const ScopedVariable variable("PATH", path);
    EXPECT_EQ(RunContext().toolsDirectory(), first);
}

TEST_F(ToolsDirectory, IsLookedUpEachTime) {
    const String first = directoryWithClient("first", true);
    const String second = directoryWithClient("second", true);
    const ScopedVariable outer("PATH", first);
    EXPECT_EQ(RunContext().toolsDirectory(), first);
    const ScopedVariable inner("PATH", second);
    EXPECT_EQ(RunContext().toolsDirectory(), second);
}

TEST_F(ToolsDirectory, IsNeverRelative) {
    directoryWithClient("bin", true);
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(scratch_.path().str());
    const ScopedVariable variable("PATH", "bin:.");
    EXPECT_EQ(RunContext().toolsDirectory(), "/usr/bin");
    std::filesystem::current_path(previous);
}

TEST_F(ToolsDirectory, HasANameEvenWhereThereIsNoClient) {
    for (const String& path : {String("/nowhere"), String(""), String()}) {
        const ScopedVariable variable("PATH", path);
        EXPECT_EQ(RunContext().toolsDirectory(), "/usr/bin");
    }
}

TEST_F(ToolsDirectory, IsWhatItWasSetToUntilItIsSetToNothing) {
    const ScopedVariable variable("PATH", directoryWithClient("bin", true));
    const RunContext changed = RunContext().withToolsDirectory("/elsewhere");
    EXPECT_EQ(changed.toolsDirectory(), "/elsewhere");
    EXPECT_EQ(changed.withToolsDirectory(nullptr).toolsDirectory(), scratch_.pathOf("bin"));
}

TEST(TemporaryPlace, IsTheEnvironmentsOrTheSystems) {
    const RunContext context;
    const ScopedVariable set("TMPDIR", "/somewhere");
    EXPECT_EQ(context.temporaryDirectory(), "/somewhere");
    const ScopedVariable empty("TMPDIR", "");
    EXPECT_EQ(context.temporaryDirectory(), "/tmp");
    const ScopedVariable unset("TMPDIR", nullptr);
    EXPECT_EQ(context.temporaryDirectory(), "/tmp");
}

TEST(TemporaryPlace, IsWhatItWasSetToUntilItIsSetToNothing) {
    const ScopedVariable variable("TMPDIR", "/somewhere");
    const RunContext changed = RunContext().withTemporaryDirectory("/elsewhere");
    EXPECT_EQ(changed.temporaryDirectory(), "/elsewhere");
    EXPECT_EQ(changed.withTemporaryDirectory(nullptr).temporaryDirectory(), "/somewhere");
}

TEST(RunContextTest, HasTheRunnerThatItWasMadeWith) {
    const auto runner = std::make_shared<ReplayRunner>();
    const RunContext changed = RunContext().withToolRunner(runner);
    EXPECT_EQ(changed.toolRunner(), runner);
    ASSERT_NE(changed.withToolRunner(nullptr).toolRunner(), nullptr);
    EXPECT_NE(changed.withToolRunner(nullptr).toolRunner(), runner);
}

TEST(RunContextTest, RunsTheClientInItsWorkingDirectory) {
    const ScratchDirectory directory;
    for (const String& place : {directory.path(), String()}) {
        const RunContext::Scope scope(
            RunContext().withWorkingDirectory(place).withEnvironment({{"PWD", nullptr}}));
        ScriptedOperation operation;
        operation.setLaunchPath("/bin/pwd");
        operation.setArguments(StringArray{"-P"});
        operation.run();
        const auto expected = place.isNil() ? std::filesystem::current_path()
                                            : std::filesystem::canonical(place.str());
        EXPECT_EQ(operation.parsedText, String(expected.string() + "\n"));
    }
}

} // namespace
} // namespace quen::test
