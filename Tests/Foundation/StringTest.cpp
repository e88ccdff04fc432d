#include "Foundation/String.h"

#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <vector>

namespace quen::test {
namespace {

TEST(StringTest, NilIsNotTheEmptyText) {
    const String nil;
    const String empty("");
    const char* const noText = nullptr;
    EXPECT_TRUE(nil.isNil());
    EXPECT_TRUE(String(noText).isNil());
    EXPECT_TRUE(String(nullptr).isNil());
    EXPECT_FALSE(empty.isNil());
    EXPECT_TRUE(nil.isEmpty());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(nil, String());
    EXPECT_NE(nil, empty);
    EXPECT_EQ(nil.view(), "");
    EXPECT_STREQ(nil.c_str(), "");
    EXPECT_EQ(nil.length(), 0U);
}

TEST(StringTest, ComparesWithPlainTextByContent) {
    const String text("abc");
    const char* const noText = nullptr;
    EXPECT_TRUE(text == "abc");
    EXPECT_TRUE(text == std::string_view("abc"));
    EXPECT_FALSE(text == "ab");
    EXPECT_FALSE(text == noText);
    EXPECT_FALSE(String() == "");
    EXPECT_TRUE(String() == noText);
}

TEST(StringTest, KeepsBytesAsGiven) {
    const std::string bytes("a\0b\xff", 4);
    const String text(bytes);
    EXPECT_EQ(text.length(), 4U);
    EXPECT_EQ(text.str(), bytes);
    EXPECT_EQ(text.c_str()[4], '\0');
}

TEST(StringTest, EqualityIsByContentAndIdentityByObject) {
    const String text("HEAD");
    const String copy = text; // NOLINT(performance-unnecessary-copy-initialization)
    const String twin("HEAD");
    EXPECT_EQ(text, twin);
    EXPECT_TRUE(copy.isIdenticalTo(text));
    EXPECT_FALSE(twin.isIdenticalTo(text));
    EXPECT_TRUE(String().isIdenticalTo(String()));
}

TEST(StringTest, CopiesOutliveTheFirst) {
    String copy;
    {
        const String text(std::string(1000, 'x'));
        copy = text;
    }
    EXPECT_EQ(copy.str(), std::string(1000, 'x'));
    const String& itself = copy;
    copy = itself;
    EXPECT_EQ(copy.length(), 1000U);
    const String moved = std::move(copy);
    EXPECT_TRUE(copy.isNil()); // NOLINT(bugprone-use-after-move): moving leaves nil
    EXPECT_EQ(moved.length(), 1000U);
}

TEST(StringTest, ConstantsCompareLikeOtherTexts) {
    static const String constant = String::constant("name");
    const String copy = constant; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_TRUE(copy.isIdenticalTo(constant));
    EXPECT_EQ(constant, String("name"));
    EXPECT_EQ(std::hash<String>()(constant), std::hash<String>()(String("name")));
}

TEST(StringTest, OrdersByBytesNilFirst) {
    const std::vector<String> ordered = {String(), "", "A", "B", "a", "ab", "\xc3\xbc"};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            EXPECT_EQ(ordered[i] <=> ordered[j], i <=> j) << ordered[i] << " and " << ordered[j];
        }
    }
}

TEST(StringTest, FindsParts) {
    const String path("/trunk/a.c");
    EXPECT_TRUE(path.hasPrefix("/trunk"));
    EXPECT_FALSE(path.hasPrefix("trunk"));
    EXPECT_TRUE(path.hasSuffix(".c"));
    EXPECT_FALSE(path.hasSuffix("/trunk/a.c/"));
    EXPECT_TRUE(path.contains("k/a"));
    EXPECT_FALSE(path.contains("@"));
    EXPECT_TRUE(String().contains(""));
    EXPECT_FALSE(String().hasPrefix("a"));
}

TEST(StringTest, PrintsNilInBrackets) {
    std::ostringstream out;
    out << String() << ' ' << String("text");
    EXPECT_EQ(out.str(), "(null) text");
}

TEST(StringTest, IsCopiedByManyThreadsAtOnce) {
    const String text(std::string("shared"));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([text] {
            for (int copies = 0; copies < 10'000; ++copies) {
                const String copy = text;
                EXPECT_EQ(copy.length(), 6U);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(text, "shared");
}

} // namespace
} // namespace quen::test
