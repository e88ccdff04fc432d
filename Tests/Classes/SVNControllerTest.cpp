#include "Classes/SVNController.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"

#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {
namespace {

bool needsAuthentication(const Request& request) {
    return SVNController().authenticationRequiredForRequest(request.make());
}

constexpr const char* remote = "svn+ssh://host/repository/a.c";
constexpr const char* local = "/copies/ours/a.c";

/// What of a request makes a type need authentication.
enum class Needs { always, never, remoteFile, remoteDestination, remoteEnd, remoteEndOrRevision };

struct TypeRow {
    std::int32_t type;
    Needs needs;

    friend void PrintTo(const TypeRow& row, std::ostream* out) { *out << "type " << row.type; }
};

class AuthenticationByType : public testing::TestWithParam<TypeRow> {
protected:
    static bool isIn(std::initializer_list<Needs> list) {
        return std::find(list.begin(), list.end(), GetParam().needs) != list.end();
    }
};

TEST_P(AuthenticationByType, ABareRequest) {
    EXPECT_EQ(needsAuthentication({.type = GetParam().type}), isIn({Needs::always}));
}

TEST_P(AuthenticationByType, ALocalRequest) {
    EXPECT_EQ(needsAuthentication(
                  {.type = GetParam().type, .destination = local, .files = {{local, "b.c"}}}),
              isIn({Needs::always}));
}

TEST_P(AuthenticationByType, ARemoteFileAmongLocalOnes) {
    EXPECT_EQ(
        needsAuthentication({.type = GetParam().type, .files = {{local, remote, local}}}),
        isIn({Needs::always, Needs::remoteFile, Needs::remoteEnd, Needs::remoteEndOrRevision}));
}

TEST_P(AuthenticationByType, ARemoteDestination) {
    EXPECT_EQ(
        needsAuthentication({.type = GetParam().type, .destination = remote, .files = {{local}}}),
        isIn({Needs::always, Needs::remoteDestination, Needs::remoteEnd,
              Needs::remoteEndOrRevision}));
}

TEST_P(AuthenticationByType, AStartingRevision) {
    EXPECT_EQ(
        needsAuthentication({.type = GetParam().type, .files = {{local}}, .startingRevision = "7"}),
        isIn({Needs::always, Needs::remoteEndOrRevision}));
}

TEST_P(AuthenticationByType, AnEndingRevisionNeverCounts) {
    EXPECT_EQ(
        needsAuthentication({.type = GetParam().type, .files = {{local}}, .endingRevision = "7"}),
        isIn({Needs::always}));
}

TEST_P(AuthenticationByType, TheSourceTreeNeverCounts) {
    EXPECT_EQ(needsAuthentication({.type = GetParam().type,
                                   .sourceTree = repository({.location = remote}),
                                   .repositoryToAuthenticate = repository({.location = remote})}),
              isIn({Needs::always}));
}

// An export (21) stands in its own tests below; a revision other than BASE is all it takes.
INSTANTIATE_TEST_SUITE_P(
    AllTypes, AuthenticationByType,
    testing::Values(
        TypeRow{-1, Needs::never}, TypeRow{0, Needs::never}, TypeRow{1, Needs::never},
        TypeRow{2, Needs::never}, TypeRow{3, Needs::always}, TypeRow{4, Needs::remoteFile},
        TypeRow{5, Needs::remoteFile}, TypeRow{6, Needs::never}, TypeRow{7, Needs::never},
        TypeRow{8, Needs::remoteDestination}, TypeRow{9, Needs::remoteDestination},
        TypeRow{10, Needs::remoteEndOrRevision}, TypeRow{11, Needs::remoteEnd},
        TypeRow{12, Needs::remoteFile}, TypeRow{13, Needs::always}, TypeRow{14, Needs::always},
        TypeRow{15, Needs::never}, TypeRow{16, Needs::always}, TypeRow{17, Needs::always},
        TypeRow{18, Needs::always}, TypeRow{19, Needs::remoteFile}, TypeRow{20, Needs::always},
        TypeRow{21, Needs::always}, TypeRow{22, Needs::never}, TypeRow{23, Needs::always},
        TypeRow{24, Needs::never}, TypeRow{25, Needs::always}, TypeRow{26, Needs::never},
        TypeRow{27, Needs::never}, TypeRow{28, Needs::always}, TypeRow{29, Needs::never},
        TypeRow{30, Needs::never}, TypeRow{31, Needs::never}, TypeRow{32, Needs::never},
        TypeRow{33, Needs::never}, TypeRow{34, Needs::never}, TypeRow{35, Needs::never},
        TypeRow{36, Needs::never}, TypeRow{37, Needs::never}, TypeRow{38, Needs::never},
        TypeRow{39, Needs::never}, TypeRow{40, Needs::never}),
    TypeName());

struct Place {
    const char* name;
    String text;
    bool isRemote;

