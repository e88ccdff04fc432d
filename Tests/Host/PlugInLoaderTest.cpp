#include "Host/PlugInLoader.h"

#include <gmock/gmock.h>

namespace quen::test {
namespace {

struct Refused {
    const char* description;
    std::string path;
    PlugInErrorCode code;
    std::string text;
};

std::vector<Refused> refusedModules() {
    const std::string none = QUEN_TEST_MODULES "/NoEntryPoint.so";
    const std::string more = QUEN_TEST_MODULES "/NeedsMore.so";
    const std::string other = QUEN_TEST_MODULES "/WrongVersion.so";
    return {
        {"missing file", "/nowhere/none.so", PlugInErrorMissingFile,
         "There is no plug-in at \"/nowhere/none.so\"."},
        {"no module", "/etc/passwd", PlugInErrorNotLoadable,
         "The plug-in \"/etc/passwd\" cannot be loaded: "},
        {"what the host does not have", more, PlugInErrorNotLoadable,
         "The plug-in \"" + more +
             "\" cannot be loaded: this host does not export what the module needs of it:\n"
             "  quen::QuenSourceControlNewerKey\n"
             "  quen::newerFunction(int)"},
        {"no entry point", none, PlugInErrorMissingEntryPoint,
         "\"" + none +
             "\" is not a source-control plug-in: it has no entry point "
             "\"quenSourceControlPlugInEntryPoint\"."},
        {"another version", other, PlugInErrorWrongVersion,
         "The plug-in \"" + other +
             "\" was built for version 2 of the contract; this host has version 1."},
    };
}

TEST(PlugInLoader, EveryRefusalHasAMessageOfItsOwn) {
    for (const Refused& refused : refusedModules()) {
        SCOPED_TRACE(refused.description);
        Error error;
        EXPECT_EQ(loadProvider(refused.path, &error), nullptr);
        EXPECT_EQ(error.domain(), QuenPlugInErrorDomain);
        EXPECT_EQ(error.code(), refused.code);
        EXPECT_THAT(error.localizedDescription().str(), testing::StartsWith(refused.text));
    }
}

TEST(PlugInLoader, TheErrorMayBeLeftOut) {
    EXPECT_EQ(loadProvider("/nowhere/none.so", nullptr), nullptr);
}

} // namespace
} // namespace quen::test
