#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {
namespace {

Error shellError(std::int64_t code, const String& description) {
    return {
        QuenSourceControlErrorDomain,
        code,
        {{NSLocalizedDescriptionKey, description},
         {QuenSourceControlAuthenticationErrorTypeKey, QuenSourceControlSSHConnectionErrorKey}}};
}

Error hostIsUnreachable(const std::string& name = "theirs") {
    return shellError(-20, "The repository \"" + name + "\" could not be reached.");
}

Error shellIsUnreachable(const std::string& name = "theirs") {
    return shellError(-21, "Authentication failed because the SSH could not connect to the "
                           "repository \"" +
                               name + "\".");
}

Error wrongCredentials() {
    return {QuenSourceControlErrorDomain,
            -21,
            {{NSLocalizedDescriptionKey,
              "Authentication failed because the name or password was incorrect."},
             {QuenSourceControlAuthenticationErrorTypeKey,
              QuenSourceControlAuthenticationCredentialsIncorrect}}};
}

Error notVersioned() {
    return {QuenSourceControlErrorDomain,
            -71,
            {{NSLocalizedDescriptionKey, "The operation could not be performed because the file is "
                                         "not under version control."}}};
}

Error nameIsTaken() {
    return {QuenSourceControlErrorDomain,
            -60,
            {{NSLocalizedDescriptionKey, "The file could not be renamed because a file with that "
                                         "name already exists."}}};
}

Request requestAbout(QuenSourceControlRepositoryPtr repositoryToAuthenticate) {
    return {.repositoryToAuthenticate = std::move(repositoryToAuthenticate)};
}

Request theirs() {
    return requestAbout(repository({.name = "theirs"}));
}

struct Case {
    const char* name;
    String text;
    Error expected;

    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.text; }
};

class ErrorTranslation : public testing::TestWithParam<Case> {
    const HostRecorder recorder_;
};

TEST_P(ErrorTranslation, Recognises) {
    EXPECT_EQ(makeOperation<SVNOperation>(theirs())->errorFromErrorMessage(GetParam().text),
              GetParam().expected);
}

const char* const homeless = "Could not chdir to home directory /home/jane: ";
const char* const noSuch = "No such file or directory\n";

INSTANTIATE_TEST_SUITE_P(
    Texts, ErrorTranslation,
    testing::Values(
        Case{"nothing", String(), Error()},
        Case{"a host that does not resolve",
             "ssh: Could not resolve hostname theirs: Name or service not known\r\nsvn: To better "
             "debug SSH connection problems, remove the -q option from 'ssh'\nsvn: Network "
             "connection closed unexpectedly",
             hostIsUnreachable()},
        Case{"a host that is not found", "svn: Unknown hostname 'theirs'\nsvn: Host not found",
             hostIsUnreachable()},
        Case{"a host not found in the middle of a line", "x Host not found y", hostIsUnreachable()},
        Case{"a host not found before what is not a working copy",
             "svn: Host not found\nsvn: 'x' is not a working copy", hostIsUnreachable()},
        Case{"a shell that does not connect",
             "svn: To better debug SSH connection problems, remove the -q option from 'ssh' in the "
             "[tunnels] section of your Subversion configuration file.",
             shellIsUnreachable()},
        Case{"a shell that does not connect before a closed connection",
             "svn: Network connection closed unexpectedly\nsvn: To better debug SSH connection "
             "problems, remove",
             shellIsUnreachable()},
        Case{"a closed connection", "svn: Network connection closed unexpectedly",
             wrongCredentials()},
        Case{"a closed connection amid other lines",
             "jane@theirs: Permission denied\nsvn: Network connection closed unexpectedly\nbye",
             wrongCredentials()},
        Case{"a closed connection before what is not a working copy",
             "svn: Network connection closed unexpectedly\nsvn: 'x' is not a working copy",
             wrongCredentials()},
        Case{"not a working copy", "svn: warning: '/copies/x' is not a working copy",
             notVersioned()},
        Case{"the bare end", "is not a working copy", notVersioned()},
        Case{"homeless and no more to say", "Could not chdir to home directory", Error()},
        Case{"homeless for another reason",
             "Could not chdir to home directory /x: Permission denied", Error()},
        Case{"homeless without the line feed",
             "Could not chdir to home directory /x: No such file or directory", Error()},
        Case{"homeless and nothing behind it", std::string(homeless) + noSuch, Error()},
        Case{"homeless and then not a working copy",
             std::string(homeless) + noSuch + "svn: 'x' is not a working copy", notVersioned()},
        Case{"homeless for another reason and then not a working copy",
             "Could not chdir to home directory /x: Permission denied\nsvn: 'x' is not a working "
             "copy",
             notVersioned()},
        Case{"homeless twice and then a known host",
             std::string(homeless) + noSuch + homeless + noSuch +
                 "Warning: Permanently added 'theirs' (RSA) to the list of known hosts.",
             Error()},
        Case{"a known host",
             "Warning: Permanently added 'theirs,10.0.0.1' (RSA) to the list of known hosts.",
             Error()},
        Case{"a known host and then what is not a working copy",
             "Warning: Permanently added 'theirs' (RSA) to the list of known hosts.\nsvn: 'x' is "
             "not a working copy",
             notVersioned()}),
    CaseName());

struct LeftCase {
    const char* name;
    String text;

    friend void PrintTo(const LeftCase& c, std::ostream* out) { *out << c.text; }
};

class ErrorsLeftToTheHost : public testing::TestWithParam<LeftCase> {
    const HostRecorder recorder_;
};