    friend void PrintTo(const Place& place, std::ostream* out) { *out << place.text; }
};

class AuthenticationByPlace : public testing::TestWithParam<Place> {};

TEST_P(AuthenticationByPlace, OfAFile) {
    EXPECT_EQ(needsAuthentication({.type = RequestTypeInfo, .files = {{GetParam().text}}}),
              GetParam().isRemote);
}

TEST_P(AuthenticationByPlace, OfADestination) {
    EXPECT_EQ(
        needsAuthentication({.type = RequestTypeMakeDirectory, .destination = GetParam().text}),
        GetParam().isRemote);
}

INSTANTIATE_TEST_SUITE_P(
    Places, AuthenticationByPlace,
    testing::Values(Place{"nothing", String(), false}, Place{"empty text", "", false},
                    Place{"name", "a.c", false}, Place{"absolute path", "/a/b.c", false},
                    Place{"path with a colon", "dir/a:b", false},
                    Place{"path with a blank", "/a b/c d.c", false},
                    Place{"path outside ASCII", "/\xC3\xBC/b.c", false},
                    Place{"path with an at sign", "icon@2x.png", false},
                    Place{"file URL", "file:///repository/a.c", false},
                    Place{"file URL in capitals", "FILE:///repository/a.c", false},
                    Place{"no URL for its blank", "http://host/a b.c", false},
                    Place{"no URL for its percent sign", "http://host/100%", false},
                    Place{"no URL outside ASCII", "svn://host/\xC3\xBC", false},
                    Place{"http", "http://host/a.c", true},
                    Place{"https", "https://user@host:8443/a%20b.c", true},
                    Place{"svn", "svn://host/a.c", true},
                    Place{"svn over ssh", "svn+ssh://host/a.c", true},
                    Place{"http in capitals", "HTTP://host/a.c", true},
                    Place{"no host but a scheme", "mailto:jane", true},
                    Place{"scheme that begins like file", "files://host/a.c", true}),
    CaseName());

TEST(Authentication, AnExportOfTheBaseConstantNeedsNone) {
    EXPECT_FALSE(needsAuthentication({.type = RequestTypeExportFile,
                                      .files = {{remote}},
                                      .startingRevision = QuenSourceControlBASERevisionName}));
}

TEST(Authentication, AnExportOfACopyOfTheBaseTextNeedsIt) {
    const String copy = QuenSourceControlBASERevisionName.str();
    ASSERT_EQ(copy, QuenSourceControlBASERevisionName);
    EXPECT_TRUE(needsAuthentication({.type = RequestTypeExportFile, .startingRevision = copy}));
}

TEST(Authentication, AnExportOfHeadOrOfNoRevisionNeedsIt) {
    EXPECT_TRUE(needsAuthentication(
        {.type = RequestTypeExportFile, .startingRevision = QuenSourceControlHEADRevisionName}));
    EXPECT_TRUE(needsAuthentication({.type = RequestTypeExportFile}));
}

TEST(Authentication, AnExportLooksAtItsStartingRevisionAlone) {
    EXPECT_TRUE(needsAuthentication({.type = RequestTypeExportFile,
                                     .startingRevision = "7",
                                     .endingRevision = QuenSourceControlBASERevisionName}));
}

TEST(Authentication, ALocalCopyNeedsItWithAStartingRevisionOnly) {
    Request copy{.type = RequestTypeCopy, .destination = "b.c", .files = {{"a.c"}}};
    EXPECT_FALSE(needsAuthentication(copy));
    copy.startingRevision = QuenSourceControlBASERevisionName;
    EXPECT_TRUE(needsAuthentication(copy));
}

TEST(Authentication, AMoveOfLocalFilesIsDecidedByItsDestination) {
    Request move{.type = RequestTypeMove, .files = {{"a.c"}}};
    move.destination = "file:///repository/b.c";
    EXPECT_FALSE(needsAuthentication(move));
    move.destination = "svn+ssh://host/repository/b.c";
    EXPECT_TRUE(needsAuthentication(move));
}

TEST(Authentication, NoRequestNeedsNone) {
    EXPECT_FALSE(SVNController().authenticationRequiredForRequest(nullptr));
}

/// For which source trees and repositories to authenticate a type is valid.
enum class Validity {
    always,
    /// No source tree, or a reachable one.
    unlessUnreachable,
    /// A reachable source tree; whatever the repository to authenticate.
    withReachableTree,
    /// A reachable source tree and a reachable repository to authenticate.
    withBothReachable,
};

struct ValidityRow {
    std::int32_t type;
    Validity validity;
    String startingRevision = {};

