#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Host/ScriptedOperation.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {
namespace {

using Translation = ScriptedOperation::Translation;

Error describedError(const String& domain, std::int64_t code, const String& description) {
    return {domain, code, {{NSLocalizedDescriptionKey, description}}};
}

Error taskErrorWith(std::int64_t code, const String& description) {
    return describedError("QuenSourceControlTaskErrorDomain", code, description);
}

Array arrayOf(std::initializer_list<std::int64_t> numbers) {
    Array array = Array::empty();
    for (const std::int64_t number : numbers) {
        array.append(number);
    }
    return array;
}

/// The host's error for a complaint with numbers; its code is the first.
Error numbered(const String& description, std::initializer_list<std::int64_t> numbers) {
    return {"QuenSourceControlTaskErrorDomain",
            *numbers.begin(),
            {{NSLocalizedDescriptionKey, description},
             {"QuenSourceControlTaskErrorCodesKey", arrayOf(numbers)}}};
}

Error refused(const String& description, std::initializer_list<std::int64_t> numbers) {
    return {"QuenSourceControlTaskErrorDomain",
            *numbers.begin(),
            {{NSLocalizedDescriptionKey, description},
             {QuenSourceControlAuthenticationErrorTypeKey,
              QuenSourceControlAuthenticationCredentialsIncorrect},
             {"QuenSourceControlTaskErrorCodesKey", arrayOf(numbers)}}};
}

Error parserError() {
    return describedError("QuenXMLParserErrorDomain", 3, "no element found");
}

/// The error of a client that was ended while it wrote to a working copy.
Error mayHaveLeftLock(std::int64_t code, const String& description) {
    return {
        "QuenSourceControlTaskErrorDomain",
        code,
        {{NSLocalizedDescriptionKey, description},
         {NSLocalizedRecoverySuggestionErrorKey,
          "The working copy may have been left locked. If it was, clean it up and try again."}}};
}

/// An error of the provider's own words.
Error providerError(std::int64_t code) {
    return describedError(QuenSourceControlErrorDomain, code, "The provider says why.");
}

struct Case {
    const char* name;
    PreparedRun run;
    std::int32_t type = RequestTypeAdd;
    Error parseError = {};
    Translation translation = Translation::inherited;
    Error ownError = {};
    Error expected = {};
    std::vector<LogLine> log = {};

    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }
};

class RunPolicy : public testing::TestWithParam<Case> {
protected:
    HostRecorder recorder_{3};
};

TEST_P(RunPolicy, DecidesTheError) {
    recorder_.replay({GetParam().run});
    ScriptedOperation operation;
    operation.initWithRequest(Request{.type = GetParam().type}.make());
    operation.parseError = GetParam().parseError;
    operation.translation = GetParam().translation;
    operation.ownError = GetParam().ownError;
    operation.main();
    EXPECT_EQ(operation.error(), GetParam().expected);
    EXPECT_EQ(recorder_.log(), GetParam().log);
    EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
}

constexpr const char* outOfDate = "svn: E155011: File 'a.c' is out of date\n";
constexpr const char* absentProperty =
    "svn: warning: W200017: Property 'svn:ignore' not found on '.'\n";
constexpr const char* absentPropertyText = "svn: warning: Property 'svn:ignore' not found on '.'";
constexpr const char* closing = "svn: E200000: A problem occurred; see other errors for details\n";

