#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "Tests/Requests/RequestNotes.h"
#include "Tests/Requests/RequestPage.h"
#include "Tools/Provider/Provider.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace quen::test {
namespace {

constexpr const char* pathOfPage = QUEN_DOCUMENTATION "/requests.md";

std::string pageOnDisk() {
    std::ifstream file(pathOfPage, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

QuenSourceControlProtocolPtr provider() {
    std::string problem;
    auto loaded = tools::loadProviderOrExplain("", problem);
    EXPECT_NE(loaded, nullptr) << problem;
    return loaded;
}

TEST(RequestPage, IsWhatTheTableAndTheProviderSay) {
    const auto loaded = provider();
    ASSERT_NE(loaded, nullptr);
    const std::string page = requestPage(*loaded);
    if (std::getenv("QUEN_WRITE_REQUESTS") != nullptr) {
        std::ofstream(pathOfPage, std::ios::binary) << page;
    }
    EXPECT_EQ(pageOnDisk(), page) << "Run this test with QUEN_WRITE_REQUESTS=1 to write the page.";
}

TEST(RequestPage, SaysOfEachTypeWhatItIsForAndWhatItDoes) {
    for (const RequestFacts& facts : requestFactsTable) {
        const RequestNotes notes = notesOfRequest(facts.name);
        EXPECT_EQ(facts.isServed(), !notes.purpose.empty()) << facts.type;
        EXPECT_EQ(facts.isServed(), !notes.effects.empty()) << facts.type;
    }
}

} // namespace
} // namespace quen::test
