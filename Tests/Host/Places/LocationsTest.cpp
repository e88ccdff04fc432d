#include "Host/Places/Locations.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/Printers.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

namespace {

/// What becomes of a path or URL: as one of a request's files, as its destination, and as the
/// destination of a checkout.
struct LocationCase {
    std::string name;
    std::string location;
    std::string file;
    std::string destination;
    std::string directory;
};

void PrintTo(const LocationCase& location, std::ostream* out) {
    *out << '"' << location.location << '"';
}

class ClientLocation : public testing::TestWithParam<LocationCase> {};

TEST_P(ClientLocation, IsReadByTheClientAsItIsMeant) {
    EXPECT_EQ(clientPath(GetParam().location).view(), GetParam().file);
    EXPECT_EQ(closedClientPath(GetParam().location).view(), GetParam().destination);
    EXPECT_EQ(closedDirectory(GetParam().location).view(), GetParam().directory);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ClientLocation,
    testing::Values(LocationCase{"plain", "src/a.c", "src/a.c", "src/a.c", "src/a.c"},
                    LocationCase{"a dash in front", "-a", "./-a", "./-a", "./-a"},
                    LocationCase{"an at sign", "a@2", "a@2", "a@2@", "a@2/"},
                    LocationCase{"with a slash behind it", "a@2/", "a@2/", "a@2/@", "a@2/"},
                    LocationCase{"both", "-a@2", "./-a@2", "./-a@2@", "./-a@2/"},
                    LocationCase{"one in a directory", "a@2/b", "a@2/b", "a@2/b", "a@2/b"},
                    LocationCase{"encoded in a path", "a%402", "a%402", "a%402", "a%402"},
                    LocationCase{"encoded in a URL", "http://h/r/a%402", "http://h/r/a@2",
                                 "http://h/r/a@2@", "http://h/r/a@2/"},
                    LocationCase{"encoded in a user", "http://a%40b@h/r", "http://a%40b@h/r",
                                 "http://a%40b@h/r", "http://a%40b@h/r"},
                    LocationCase{"encoded in a URL's directory", "http://h/a%402/b",
                                 "http://h/a%402/b", "http://h/a%402/b", "http://h/a%402/b"}),
    CaseName());

TEST(ImportedPath, ShowsThePlugInNoNameToClose) {
    EXPECT_EQ(importedPath("src"), "src");
    EXPECT_EQ(importedPath("-src"), "./-src");
    EXPECT_EQ(importedPath("src@2"), "src@2/.");
    EXPECT_EQ(importedPath("src@2/"), "src@2//.");
    EXPECT_EQ(clientPath("src@2/././."), "src@2/");
    EXPECT_EQ(clientPath("src/."), "src/.");
    EXPECT_EQ(importedPath("src@2/a"), "src@2/a");
}

/// Whether a path lies below a directory, and whether it lies at or below it.
struct BelowCase {
    std::string name;
    std::string path;
    std::string directory;
    bool isBelow;
    bool isAtOrBelow;
};

void PrintTo(const BelowCase& each, std::ostream* out) {
    *out << '"' << each.path << "\" in \"" << each.directory << '"';
}

class PathBelow : public testing::TestWithParam<BelowCase> {};

TEST_P(PathBelow, IsToldByComponents) {
    EXPECT_EQ(isBelow(GetParam().path, GetParam().directory), GetParam().isBelow);
    EXPECT_EQ(isAtOrBelow(GetParam().path, GetParam().directory), GetParam().isAtOrBelow);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PathBelow,
    testing::Values(BelowCase{"itself", "/a/b", "/a/b", false, true},
                    BelowCase{"a child", "/a/b/c", "/a/b", true, true},
                    BelowCase{"far below", "/a/b/c/d", "/a", true, true},
                    BelowCase{"above", "/a", "/a/b", false, false},
                    BelowCase{"a name that begins alike", "/a/bc", "/a/b", false, false},
                    BelowCase{"below the root", "/a", "/", true, true},
                    BelowCase{"the root", "/", "/", false, true},
                    BelowCase{"a URL", "file:///r/trunk/a.c", "file:///r/trunk", true, true},
                    BelowCase{"a path in the whole repository", "/trunk", "", true, true}),
    CaseName());

TEST(DirectoryName, IsTheLastPartOfTheURLDecoded) {
    EXPECT_EQ(directoryNameFor("http://h/r/trunk"), "trunk");
    EXPECT_EQ(directoryNameFor("http://h/r/trunk/"), "trunk");
    EXPECT_EQ(directoryNameFor("http://h/r/a%20b%C3%BC"), "a bü");
    EXPECT_EQ(directoryNameFor("http://h/r/50%"), "50%");
    EXPECT_EQ(directoryNameFor("http://h/r/50%2"), "50%2");
    EXPECT_EQ(directoryNameFor("http://h/r/50%zz"), "50%zz");
}

} // namespace

} // namespace quen::test
