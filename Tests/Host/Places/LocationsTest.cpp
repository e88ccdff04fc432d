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
