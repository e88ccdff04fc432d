#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tests/Support/Printers.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

void expectNoRevisionsOrRepository(const QuenSourceControlRequest& request) {
    EXPECT_EQ(request.startingRevision(), String());
    EXPECT_EQ(request.endingRevision(), String());
    EXPECT_EQ(request.repositoryToAuthenticate(), nullptr);
}

TEST(RequestRecord, IsEmptyAndOfTypeZeroAtFirst) {
    const QuenSourceControlRequest request;
    EXPECT_EQ(request.type(), RequestTypeAdd);
    EXPECT_EQ(request.sourceTree(), nullptr);
    EXPECT_EQ(request.destination(), String());
    EXPECT_EQ(request.files(), std::nullopt);
    EXPECT_EQ(request.options(), Dictionary());
    expectNoRevisionsOrRepository(request);
}

TEST(RequestRecord, IsMadeWithADestination) {
    const auto tree = workingTree();
    QuenSourceControlRequest request;
    request.setStartingRevision("1");
    request.setEndingRevision("2");
    request.setRepositoryToAuthenticate(repository());
    request.initWithType(RequestTypeCopy, tree, "b.c", {{"a.c"}}, {{"key", "value"}});
    EXPECT_EQ(request.type(), RequestTypeCopy);
    EXPECT_EQ(request.sourceTree(), tree);
    EXPECT_EQ(request.destination(), "b.c");
    EXPECT_EQ(request.files(), StringArray{"a.c"});
    EXPECT_EQ(request.options(), (Dictionary{{"key", "value"}}));
    expectNoRevisionsOrRepository(request);
}

TEST(RequestRecord, IsMadeWithoutADestination) {
    const auto tree = repository();
    QuenSourceControlRequest request;
    request.setDestination("b.c");
    request.initWithType(RequestTypeIgnore, tree, StringArray(), Dictionary());
    EXPECT_EQ(request.type(), RequestTypeIgnore);
    EXPECT_EQ(request.sourceTree(), tree);
    EXPECT_EQ(request.destination(), String());
    EXPECT_EQ(request.files(), StringArray());
    EXPECT_EQ(request.options(), Dictionary());
    expectNoRevisionsOrRepository(request);
}

TEST(RequestRecord, KeepsTheVeryObjectOfARevision) {
    const String revision = "7";
    QuenSourceControlRequest request;
    request.setStartingRevision(revision);
    EXPECT_TRUE(request.startingRevision().isIdenticalTo(revision));
    EXPECT_FALSE(request.startingRevision().isIdenticalTo(String("7")));
}

TEST(RequestRecord, TellsAnAbsentFileListFromAnEmptyOne) {
    QuenSourceControlRequest request;
    request.setFiles(StringArray());
    EXPECT_EQ(request.files(), StringArray());
    request.setFiles(std::nullopt);
    EXPECT_EQ(request.files(), std::nullopt);
}

} // namespace
} // namespace quen::test