INSTANTIATE_TEST_SUITE_P(
    RunsThatSayNothing, RunPolicy,
    testing::Values(
        Case{.name = "success", .run = {.standardOutput = "text"}},
        Case{.name = "success and line ends", .run = {.standardError = "\n\r\n"}},
        Case{.name = "success and blanks", .run = {.standardError = "  \n\t\n"}},
        Case{.name = "failure",
             .run = {.exitStatus = 1},
             .expected =
                 taskErrorWith(1, "The client failed with exit status 1 and did not say why.")},
        Case{.name = "failure and line ends",
             .run = {.standardError = "\n\n", .exitStatus = 255},
             .expected =
                 taskErrorWith(255, "The client failed with exit status 255 and did not say why.")},
        Case{.name = "failure and blanks",
             .run = {.standardError = " \n\t\n", .exitStatus = 2},
             .expected =
                 taskErrorWith(2, "The client failed with exit status 2 and did not say why.")},
        Case{.name = "signal",
             .run = {.signal = SIGKILL},
             .expected = taskErrorWith(137, "The client was ended by signal 9 (Killed).")},
        Case{.name = "failure and a dropped notice",
             .run = {.standardError = "Warning: Permanently added", .exitStatus = 1},
             .translation = Translation::none,
             .expected =
                 taskErrorWith(1, "The client failed with exit status 1 and did not say why.")},
        Case{.name = "signal and a dropped notice",
             .run = {.standardError = "Warning: Permanently added", .signal = SIGSEGV},
             .translation = Translation::none,
             .expected = taskErrorWith(139,
                                       "The client was ended by signal 11 (Segmentation fault).")},
        Case{.name = "success and a dropped notice",
             .run = {.standardError = "Warning: Permanently added"},
             .translation = Translation::none}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Complaints, RunPolicy,
    testing::Values(
        Case{.name = "a number",
             .run = {.standardError = outOfDate, .exitStatus = 1},
             .expected = numbered("File 'a.c' is out of date", {155011})},
        Case{.name = "a number although it succeeded",
             .run = {.standardError = outOfDate},
             .expected = numbered("File 'a.c' is out of date", {155011})},
        Case{.name = "numbers in order",
             .run = {.standardError = "svn: E170013: Unable to connect to a repository at URL "
                                      "'svn://host/r'\nsvn: E000111: Connection refused\n",
                     .exitStatus = 1},
             .expected = numbered("Unable to connect to a repository at URL 'svn://host/r'\n"
                                  "Connection refused",
                                  {170013, 111})},
        Case{.name = "no number",
             .run = {.standardError = "svn: Can't open file\n", .exitStatus = 1},
             .expected = taskErrorWith(1, "Can't open file")},
        Case{.name = "no number although it succeeded",
             .run = {.standardError = "odd"},
             .expected = taskErrorWith(0, "odd")},
        Case{.name = "another programs words",
             .run = {.standardError = "ssh: connect to host theirs port 22: Connection refused\r\n"
                                      "svn: E170013: Unable to connect\n",
                     .exitStatus = 1},
             .expected = numbered("ssh: connect to host theirs port 22: Connection refused\r\n"
                                  "Unable to connect",
                                  {170013})},
        Case{.name = "a signal after a number",
             .run = {.standardError = outOfDate, .signal = SIGTERM},
             .expected = numbered("File 'a.c' is out of date", {155011})},
        Case{.name = "a signal after a complaint without a number",
             .run = {.standardError = "svn: dying", .signal = SIGTERM},
             .expected = taskErrorWith(143, "dying")},
        Case{.name = "bytes of before UTF8",
             .run = {.standardError = "svn: E1: gr\xFC\xDF\n", .exitStatus = 1},
             .expected = numbered("gr\xC3\xBC\xC3\x9F", {1})},
        Case{.name = "refused credentials",
             .run = {.standardError = "svn: E170001: Authentication failed\n", .exitStatus = 1},
             .expected = refused("Authentication failed", {170001})},
        Case{.name = "no credentials left",
             .run = {.standardError = "svn: E170013: Unable to connect\nsvn: E215004: No more "
                                      "credentials or we tried too many times.\n",
                     .exitStatus = 1},
             .expected = refused("Unable to connect\nNo more credentials or we tried too many "
                                 "times.",
                                 {170013, 215004})},
        Case{.name = "the providers own words",
             .run = {.standardError = outOfDate, .exitStatus = 1},
             .translation = Translation::own,
             .ownError = providerError(-71),
             .expected = providerError(-71)}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Notices, RunPolicy,
    testing::Values(
        Case{.name = "warnings of a success",
             .run = {.standardError = "svn: warning: W1: a\n\nsvn: warning: W2: b\n"},
             .log = {{2, "svn: warning: a\n\nsvn: warning: b"}}},
        Case{.name = "warnings of a failure",
             .run = {.standardError = "svn: warning: W155010: The node 'x' was not found.\n",
                     .exitStatus = 1},
             .expected = numbered("warning: The node 'x' was not found.", {155010})},
        Case{.name = "warnings before a signal",
             .run = {.standardError = "svn: warning: W1: a\n", .signal = SIGTERM},
             .expected = numbered("warning: a", {1})},
        Case{.name = "warnings and another line of a success",
             .run = {.standardError = "svn: warning: W1: a\nb\n"},
             .expected = numbered("warning: a\nb", {1})},
        Case{.name = "an absent property",
             .run = {.standardError = std::string(absentProperty) + closing, .exitStatus = 1},
             .log = {{2, std::string(absentPropertyText) +
                             "\nsvn: A problem occurred; see other errors for details"}}},
        Case{.name = "an absent property without the closing line",
             .run = {.standardError = absentProperty, .exitStatus = 1},
             .log = {{2, absentPropertyText}}},
        Case{.name = "an absent property of a success",
             .run = {.standardError = absentProperty},
             .log = {{2, absentPropertyText}}},
        Case{.name = "the closing line alone",
             .run = {.standardError = closing, .exitStatus = 1},
             .expected = numbered("A problem occurred; see other errors for details", {200000})},
        Case{.name = "an absent property and something else",
             .run = {.standardError = std::string(absentProperty) + outOfDate, .exitStatus = 1},
             .expected = numbered("warning: Property 'svn:ignore' not found on '.'\nFile 'a.c' is "
                                  "out of date",
                                  {200017, 155011})}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    RunsThatDidNotEnd, RunPolicy,
    testing::Values(
        Case{.name = "not started",
             .run = {.end = RunEnd::couldNotStart, .reason = "No such file or directory"},
             .expected = taskErrorWith(TaskErrorCouldNotStart,
                                       "The client \"/tools/svn\" could not be started: No such "
                                       "file or directory.")},
        Case{.name = "cancelled before it started",
             .run = {.end = RunEnd::cancelled},
             .expected = taskErrorWith(TaskErrorCancelled,
                                       "The operation was cancelled before it had finished.")},
        Case{.name = "cancelled",
             .run = {.standardError = outOfDate, .signal = SIGTERM, .end = RunEnd::cancelled},
             .expected = mayHaveLeftLock(TaskErrorCancelled,
                                         "The operation was cancelled before it had finished.")},
        Case{.name = "timed out",
             .run = {.signal = SIGKILL, .end = RunEnd::timedOut, .reason = "its limit is 1 second"},
             .expected = mayHaveLeftLock(TaskErrorTimedOut,
                                         "The client was ended because it took too long: its limit "
                                         "is 1 second.")},
        Case{.name = "fell silent",
             .run = {.exitStatus = 1,
                     .end = RunEnd::idleTimedOut,
                     .reason = "it wrote nothing for 1 second"},
             .expected = mayHaveLeftLock(TaskErrorIdleTimedOut,
                                         "The client was ended because it took too long: it wrote "
                                         "nothing for 1 second.")},
        Case{.name = "a query cancelled",
             .run = {.signal = SIGTERM, .end = RunEnd::cancelled},
             .type = RequestTypeStatus,
             .expected = taskErrorWith(TaskErrorCancelled,
                                       "The operation was cancelled before it had finished.")},
        Case{.name = "lost",
             .run = {.end = RunEnd::outputLost, .reason = "memory is at its end"},
             .expected = taskErrorWith(TaskErrorFailed,
                                       "The client's run could not be followed to its end: memory "
                                       "is at its end.")},
        Case{.name = "cancelled with errors of all kinds",
             .run = {.standardError = outOfDate, .end = RunEnd::cancelled},
             .parseError = parserError(),
             .translation = Translation::own,
             .ownError = providerError(-71),
             .expected = taskErrorWith(TaskErrorCancelled,
                                       "The operation was cancelled before it had finished.")}),
    CaseName());

/// One run with a complaint of these numbers.
PreparedRun complaint(const std::string& numberedLines) {
    return {.standardError = numberedLines, .exitStatus = 1};
}

INSTANTIATE_TEST_SUITE_P(
    TheErrorThatStays, RunPolicy,
    testing::Values(Case{.name = "parser alone",
                         .run = {},
                         .parseError = parserError(),
                         .expected = parserError()},
                    Case{.name = "parser beside a warning",
                         .run = {.standardError = "svn: warning: W1: a"},
                         .parseError = parserError(),
                         .expected = parserError(),
                         .log = {{2, "svn: warning: a"}}},
                    Case{.name = "parser and generic",
                         .run = complaint(outOfDate),
                         .parseError = parserError(),
                         .expected = numbered("File 'a.c' is out of date", {155011})},
                    Case{.name = "parser and a generic absence",
                         .run = complaint("svn: E155010: x"),
                         .parseError = parserError(),
                         .expected = numbered("x", {155010})},
                    Case{.name = "parser and a generic error without a number",
                         .run = complaint("svn: x"),
                         .parseError = parserError(),
                         .expected = taskErrorWith(1, "x")},
                    Case{.name = "parser and translated",
                         .run = complaint(outOfDate),
                         .parseError = parserError(),
                         .translation = Translation::own,
                         .ownError = providerError(-71),
                         .expected = providerError(-71)},
                    Case{.name = "parser and a silent failure",
                         .run = {.exitStatus = 1},
                         .parseError = parserError(),
                         .expected = taskErrorWith(
                             1, "The client failed with exit status 1 and did not say why.")},
                    Case{.name = "parsed alone",
                         .run = {},
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and translated",
                         .run = complaint(outOfDate),
                         .parseError = providerError(-1),
                         .translation = Translation::own,
                         .ownError = providerError(-71),
                         .expected = providerError(-71)},
                    Case{.name = "parsed and another complaint",
                         .run = complaint(outOfDate),
                         .parseError = providerError(-1),
                         .expected = numbered("File 'a.c' is out of date", {155011})},
                    Case{.name = "parsed and no number",
                         .run = complaint("svn: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and a silent failure",
                         .run = {.exitStatus = 1},
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 155010",
                         .run = complaint("svn: E155010: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 160006",
                         .run = complaint("svn: E160006: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 160013",
                         .run = complaint("svn: E160013: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 170000",
                         .run = complaint("svn: E170000: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 195012",
                         .run = complaint("svn: E195012: x"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and 200009 behind a warning of absence",
                         .run = complaint("svn: warning: W155010: x\nsvn: E200009: y"),
                         .parseError = providerError(-1),
                         .expected = providerError(-1)},
                    Case{.name = "parsed and an absence among others",
                         .run = complaint("svn: E160013: x\nsvn: E170013: y"),
                         .parseError = providerError(-1),
                         .expected = numbered("x\ny", {160013, 170013})},
                    Case{.name = "parsed and an absent property",
                         .run = complaint(absentProperty),
                         .parseError = providerError(-11),
                         .expected = providerError(-11),
                         .log = {{2, absentPropertyText}}}),
    CaseName());

} // namespace
} // namespace quen::test
