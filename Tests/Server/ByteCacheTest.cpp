#include "Tools/Server/Runs/ByteCache.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

ByteCache::Bytes bytes(std::size_t size, char c = 'x') {
    return std::make_shared<const std::string>(size, c);
}

TEST(ByteCache, KeepsWhatWasUsedLast) {
    ByteCache cache(4000);
    for (const char* name : {"a", "b", "c", "d"}) {
        cache.keep(name, bytes(800));
    }
    EXPECT_NE(cache.find("a"), nullptr);
    cache.keep("e", bytes(800));
    EXPECT_EQ(cache.find("b"), nullptr);
    EXPECT_NE(cache.find("a"), nullptr);
    EXPECT_NE(cache.find("e"), nullptr);
    EXPECT_LE(cache.size(), 4000U);
}

TEST(ByteCache, DoesNotKeepWhatIsTooLarge) {
    ByteCache cache(4000);
    cache.keep("a", bytes(1001));
    EXPECT_EQ(cache.find("a"), nullptr);
    EXPECT_EQ(cache.size(), 0U);
}

TEST(ByteCache, TheFirstBytesOfANameCount) {
    ByteCache cache(4000);
    cache.keep("a", bytes(10, 'x'));
    cache.keep("a", bytes(10, 'y'));
    EXPECT_EQ(*cache.find("a"), std::string(10, 'x'));
}

} // namespace

} // namespace quen::test