TEST_P(ErrorsLeftToTheHost, AreWhatTheHostMakesOfTheSameText) {
    const auto operation = makeOperation<SVNOperation>(theirs());
    const Error error = operation->errorFromErrorMessage(GetParam().text);
    EXPECT_EQ(error,
              operation->QuenSourceControlTaskOperation::errorFromErrorMessage(GetParam().text));
    EXPECT_NE(error.domain(), QuenSourceControlErrorDomain);
    EXPECT_TRUE(error);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ErrorsLeftToTheHost,
    testing::Values(
        LeftCase{"unknown", "svn: File 'x' is out of date"},
        LeftCase{"not a working copy and a line feed", "svn: 'x' is not a working copy\n"},
        LeftCase{"not a working copy in the middle", "svn: 'x' is not a working copy, try again"},
        LeftCase{"another case", "svn: host not found"},
        LeftCase{"not a directory", "svn: 'x' is not a directory"},
        LeftCase{"closed without the clients name", "Network connection closed unexpectedly"},
        LeftCase{"debug without the clients name", "To better debug SSH connection problems"},
        LeftCase{"homeless further in", " Could not chdir to home directory"},
        LeftCase{"a known host of another kind",
                 "Warning: Permanently added 'theirs' (ED25519) to the list of known hosts."},
        LeftCase{"a known host and a line feed",
                 "Warning: Permanently added 'theirs' (RSA) to the list of known hosts.\n"},
        LeftCase{"a known host further in",
                 "! Warning: Permanently added 'theirs' (RSA) to the list of known hosts."}),
    CaseName());

class ErrorTranslationByOperation : public testing::Test {
    const HostRecorder recorder_;
};

TEST_F(ErrorTranslationByOperation, OnlyAMoveTakesWhatIsNotADirectoryForATakenName) {
    const String text = "svn: Can't move: 'b.c' is not a directory";
    EXPECT_EQ(makeOperation<SVNMoveOperation>(theirs())->errorFromErrorMessage(text),
              nameIsTaken());
    EXPECT_NE(makeOperation<SVNCopyOperation>(theirs())->errorFromErrorMessage(text).code(), -60);
}

TEST_F(ErrorTranslationByOperation, AMoveTestsTheEndExactlyToo) {
    EXPECT_NE(makeOperation<SVNMoveOperation>(theirs())
                  ->errorFromErrorMessage("svn: 'b.c' is not a directory\n")
                  .code(),
              -60);
}

TEST_F(ErrorTranslationByOperation, AMoveStillTakesTheEarlierTestsFirst) {
    EXPECT_EQ(makeOperation<SVNMoveOperation>(theirs())->errorFromErrorMessage(
                  "Host not found; 'b.c' is not a directory"),
              hostIsUnreachable());
}

TEST_F(ErrorTranslationByOperation, AnAbsentRepositoryIsShownAsNull) {
    const auto operation = makeOperation<SVNOperation>({});
    EXPECT_EQ(operation->errorFromErrorMessage("Host not found"), hostIsUnreachable("(null)"));
    EXPECT_EQ(operation->errorFromErrorMessage("svn: To better debug SSH connection problems"),
              shellIsUnreachable("(null)"));
}

TEST_F(ErrorTranslationByOperation, ARepositoryWithoutANameIsShownAsNull) {
    const auto operation = makeOperation<SVNOperation>(requestAbout(repository()));
    EXPECT_EQ(operation->errorFromErrorMessage("Host not found"), hostIsUnreachable("(null)"));
    EXPECT_EQ(operation->errorFromErrorMessage("svn: To better debug SSH connection problems"),
              shellIsUnreachable("(null)"));
}

TEST_F(ErrorTranslationByOperation, TheSourceTreesNameIsNotUsed) {
    const auto operation =
        makeOperation<SVNOperation>({.sourceTree = repository({.name = "ours"}),
                                     .repositoryToAuthenticate = repository({.name = "theirs"})});
    EXPECT_EQ(operation->errorFromErrorMessage("Host not found"), hostIsUnreachable());
}

/// Keeps every text that it is asked about.
class AskedOperation : public SVNOperation {
public:
    Error errorFromErrorMessage(const String& message) override {
        texts.push_back(message);
        return SVNOperation::errorFromErrorMessage(message);
    }

    std::vector<String> texts;
};

TEST_F(ErrorTranslationByOperation, TheSameOperationIsAskedAgainAboutWhatFollowsTheShellsNoise) {
    const auto operation = makeOperation<AskedOperation>(theirs());
    const std::string text = std::string(homeless) + noSuch;
    operation->errorFromErrorMessage(text);
    EXPECT_EQ(operation->texts, (std::vector<String>{text, ""}));
}

TEST_F(ErrorTranslationByOperation, TheSameOperationIsAskedAgainBehindEachNotice) {
    const auto operation = makeOperation<AskedOperation>(theirs());
    const std::string notice = std::string(homeless) + noSuch;
    const std::string end = "svn: File 'x' is out of date";
    EXPECT_EQ(operation->errorFromErrorMessage(notice + notice + end),
              operation->QuenSourceControlTaskOperation::errorFromErrorMessage(end));
    EXPECT_EQ(operation->texts, (std::vector<String>{notice + notice + end, notice + end, end}));
}

/// A million notices fit on no stack.
TEST_F(ErrorTranslationByOperation, EndlessNoticesEndAndWhatFollowsThemIsTranslated) {
    const auto operation = makeOperation<AskedOperation>(theirs());
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text.append(homeless).append(noSuch);
    }
    const String end = "svn: File 'x' is out of date";
    EXPECT_EQ(operation->errorFromErrorMessage(text + end.str()),
              operation->QuenSourceControlTaskOperation::errorFromErrorMessage(end));
    ASSERT_GT(operation->texts.size(), 10U);
    EXPECT_EQ(operation->texts.back(), end);
}

} // namespace
} // namespace quen::test
