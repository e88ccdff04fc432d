#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <ostream>
#include <regex>
#include <string>

namespace quen::test {
namespace {

struct ArgumentsCase {
    const char* name;
    Request request;
    StringArray expected;

    friend void PrintTo(const ArgumentsCase& c, std::ostream* out) { *out << c.name; }
};

class StatusArguments : public testing::TestWithParam<ArgumentsCase> {
    const HostRecorder recorder_;
};

TEST_P(StatusArguments, AreTheWholeCommand) {
    EXPECT_EQ(makeOperation<SVNStatusOperation>(GetParam().request)->arguments(),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, StatusArguments,
    testing::Values(
        ArgumentsCase{"local",
                      {.type = RequestTypeStatus, .files = {{"a.c"}}},
                      {"status", "--no-ignore", "--xml", "a.c"}},
        ArgumentsCase{"remote",
                      {.type = RequestTypeRemoteStatus, .files = {{"a.c"}}},
                      {"status", "-u", "--no-ignore", "--xml", "a.c"}},
        ArgumentsCase{"remote with a user and two files",
                      {.type = RequestTypeRemoteStatus,
                       .sourceTree = workingTree({.repository = repository({.user = "jane"})}),
                       .files = {{"b.c", "a.c"}}},
                      {"--username", "jane", "status", "-u", "--no-ignore", "--xml", "b.c", "a.c"}},
        ArgumentsCase{"names made safe",
                      {.type = RequestTypeStatus, .files = {{"icon@2x.png", "dir@1/a.c"}}},
                      {"status", "--no-ignore", "--xml", "icon@2x.png@", "dir@1/a.c"}},
        ArgumentsCase{"no files", {.type = RequestTypeStatus}, {"status", "--no-ignore", "--xml"}},
        ArgumentsCase{"any other type is local",
                      {.type = RequestTypeAdd, .files = {{"a.c"}}},
                      {"status", "--no-ignore", "--xml", "a.c"}},
        ArgumentsCase{"nothing else of the request counts",
                      {.type = RequestTypeStatus,
                       .destination = "b.c",
                       .files = {{"a.c"}},
                       .options = {{QuenSourceControlRequestOptionMessage, "Why"}},
                       .startingRevision = "1",
                       .endingRevision = "2"},
                      {"status", "--no-ignore", "--xml", "a.c"}}),
    CaseName());

TEST(StatusInitialisation, FailsWithoutARequest) {
    EXPECT_FALSE(SVNStatusOperation().initWithRequest(nullptr));
}

Dictionary record(const char* path, std::uint32_t workingCopy, std::uint32_t repository = 0) {
    return {{QuenSourceControlOperationPathKey, path},
            {QuenSourceControlOperationWCStatusKey, workingCopy},
            {QuenSourceControlOperationRepositoryStatusKey, repository}};
}

std::shared_ptr<SVNStatusOperation> parsedStatus(std::string_view report) {
    return parsedOperation<SVNStatusOperation>(
        {.type = RequestTypeRemoteStatus, .files = {{"a.c"}}}, report);
}

std::string inTarget(const std::string& entries) {
    return "<status><target path=\"t\">" + entries + "</target></status>";
}

struct ParseCase {
    const char* name;
    std::string report;
    Array expected;

    friend void PrintTo(const ParseCase& c, std::ostream* out) { *out << c.report; }
};

class StatusReports : public testing::TestWithParam<ParseCase> {
protected:
    HostRecorder recorder_{2};
};

TEST_P(StatusReports, GiveTheirRecordsAndNothingElse) {
    const auto operation = parsedStatus(GetParam().report);
    EXPECT_EQ(operation->result(), Value(GetParam().expected));
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
    EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
}

INSTANTIATE_TEST_SUITE_P(
    Made, StatusReports,
    testing::Values(
        ParseCase{"no targets", "<status/>", Array::empty()},
        ParseCase{"no entries", "<status><target path=\"t\"/><target/></status>", Array::empty()},
        ParseCase{"an entry that says nothing", inTarget("<entry path=\"a\"/>"), {record("a", 0)}},
        ParseCase{"an entry without a path",
                  inTarget("<entry><wc-status item=\"deleted\" props=\"none\"/></entry>"),
                  {record("", 2)}},
        ParseCase{"item and properties together",
                  inTarget("<entry path=\"a\"><wc-status item=\"modified\" props=\"conflicted\"/>"
                           "</entry>"),
                  {record("a", 4 | 32)}},
        ParseCase{"copied",
                  inTarget("<entry path=\"a\"><wc-status item=\"added\" props=\"none\" "
                           "copied=\"true\"/></entry>"),
                  {record("a", 4096)}},
        ParseCase{"copied in capitals",
                  inTarget("<entry path=\"a\"><wc-status item=\"added\" props=\"none\" "
                           "copied=\"TRUE\"/></entry>"),
                  {record("a", 1)}},
        ParseCase{"copied as a number",
                  inTarget("<entry path=\"a\"><wc-status item=\"added\" props=\"none\" "
                           "copied=\"1\"/></entry>"),
                  {record("a", 1)}},
        ParseCase{"copied but replaced",
                  inTarget("<entry path=\"a\"><wc-status item=\"replaced\" props=\"modified\" "
                           "copied=\"true\"/></entry>"),
                  {record("a", 8192 | 8)}},
        ParseCase{"only the first of two working copy statuses",
                  inTarget("<entry path=\"a\"><wc-status item=\"deleted\" props=\"none\"/>"
                           "<wc-status item=\"strange\"/></entry>"),
                  {record("a", 2)}},
        ParseCase{"only the first of two repository statuses",
                  inTarget("<entry path=\"a\"><repos-status item=\"deleted\"/>"
                           "<repos-status item=\"strange\"/></entry>"),
                  {record("a", 0, 2)}},
        ParseCase{"the repositorys properties do not count",
                  inTarget("<entry path=\"a\"><wc-status item=\"normal\" props=\"none\"/>"
                           "<repos-status item=\"none\" props=\"modified\"/></entry>"),
                  {record("a", 0, 0)}},
        ParseCase{"the repository first",
                  inTarget("<entry path=\"a\"><repos-status item=\"modified\"/>"
                           "<wc-status item=\"modified\" props=\"none\"/></entry>"),
                  {record("a", 4, 1024)}},
        ParseCase{"two targets",
                  "<status><target><entry path=\"b\"/><entry path=\"a\"/></target>"
                  "<target><entry path=\"b\"/></target></status>",
                  {record("b", 0), record("a", 0), record("b", 0)}},
        ParseCase{"entries and statuses deeper or elsewhere",
                  "<status><entry path=\"x\"/><list><target><entry path=\"x\"/></target></list>"
                  "<target><list><entry path=\"x\"/></list><entry path=\"a\"><deep>"
                  "<wc-status item=\"strange\"/></deep></entry></target></status>",
                  {record("a", 0)}},
        ParseCase{"names in another case",
                  "<status><Target><entry path=\"x\"/></Target><target><Entry path=\"x\"/>"
                  "<entry Path=\"x\" path=\"a\"/></target></status>",
                  {record("a", 0)}},
        ParseCase{
            "any root", "<other><target><entry path=\"a\"/></target></other>", {record("a", 0)}},
        ParseCase{"characters by number and by name",
                  inTarget("<entry path=\"a&amp;&lt;&gt;&quot;&#xFC;\"/>"),
                  {record("a&<>\"\xC3\xBC", 0)}},
        ParseCase{"an absolute path",
                  inTarget("<entry path=\"/copies/ours/a.c\"/>"),
                  {record("/copies/ours/a.c", 0)}}),
    CaseName());

constexpr std::uint32_t unversioned = QuenSourceControlStatusUnversioned;

const Array& conflictRecords() {
    static const Array records{
        record("conflict/gone", QuenSourceControlStatusAddedWithHistory),
        record("conflict/props", QuenSourceControlStatusPropertiesConflicted),
        record("conflict/props.prej", unversioned),
        record("conflict/text", QuenSourceControlStatusConflicted),
        record("conflict/text.mine", unversioned),
        record("conflict/text.r1", unversioned),
        record("conflict/text.r2", unversioned)};
    return records;
}

Array joined(std::initializer_list<Array> lists) {
    Array all = Array::empty();
    for (const Array& list : lists) {
        for (const Value& value : list) {
            all.append(value);
        }
    }
    return all;
}

Array workingCopyRecords() {
    return joined(
        {conflictRecords(),
         {record("elsewhere", 0), record("plain/a & b <\xC3\xBC>", 4), record("plain/added", 1),
          record("plain/both", 4 | 8), record("plain/clean", 8), record("plain/copy", 4096),
          record("plain/deleted", 2), record("plain/icon@2x.png", 4),
          record("plain/ignored.o", 128), record("plain/missing", 512), record("plain/modified", 4),
          record("plain/moved", 2), record("plain/moved-away", 4096),
          record("plain/obstructed", 2048), record("plain/replaced", 8192),
          record("plain/unversioned", unversioned)}});
}

Array remoteRecords() {
    return {record("plain/moved", 2),
            record("plain/copy", 4096),
            record("plain/old", 0, 1024),
            record("plain/obstructed", 2048),
            record("plain/replaced", 8192),
            record("plain/modified", 4, 1024),
            record("plain/a & b <\xC3\xBC>", 4),
            record("plain/clean", 8),
            record("plain/ignored.o", 128),
            record("plain/icon@2x.png", 4),
            record("plain/both", 4 | 8),
            record("plain/added", 1),
            record("plain/unversioned", unversioned),
            record("plain/copied", 0, 8192),
            record("plain/deleted", 2, 2),
            record("plain/moved-away", 4096),
            record("plain/missing", 512),
            record("plain", 0, 1024),
            record("directory/new", 0, 1),
            record("directory/inside", 0, 2),
            record("directory", 0, 1024)};
}

std::string captured(const std::string& name) {
    return testData("Reports/status/" + name + ".xml");
}

INSTANTIATE_TEST_SUITE_P(
    Captured, StatusReports,
    testing::Values(
        ParseCase{"a working copy in every state", captured("working-copy"), workingCopyRecords()},
        ParseCase{
            "several targets", captured("several-targets"),
            joined({{record("plain/clean", 8), record("plain/modified", 4)}, conflictRecords()})},
        ParseCase{"the repository compared", captured("remote"), remoteRecords()},
        ParseCase{"nothing to report", captured("nothing-to-report"), Array::empty()},
        ParseCase{"not a working copy", captured("not-a-working-copy"), Array::empty()},
        // Items on a changelist are listed outside their target, where nobody looks.
        ParseCase{"a changelist", captured("changelist"), {record("plain/both", 4 | 8)}}),
    CaseName());

class MalformedStatusReports : public testing::Test {
protected:
    HostRecorder recorder_{3};

    void expectFailure(std::string_view report) const {
        SCOPED_TRACE(std::string(report));
        const auto operation = makeOperation<SVNStatusOperation>({.files = {{"a.c"}}});
        const DataPtr data = dataOf(report);
        operation->setData(data);
        operation->parseData();
        EXPECT_EQ(operation->error().domain(), XMLParserErrorDomain);
        EXPECT_FALSE(operation->error().localizedDescription().isEmpty());
        EXPECT_EQ(operation->result(), Value(Array::empty()));
        EXPECT_EQ(operation->data(), nullptr);
        EXPECT_TRUE(data->shouldCollect());
        EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
        EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
    }
};

class CutStatusReports : public MalformedStatusReports,
                         public testing::WithParamInterface<const char*> {};

TEST_P(CutStatusReports, AreRefusedWhereverTheyAreCut) {
    const std::string report = captured(GetParam());
    for (const std::string_view cut : malformedReports(report)) {
        expectFailure(cut);
    }
}

INSTANTIATE_TEST_SUITE_P(Captured, CutStatusReports,
                         testing::Values("working-copy", "several-targets", "remote",
                                         "nothing-to-report", "not-a-working-copy", "changelist"));

TEST_F(MalformedStatusReports, SayNothingOfTheStrangeWordsInThem) {
    const std::string report = inTarget("<entry path=\"a\"><wc-status item=\"strange\"/>"
                                        "<repos-status/></entry>");
    for (const std::string_view cut : malformedReports(report)) {
        expectFailure(cut);
    }
}

TEST_F(MalformedStatusReports, AreRefusedWhateverIsWrong) {
    for (const char* const report :
         {"", " ", "Subversion says no", "<status></status", "<status></target>",
          "<status/><status/>", "<status/>trailing", "<status>&nbsp;</status>",
          "<status><target path=\"a\" path=\"b\"/></status>",
          "<status><target><entry path=\"a\"/></target>", "<status>\xFF</status>",
          "<status><target><entry path=a/></target></status>"}) {
        expectFailure(report);
    }
}

TEST_F(MalformedStatusReports, AreWhatTheClientLeavesWhenTheRepositoryIsGone) {
    expectFailure(captured("repository-gone"));
}

TEST_F(MalformedStatusReports, AreAlsoNoDataAtAll) {
    const auto operation = makeOperation<SVNStatusOperation>({.files = {{"a.c"}}});
    operation->parseData();
    EXPECT_EQ(operation->error().domain(), XMLParserErrorDomain);
    EXPECT_EQ(operation->result(), Value(Array::empty()));
    EXPECT_EQ(operation->data(), nullptr);
}

class StatusRemarks : public testing::Test {
protected:
    static AssertionFacts wordIsNil(const char* method) {
        return AssertionFacts::notNil(method, "Classes/SVNOperations", "(string)");
    }
    static constexpr const char* itemMethod =
        "-[SVNOperation statusValueForWorkingCopyStringValue:isCopied:]";
    static constexpr const char* propertyMethod =
        "-[SVNOperation propertyStatusValueForWorkingCopyStringValue:]";
    static constexpr const char* repositoryMethod =
        "-[SVNOperation statusValueForRepositoryStringValue:]";
    static constexpr const char* nilItem = "ERROR: Your working copy returned an SVN status of "
                                           "\"(null)\" that we don't handle (yet)";
    static constexpr const char* nilProperty = "ERROR: property status \"(null)\" not handled";
    static constexpr const char* nilRepository = "ERROR: Your repository returned an SVN status of "
                                                 "\"(null)\" that we don't handle (yet)";

    HostRecorder recorder_{1};
};

TEST_F(StatusRemarks, AbsentWordsAreAssertedAndLoggedInDocumentOrder) {
    const auto operation =
        parsedStatus(inTarget("<entry path=\"a\"><wc-status/><repos-status/></entry>"
                              "<entry path=\"b\"><wc-status props=\"modified\"/></entry>"
                              "<entry path=\"c\"><wc-status item=\"added\"/></entry>"));
    EXPECT_EQ(operation->result(), Value(Array{record("a", 0), record("b", 8), record("c", 1)}));
    EXPECT_EQ(
        recorder_.assertionFacts(),
        (std::vector{wordIsNil(itemMethod), wordIsNil(propertyMethod), wordIsNil(repositoryMethod),
                     wordIsNil(itemMethod), wordIsNil(propertyMethod)}));
    EXPECT_EQ(
        recorder_.log(),
        (std::vector<LogLine>{
            {1, nilItem}, {1, nilProperty}, {1, nilRepository}, {1, nilItem}, {1, nilProperty}}));
    for (const MarlAssertionFailure& failure : recorder_.assertions()) {
        EXPECT_EQ(failure.receiver, operation.get());
    }
}

TEST_F(StatusRemarks, UnknownWordsAreLoggedInDocumentOrder) {
    const auto operation = parsedStatus(
        inTarget("<entry path=\"a\"><repos-status item=\"lost\"/><wc-status item=\"found\" "
                 "props=\"\"/></entry>"));
    EXPECT_EQ(operation->result(), Value(Array{record("a", 0)}));
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
    EXPECT_EQ(recorder_.log(),
              (std::vector<LogLine>{{1, "ERROR: Your working copy returned an SVN status of "
                                        "\"found\" that we don't handle (yet)"},
                                    {1, "ERROR: property status \"\" not handled"},
                                    {1, "ERROR: Your repository returned an SVN status of "
                                        "\"lost\" that we don't handle (yet)"}}));
}

TEST_F(StatusRemarks, ALevelOfZeroLogsNothingButStillAsserts) {
    recorder_.setLogLevel(0);
    parsedStatus(inTarget("<entry path=\"a\"><wc-status props=\"none\"/></entry>"));
    EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
    EXPECT_EQ(recorder_.assertionFacts(), std::vector{wordIsNil(itemMethod)});
}

TEST_F(StatusRemarks, ATimingIsLoggedAtLevelThreeAndBehindTheWords) {
    recorder_.setLogLevel(3);
    parsedStatus(inTarget("<entry path=\"a\"><wc-status item=\"odd\" props=\"none\"/></entry>"));
    const std::vector<LogLine> log = recorder_.log();
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[0].level, 1U);
    EXPECT_EQ(log[1].level, 3U);
    EXPECT_TRUE(std::regex_match(log[1].text.str(),
                                 std::regex(R"(Status operation data parsed in: \d+\.\d{4})")))
        << log[1].text;
}

TEST_F(StatusRemarks, NoTimingIsLoggedAtLevelTwo) {
    recorder_.setLogLevel(2);
    parsedStatus(captured("working-copy"));
    EXPECT_EQ(recorder_.log(), std::vector<LogLine>());
}

TEST(StatusData, IsReleasedAfterAWholeReport) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNStatusOperation>({.files = {{"a.c"}}});
    const DataPtr data = dataOf("<status/>");
    operation->setData(data);
    operation->parseData();
    EXPECT_EQ(operation->data(), nullptr);
    EXPECT_TRUE(data->shouldCollect());
    EXPECT_EQ(data.use_count(), 1);
}

TEST(StatusRun, GoesThroughTheHost) {
    HostRecorder recorder;
    recorder.replay({{.standardOutput = captured("several-targets")}});
    const auto operation = makeOperation<SVNStatusOperation>(
        {.type = RequestTypeRemoteStatus, .files = {{"plain", "icon@2x.png"}}});
    operation->main();
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(operation->result().array()->count(), 9U);
    EXPECT_EQ(operation->data(), nullptr);
    const std::vector<ToolInvocation> invocations = recorder.invocations();
    ASSERT_EQ(invocations.size(), 1U);
    EXPECT_EQ(invocations.front().operationClass, "SVNStatusOperation");
    EXPECT_EQ(invocations.front().launchPath, "/tools/svn");
    EXPECT_EQ(invocations.front().arguments,
              (StringArray{"status", "-u", "--no-ignore", "--xml", "plain", "icon@2x.png@"}));
}

} // namespace
} // namespace quen::test
