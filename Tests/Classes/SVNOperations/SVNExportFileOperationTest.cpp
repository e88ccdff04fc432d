#include "Classes/SVNOperations/SVNExportFileOperation.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

#include <filesystem>
#include <fstream>

namespace quen::test {
namespace {

const Request oneFile{.type = RequestTypeExportFile, .files = StringArray{"src/a.c"}};

class SVNExportFileOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

// Commands

/// The arguments with the target's directory, which is another each time, written as `*`.
StringArray withoutDirectory(const QuenSourceControlTaskOperation& operation) {
    StringArray arguments = operation.arguments().value_or(StringArray());
    if (!arguments.empty()) {
        const std::string target = arguments.back().str();
        EXPECT_TRUE(std::filesystem::is_directory(deletingLastPathComponent(target))) << target;
        arguments.back() = "*/" + std::string(lastPathComponent(target));
    }
    return arguments;
}

class ExportCommand : public SVNExportFileOperationTest,
                      public testing::WithParamInterface<ArgumentsCase> {};

TEST_P(ExportCommand, IsWhole) {
    const auto operation = GetParam().make(GetParam().request);
    EXPECT_EQ(withoutDirectory(*operation), GetParam().arguments);
    EXPECT_EQ(operation->error(), Error());
}

Request exportOf(const String& file, const String& revision, const Dictionary& options = {}) {
    return {.type = RequestTypeExportFile,
            .files = StringArray{file, "ignored"},
            .options = options,
            .startingRevision = revision};
}

Request direct(const String& file, const String& revision) {
    return exportOf(file, revision, {{QuenSourceControlRequestOptionSupplyDirectRevision, true}});
}

INSTANTIATE_TEST_SUITE_P(
    , ExportCommand,
    testing::Values(
        ArgumentsCase{"no revision", a<SVNExportFileOperation>, exportOf("src/a.c", nullptr),
                      StringArray{"export", "src/a.c", "*/a.c"}},
        ArgumentsCase{"no revision, so direct counts for nothing", a<SVNExportFileOperation>,
                      direct("src/a.c", nullptr), StringArray{"export", "src/a.c", "*/a.c"}},
        ArgumentsCase{"a revision", a<SVNExportFileOperation>, exportOf("src/a.c", "12"),
                      StringArray{"export", "-r", "12", "src/a.c", "*/a.c"}},
        ArgumentsCase{"HEAD", a<SVNExportFileOperation>,
                      exportOf("src/a.c", QuenSourceControlHEADRevisionName),
                      StringArray{"export", "-r", "HEAD", "src/a.c", "*/a.c"}},
        ArgumentsCase{"BASE", a<SVNExportFileOperation>,
                      exportOf("src/a.c", QuenSourceControlBASERevisionName),
                      StringArray{"export", "-r", "BASE", "src/a.c", "*/a.c"}},
        ArgumentsCase{"a direct revision", a<SVNExportFileOperation>, direct("src/a.c", "12"),
                      StringArray{"export", "-r", "12", "src/a.c@12", "*/a.c"}},
        ArgumentsCase{"a direct revision behind a name made safe", a<SVNExportFileOperation>,
                      direct("src/icon@2x.png", "12"),
                      StringArray{"export", "-r", "12", "src/icon@2x.png@12", "*/icon@2x.png@"}},
        ArgumentsCase{"a direct revision at BASE", a<SVNExportFileOperation>,
                      direct("src/a.c", QuenSourceControlBASERevisionName),
                      StringArray{"export", "-r", "BASE", "src/a.c@BASE", "*/a.c"}},
        ArgumentsCase{"a direct revision that is not wanted", a<SVNExportFileOperation>,
                      exportOf("src/a.c", "12",
                               {{QuenSourceControlRequestOptionSupplyDirectRevision, false}}),
                      StringArray{"export", "-r", "12", "src/a.c", "*/a.c"}},
        ArgumentsCase{"a name with an at sign", a<SVNExportFileOperation>,
                      exportOf("src/icon@2x.png", nullptr),
                      StringArray{"export", "src/icon@2x.png@", "*/icon@2x.png@"}},
        ArgumentsCase{"a URL and a user",
                      a<SVNExportFileOperation>,
                      {.type = RequestTypeExportFile,
                       .sourceTree = repository({.user = "anna"}),
                       .files = StringArray{"https://svn.example.org/repo/trunk/a.c"}},
                      StringArray{"--username", "anna", "export",
                                  "https://svn.example.org/repo/trunk/a.c", "*/a.c"}},
        ArgumentsCase{"no file",
                      a<SVNExportFileOperation>,
                      {.type = RequestTypeExportFile,
                       .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
                       .startingRevision = "12"},
                      StringArray{"export", "-r", "12", "*/file"}}),
    CaseName());

TEST_F(SVNExportFileOperationTest, EachOperationHasATargetOfItsOwn) {
    const auto one = makeOperation<SVNExportFileOperation>(oneFile);
    const auto other = makeOperation<SVNExportFileOperation>(oneFile);
    EXPECT_NE(one->arguments()->back(), other->arguments()->back());
}

// Outcomes

void write(const std::string& path) {
    std::ofstream file(path);
    file << "contents";
    ASSERT_TRUE(file.good()) << path;
}

/// The path text of the one record that a result must hold.
String exportedPath(const QuenSourceControlOperation& operation) {
    const Array* records = operation.result().array();
    if (records == nullptr || records->count() != 1) {
        return {};
    }
    const Dictionary* record = (*records)[0].dictionary();
    if (record == nullptr || record->count() != 1) {
        return {};
    }
    const FilePathValue* path = (*record)[QuenSourceControlOperationPathKey].filePath();
    return path == nullptr ? String() : (*path)->pathString();
}

TEST_F(SVNExportFileOperationTest, AFileThatArrivedIsTheResultWhateverTheOutput) {
    const auto operation = makeOperation<SVNExportFileOperation>(oneFile);
    const String target = operation->arguments()->back();
    write(target.str());
    operation->setData(dataOf("Export complete.\n"));
    operation->parseData();
    EXPECT_EQ(exportedPath(*operation), target);
    EXPECT_EQ(operation->error(), Error());
    EXPECT_NE(operation->data(), nullptr);
}

TEST_F(SVNExportFileOperationTest, ATargetThatEndsInAnAtSignIsLookedUpWithoutIt) {
    const auto operation =
        makeOperation<SVNExportFileOperation>(exportOf("src/icon@2x.png", nullptr));
    std::string target = operation->arguments()->back().str();
    ASSERT_TRUE(target.ends_with("/icon@2x.png@"));
    target.pop_back();
    write(target);
    operation->parseData();
    EXPECT_EQ(exportedPath(*operation), String(target));
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

TEST_F(SVNExportFileOperationTest, AFileWithTheAtSignDoesNotCountForTheOneWithout) {
    const auto operation =
        makeOperation<SVNExportFileOperation>(exportOf("src/icon@2x.png", nullptr));
    write(operation->arguments()->back().str());
    operation->parseData();
    EXPECT_TRUE(operation->result().isNothing());
    EXPECT_EQ(operation->error().code(), -1);
}

TEST_F(SVNExportFileOperationTest, TheFileLivesAsLongAsTheResult) {
    auto operation = makeOperation<SVNExportFileOperation>(exportOf("icon@2x.png", nullptr));
    std::string target = operation->arguments()->back().str();
    target.pop_back();
    write(target);
    operation->parseData();
    Value result = operation->result();
    operation = nullptr;
    EXPECT_TRUE(std::filesystem::exists(target));
    result = {};
    EXPECT_FALSE(std::filesystem::exists(target));
}

struct MissingCase {
    std::string name;
    Request request;
    String description;
};

class MissingExport : public SVNExportFileOperationTest,
                      public testing::WithParamInterface<MissingCase> {};

TEST_P(MissingExport, IsAnError) {
    const auto operation = makeOperation<SVNExportFileOperation>(GetParam().request);
    operation->setResult("an earlier result");
    operation->parseData();
    EXPECT_TRUE(operation->result().isNothing());
    EXPECT_EQ(operation->error(), Error(QuenSourceControlErrorDomain, -1,
                                        {{NSLocalizedDescriptionKey, GetParam().description}}));
}

INSTANTIATE_TEST_SUITE_P(
    , MissingExport,
    testing::Values(MissingCase{"of a revision", exportOf("src/a.c", "99"),
                                "The revision 99 was not found for the file \"src/a.c\"."},
                    MissingCase{"of HEAD", exportOf("src/a.c", QuenSourceControlHEADRevisionName),
                                "The revision HEAD was not found for the file \"src/a.c\"."},
                    // The command says BASE; people are told HEAD.
                    MissingCase{"of BASE", exportOf("src/a.c", QuenSourceControlBASERevisionName),
                                "The revision HEAD was not found for the file \"src/a.c\"."},
                    MissingCase{"of no revision", exportOf("src/a.c", nullptr),
                                "The revision (null) was not found for the file \"src/a.c\"."},
                    MissingCase{"of a name made safe, without the peg", direct("icon@2x.png", "99"),
                                "The revision 99 was not found for the file \"icon@2x.png@\"."},
                    MissingCase{"of no file",
                                {.type = RequestTypeExportFile, .startingRevision = "99"},
                                "The revision 99 was not found for the file \"(null)\"."}),
    CaseName());

TEST_F(SVNExportFileOperationTest, WithoutATemporaryPlaceNothingRunsAndTheErrorSaysWhy) {
    const RunContext::Scope scope(
        RunContext::current().withTemporaryDirectory("/nowhere/to/be/found"));
    const auto operation = makeOperation<SVNExportFileOperation>(oneFile);
    EXPECT_EQ(operation->arguments(), std::nullopt);
    EXPECT_EQ(operation->error().localizedDescription(),
              "There is no place for a temporary file in \"/nowhere/to/be/found\": No such file or "
              "directory.");
    operation->main();
    EXPECT_EQ(host.invocations().size(), 0U);
}

} // namespace
} // namespace quen::test