    friend void PrintTo(const ValidityRow& row, std::ostream* out) { *out << "type " << row.type; }
};

/// In the order nil, unreachable, reachable.
enum Reach : std::size_t { nil, unreachable, reachable };
constexpr std::array reaches{nil, unreachable, reachable};

using ValidityTable = std::array<std::array<bool, 3>, 3>;

/// By source tree, then by repository to authenticate.
const ValidityTable& tableOf(Validity validity) {
    static constexpr ValidityTable always{
        {{true, true, true}, {true, true, true}, {true, true, true}}};
    static constexpr ValidityTable unlessUnreachable{
        {{true, true, true}, {false, false, false}, {true, true, true}}};
    static constexpr ValidityTable withReachableTree{
        {{false, false, false}, {false, false, false}, {true, true, true}}};
    static constexpr ValidityTable withBothReachable{
        {{false, false, false}, {false, false, false}, {false, false, true}}};
    switch (validity) {
    case Validity::always: return always;
    case Validity::unlessUnreachable: return unlessUnreachable;
    case Validity::withReachableTree: return withReachableTree;
    case Validity::withBothReachable: break;
    }
    return withBothReachable;
}

std::shared_ptr<HostRepository> repositoryWith(Reach reach, const char* name) {
    return reach == nil ? nullptr : repository({.name = name, .reachable = reach == reachable});
}

Error unreachableError(const std::string& name) {
    const String description = "The operation could not be performed because the repository \"" +
                               name + "\" could not be reached.";
    return {QuenSourceControlErrorDomain, -20, {{NSLocalizedDescriptionKey, description}}};
}

class ValidationByType : public testing::TestWithParam<ValidityRow> {
protected:
    static Request requestWith(Reach tree, Reach repositoryToAuthenticate) {
        return {.type = GetParam().type,
                .sourceTree = repositoryWith(tree, "tree"),
                .startingRevision = GetParam().startingRevision,
                .repositoryToAuthenticate = repositoryWith(repositoryToAuthenticate, "repository")};
    }
};

TEST_P(ValidationByType, AnswersForEachReachabilityAndAlwaysFillsTheSlot) {
    const ValidityTable& expected = tableOf(GetParam().validity);
    for (const Reach tree : reaches) {
        for (const Reach toAuthenticate : reaches) {
            SCOPED_TRACE("tree " + std::to_string(tree) + ", repository " +
                         std::to_string(toAuthenticate) + " of nil, unreachable, reachable");
            Error error;
            EXPECT_EQ(
                SVNController().validateRequest(requestWith(tree, toAuthenticate).make(), &error),
                expected[tree][toAuthenticate]);
            EXPECT_EQ(error, unreachableError(tree == nil ? "(null)" : "tree"));
        }
    }
}

TEST_P(ValidationByType, AnswersTheSameWithoutASlot) {
    const ValidityTable& expected = tableOf(GetParam().validity);
    for (const Reach tree : reaches) {
        EXPECT_EQ(SVNController().validateRequest(requestWith(tree, reachable).make(), nullptr),
                  expected[tree][reachable]);
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, ValidationByType,
    testing::Values(
        ValidityRow{-1, Validity::unlessUnreachable}, ValidityRow{0, Validity::unlessUnreachable},
        ValidityRow{1, Validity::unlessUnreachable}, ValidityRow{2, Validity::unlessUnreachable},
        ValidityRow{3, Validity::withBothReachable}, ValidityRow{4, Validity::unlessUnreachable},
        ValidityRow{5, Validity::unlessUnreachable}, ValidityRow{6, Validity::unlessUnreachable},
        ValidityRow{7, Validity::unlessUnreachable}, ValidityRow{8, Validity::unlessUnreachable},
        ValidityRow{9, Validity::unlessUnreachable}, ValidityRow{10, Validity::unlessUnreachable},
        ValidityRow{11, Validity::unlessUnreachable}, ValidityRow{12, Validity::unlessUnreachable},
        ValidityRow{13, Validity::withBothReachable}, ValidityRow{14, Validity::withBothReachable},
        ValidityRow{15, Validity::unlessUnreachable}, ValidityRow{16, Validity::withBothReachable},
        ValidityRow{17, Validity::withBothReachable}, ValidityRow{18, Validity::withBothReachable},
        ValidityRow{19, Validity::unlessUnreachable}, ValidityRow{20, Validity::withBothReachable},
        ValidityRow{21, Validity::withBothReachable}, ValidityRow{22, Validity::unlessUnreachable},
        ValidityRow{23, Validity::withBothReachable}, ValidityRow{24, Validity::unlessUnreachable},
        ValidityRow{25, Validity::withBothReachable}, ValidityRow{26, Validity::unlessUnreachable},
        ValidityRow{27, Validity::unlessUnreachable}, ValidityRow{28, Validity::withBothReachable},
        ValidityRow{29, Validity::unlessUnreachable}, ValidityRow{30, Validity::unlessUnreachable},
        ValidityRow{31, Validity::always}, ValidityRow{32, Validity::always},
        ValidityRow{33, Validity::unlessUnreachable}, ValidityRow{34, Validity::unlessUnreachable},
        ValidityRow{35, Validity::unlessUnreachable}, ValidityRow{36, Validity::unlessUnreachable},
        ValidityRow{37, Validity::unlessUnreachable}, ValidityRow{38, Validity::unlessUnreachable},
        ValidityRow{39, Validity::unlessUnreachable}, ValidityRow{40, Validity::unlessUnreachable}),
    TypeName());

// The one request of a repository's type that needs no authentication, and local types that do.
INSTANTIATE_TEST_SUITE_P(BaseExport, ValidationByType,
                         testing::Values(ValidityRow{RequestTypeExportFile,
                                                     Validity::withReachableTree,
                                                     QuenSourceControlBASERevisionName}));
INSTANTIATE_TEST_SUITE_P(CopyOfARevision, ValidationByType,
                         testing::Values(ValidityRow{RequestTypeCopy, Validity::withBothReachable,
                                                     "7"}));

TEST(Validation, StatusNeedsNoSourceTreeButRemoteStatusDoes) {
    SVNController controller;
    EXPECT_TRUE(controller.validateRequest(Request{.type = RequestTypeStatus}.make(), nullptr));
    EXPECT_FALSE(
        controller.validateRequest(Request{.type = RequestTypeRemoteStatus}.make(), nullptr));
}

TEST(Validation, AnInfoCheckIgnoresAnUnreachableSourceTree) {
    EXPECT_TRUE(
        SVNController().validateRequest(Request{.type = RequestTypeInfoCheck,
                                                .sourceTree = workingTree({.reachable = false}),
                                                .files = {{"a.c"}}}
                                            .make(),
                                        nullptr));
}

TEST(Validation, AnAbsentRepositoryToAuthenticateCountsAsUnreachable) {
    Request request{.type = RequestTypeUpdate, .sourceTree = workingTree(), .files = {{"a.c"}}};
    EXPECT_FALSE(SVNController().validateRequest(request.make(), nullptr));
    request.repositoryToAuthenticate = repository();
    EXPECT_TRUE(SVNController().validateRequest(request.make(), nullptr));
}

TEST(Validation, AnyKindOfSourceTreeIsAskedItself) {
    // Not its repository.
    const auto unreachableRepository = repository({.reachable = false});
    SVNController controller;
    EXPECT_TRUE(controller.validateRequest(
        Request{.type = RequestTypeAdd,
                .sourceTree = workingTree({.repository = unreachableRepository})}
            .make(),
        nullptr));
    EXPECT_FALSE(controller.validateRequest(
        Request{.type = RequestTypeAdd, .sourceTree = otherTree({.reachable = false})}.make(),
        nullptr));
}

TEST(Validation, TheErrorNamesTheSourceTreeAlsoWhenTheRepositoryFailed) {
    Error error(QuenSourceControlErrorDomain, -1);
    EXPECT_FALSE(SVNController().validateRequest(
        Request{.type = RequestTypeCommit,
                .sourceTree = workingTree({.name = "ours"}),
                .repositoryToAuthenticate = repository({.name = "theirs", .reachable = false})}
            .make(),
        &error));
    EXPECT_EQ(error, unreachableError("ours"));
}

TEST(Validation, ATreeWithoutANameIsShownAsNull) {
    Error error;
    EXPECT_TRUE(SVNController().validateRequest(
        Request{.type = RequestTypeAdd, .sourceTree = workingTree()}.make(), &error));
    EXPECT_EQ(error, unreachableError("(null)"));
}

TEST(Validation, NoRequestIsInvalidAndFillsTheSlot) {
    Error error;
    EXPECT_FALSE(SVNController().validateRequest(nullptr, &error));
    EXPECT_EQ(error, unreachableError("(null)"));
    EXPECT_FALSE(SVNController().validateRequest(nullptr, nullptr));
}

} // namespace
} // namespace quen::test
