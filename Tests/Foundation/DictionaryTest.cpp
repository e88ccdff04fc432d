#include "Foundation/Value.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quen::test {
namespace {

String key(std::size_t number) {
    return "key " + std::to_string(number);
}

Dictionary numbered(std::size_t count) {
    Dictionary dictionary;
    for (std::size_t i = 0; i < count; ++i) {
        dictionary.set(key(i), i);
    }
    return dictionary;
}

TEST(DictionaryTest, NilBecomesATableWhenSomethingIsSet) {
    Dictionary dictionary;
    EXPECT_TRUE(dictionary.isNil());
    EXPECT_EQ(dictionary.count(), 0U);
    EXPECT_EQ(dictionary.begin(), dictionary.end());
    EXPECT_EQ(dictionary.find("a"), nullptr);
    EXPECT_TRUE(dictionary["a"].isNothing());
    dictionary.set("a", 1);
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1}}));
    EXPECT_NE(Dictionary(), Dictionary::empty());
}

TEST(DictionaryTest, KeepsTheOrderAndReplacesInPlace) {
    Dictionary dictionary{{"b", 1}, {"a", 2}, {"b", 3}};
    EXPECT_EQ(dictionary.count(), 2U);
    EXPECT_EQ(dictionary, (Dictionary{{"b", 3}, {"a", 2}}));
    EXPECT_NE(dictionary, (Dictionary{{"a", 2}, {"b", 3}}));
    dictionary.set("a", Value());
    EXPECT_NE(dictionary.find("a"), nullptr);
    EXPECT_TRUE(dictionary["a"].isNothing());
}

TEST(DictionaryTest, FindsKeysByContentNotByObject) {
    static const String constant = String::constant("name");
    const Dictionary dictionary{{constant, 1}};
    EXPECT_EQ(dictionary[constant], Value(1));
    EXPECT_EQ(dictionary[std::string("name")], Value(1));
    EXPECT_EQ(dictionary.find("nam"), nullptr);
    EXPECT_EQ(dictionary.find(String()), nullptr);
}

TEST(DictionaryTest, CopiesShareUntilOneChanges) {
    Dictionary first{{"a", 1}};
    const Dictionary second = first;
    EXPECT_EQ(first.begin(), second.begin());
    first.set("a", 2);
    first.set("b", 3);
    EXPECT_EQ(first, (Dictionary{{"a", 2}, {"b", 3}}));
    EXPECT_EQ(second, (Dictionary{{"a", 1}}));
}

TEST(DictionaryTest, HoldsACopyOfItself) {
    Dictionary dictionary{{"a", 1}};
    dictionary.set("self", dictionary);
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1}, {"self", Dictionary{{"a", 1}}}}));
}

TEST(DictionaryTest, FindsEverythingAtEverySizeAroundTheIndex) {
    for (std::size_t count = 0; count <= 4 * Dictionary::indexThreshold; ++count) {
        const Dictionary dictionary = numbered(count);
        ASSERT_EQ(dictionary.count(), count);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(dictionary[key(i)], Value(i)) << "of " << count;
        }
        ASSERT_EQ(dictionary.find(key(count)), nullptr);
    }
}

TEST(DictionaryTest, ReplacesInALargeTableAndLeavesItsCopyAlone) {
    Dictionary dictionary = numbered(100);
    const Dictionary before = dictionary;
    dictionary.set(key(50), "changed");
    dictionary.set(key(100), "added");
    EXPECT_EQ(dictionary.count(), 101U);
    EXPECT_EQ(dictionary[key(50)], Value("changed"));
    EXPECT_EQ(dictionary[key(100)], Value("added"));
    EXPECT_EQ(before, numbered(100));
}

TEST(DictionaryTest, ReservedTablesAreIndexedToo) {
    Dictionary dictionary = Dictionary::withCapacity(1000);
    for (std::size_t i = 0; i < 1000; ++i) {
        dictionary.set(key(i), i);
    }
    EXPECT_EQ(dictionary, numbered(1000));
    EXPECT_EQ(dictionary[key(999)], Value(999));
}

/// Without its index this takes five thousand million comparisons.
TEST(DictionaryTest, TakesAHundredThousandKeysQuickly) {
    constexpr std::size_t count = 100'000;
    const auto start = std::chrono::steady_clock::now();
    const Dictionary dictionary = numbered(count);
    std::size_t found = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Value* const value = dictionary.find(key(i));
        if (value != nullptr && *value == Value(i)) {
            ++found;
        }
    }
    EXPECT_EQ(found, count);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

} // namespace
} // namespace quen::test
