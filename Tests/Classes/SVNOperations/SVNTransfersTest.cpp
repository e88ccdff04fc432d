#include "Classes/SVNOperations/SVNTransfers.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

const String url = "http://host/r/trunk";

Request checkout(const String& revision) {
    return {.type = RequestTypeCheckout,
            .destination = "/w",
            .files = StringArray{url},
            .startingRevision = revision};
}

Request update(const String& revision) {
    return {
        .type = RequestTypeUpdate, .files = StringArray{"b", "a"}, .startingRevision = revision};
}

Dictionary importOptions(const Value& location, const Value& message) {
    return {{QuenSourceControlRequestOptionSourceLocation, location},
            {QuenSourceControlRequestOptionMessage, message}};
}

class SVNTransfersArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNTransfersArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Checkout, SVNTransfersArgumentsTest,
    testing::Values(
        ArgumentsCase{"no revision", a<SVNCheckoutOperation>, checkout(nullptr),
                      StringArray{"checkout", url, "/w"}},
        ArgumentsCase{"a revision", a<SVNCheckoutOperation>, checkout("42"),
                      StringArray{"checkout", "-r", "42", url, "/w"}},
        ArgumentsCase{"head", a<SVNCheckoutOperation>, checkout(QuenSourceControlHEADRevisionName),
                      StringArray{"checkout", "-r", "HEAD", url, "/w"}},
        ArgumentsCase{"base means head", a<SVNCheckoutOperation>,
                      checkout(QuenSourceControlBASERevisionName),
                      StringArray{"checkout", "-r", "HEAD", url, "/w"}},
        ArgumentsCase{"an empty revision", a<SVNCheckoutOperation>, checkout(""),
                      StringArray{"checkout", url, "/w"}},
        ArgumentsCase{"an empty url",
                      a<SVNCheckoutOperation>,
                      {.destination = "/w", .files = StringArray{""}, .startingRevision = "4"},
                      StringArray{"checkout", "-r", "4", "/w"}},
        ArgumentsCase{"an empty destination",
                      a<SVNCheckoutOperation>,
                      {.destination = "", .files = StringArray{url}, .startingRevision = "4"},
                      StringArray{"checkout", "-r", "4", url}},
        ArgumentsCase{
            "neither url nor destination", a<SVNCheckoutOperation>, {}, StringArray{"checkout"}},
        ArgumentsCase{"of two urls the first alone",
                      a<SVNCheckoutOperation>,
                      {.destination = "/w", .files = StringArray{url, "http://x/y"}},
                      StringArray{"checkout", url, "/w"}},
        ArgumentsCase{"a user",
                      a<SVNCheckoutOperation>,
                      {.sourceTree = repository({.user = "jane"}),
                       .destination = "/w",
                       .files = StringArray{"http://host/r/a@b"}},
                      StringArray{"--username", "jane", "checkout", "http://host/r/a@b@", "/w"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNCheckoutOperation>, checkout(nullptr),
                      StringArray{"checkout", url, "/w"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Import, SVNTransfersArgumentsTest,
    testing::Values(
        ArgumentsCase{"one tree",
                      a<SVNImportOperation>,
                      {.files = StringArray{"/new"}, .options = importOptions(url, "First")},
                      StringArray{"import", "/new", url, "-m", "First"}},
        ArgumentsCase{"of several entries the last alone",
                      a<SVNImportOperation>,
                      {.destination = "/not/read",
                       .files = StringArray{"/a", "/b", "/new"},
                       .options = importOptions(url, "First")},
                      StringArray{"import", "/new", url, "-m", "First"}},
        ArgumentsCase{"no message",
                      a<SVNImportOperation>,
                      {.files = StringArray{"/new"}, .options = importOptions(url, Value())},
                      StringArray{"import", "/new", url, "-m"}},
        ArgumentsCase{"no location",
                      a<SVNImportOperation>,
                      {.files = StringArray{"/new"}, .options = importOptions(Value(), "First")},
                      StringArray{"import", "/new", "-m", "First"}},
        ArgumentsCase{"nothing at all", a<SVNImportOperation>, {}, StringArray{"import", "-m"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNImportOperation>,
                      {.files = StringArray{"/new"}, .options = importOptions(url, "First")},
                      StringArray{"import", "/new", url, "-m", "First"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Switch, SVNTransfersArgumentsTest,
    testing::Values(
        ArgumentsCase{"to a location",
                      a<SVNSwitchOperation>,
                      {.destination = url, .files = StringArray{"/w"}},
                      StringArray{"switch", url, "/w"}},
        ArgumentsCase{
            "of two paths the first alone and no revision",
            a<SVNSwitchOperation>,
            {.destination = url, .files = StringArray{"/w", "/v"}, .startingRevision = "4"},
            StringArray{"switch", url, "/w"}},
        ArgumentsCase{"no destination",
                      a<SVNSwitchOperation>,
                      {.files = StringArray{"/w"}},
                      StringArray{"switch", "/w"}},
        ArgumentsCase{
            "no path", a<SVNSwitchOperation>, {.destination = url}, StringArray{"switch", url}},
        ArgumentsCase{"an error from before",
                      aFailed<SVNSwitchOperation>,
                      {.destination = url, .files = StringArray{"/w"}},
                      std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Update, SVNTransfersArgumentsTest,
    testing::Values(
        ArgumentsCase{"no revision", a<SVNUpdateOperation>, update(nullptr),
                      StringArray{"update", "--accept", "mine-full", "b", "a"}},
        ArgumentsCase{"a revision", a<SVNUpdateOperation>, update("42"),
                      StringArray{"update", "--accept", "mine-full", "-r", "42", "b", "a"}},
        ArgumentsCase{"head", a<SVNUpdateOperation>, update(QuenSourceControlHEADRevisionName),
                      StringArray{"update", "--accept", "mine-full", "-r", "HEAD", "b", "a"}},
        ArgumentsCase{"base stays base", a<SVNUpdateOperation>,
                      update(QuenSourceControlBASERevisionName),
                      StringArray{"update", "--accept", "mine-full", "-r", "BASE", "b", "a"}},
        ArgumentsCase{"an empty revision is one", a<SVNUpdateOperation>, update(""),
                      StringArray{"update", "--accept", "mine-full", "-r", "", "b", "a"}},
        ArgumentsCase{
            "no files", a<SVNUpdateOperation>, {}, StringArray{"update", "--accept", "mine-full"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNUpdateOperation>, update(nullptr),
                      StringArray{"update", "--accept", "mine-full", "b", "a"}}),
    CaseName());

// What a checkout leaves

class SVNCheckoutParseTest : public testing::TestWithParam<std::string_view> {};

TEST_P(SVNCheckoutParseTest, ADestinationThatExistsIsTheResultWhateverWasPrinted) {
    const HostRecorder recorder;
    const String destination = testing::TempDir();
    const auto operation = parsedOperation<SVNCheckoutOperation>(
        {.destination = destination, .files = StringArray{url}}, GetParam());
    const Array* const records = operation->result().array();
    ASSERT_NE(records, nullptr);
    ASSERT_EQ(records->count(), 1U);
    const Dictionary* const record = (*records)[0].dictionary();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->count(), 1U);
    const FilePathValue* const path = (*record)[QuenSourceControlOperationPathKey].filePath();
    ASSERT_NE(path, nullptr);
    EXPECT_EQ((*path)->pathString(), destination);
    EXPECT_EQ(operation->error(), Error());
}

INSTANTIATE_TEST_SUITE_P(Outputs, SVNCheckoutParseTest,
                         testing::Values("", "svn: E170000: URL doesn't exist\n", "\xff"));

struct MissingCase {
    std::string_view name;
    Request request;
    String description;
};

class SVNCheckoutMissingTest : public testing::TestWithParam<MissingCase> {};

TEST_P(SVNCheckoutMissingTest, SaysWhichRevisionWasNotFound) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNCheckoutOperation>(GetParam().request);
    operation->setResult("of an earlier run");
    operation->setData(dataOf(testData("Reports/checkout/checked-out.txt")));
    operation->parseData();
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error(QuenSourceControlErrorDomain, -1,
                                        {{NSLocalizedDescriptionKey, GetParam().description}}));
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNCheckoutMissingTest,
    testing::Values(
        MissingCase{
            "a revision",
            {.destination = "/does/not/exist", .files = StringArray{url}, .startingRevision = "99"},
            "The revision 99 was not found for the file \"http://host/r/trunk\"."},
        MissingCase{"head",
                    {.destination = "/does/not/exist",
                     .files = StringArray{url},
                     .startingRevision = QuenSourceControlHEADRevisionName},
                    "The revision HEAD was not found for the file \"http://host/r/trunk\"."},
        MissingCase{"base reads as head",
                    {.destination = "/does/not/exist",
                     .files = StringArray{url},
                     .startingRevision = QuenSourceControlBASERevisionName},
                    "The revision HEAD was not found for the file \"http://host/r/trunk\"."},
        MissingCase{"nothing known",
                    {.destination = nullptr},
                    "The revision (null) was not found for the file \"(null)\"."},
        MissingCase{"an empty destination",
                    {.destination = "", .files = StringArray{url, "b"}, .startingRevision = "3"},
                    "The revision 3 was not found for the file \"http://host/r/trunk\"."}),
    CaseName());

template <typename Class> class SVNTransfersTest : public testing::Test {};
using SilentClasses = testing::Types<SVNImportOperation, SVNSwitchOperation, SVNUpdateOperation>;
TYPED_TEST_SUITE(SVNTransfersTest, SilentClasses);

TYPED_TEST(SVNTransfersTest, LeaveTheOutputAlone) {
    const HostRecorder recorder;
    const auto operation = parsedOperation<TypeParam>(
        {.destination = url, .files = StringArray{"/w"}}, "At revision 3.\n");
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error());
}

TYPED_TEST(SVNTransfersTest, WithoutARequestThereIsNoOperation) {
    TypeParam operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

} // namespace

} // namespace quen::test
