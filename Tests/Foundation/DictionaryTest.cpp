#include "Foundation/DictionaryKeys.h"
#include "Foundation/RecordMemory.h"
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

/// Keys set in a table that shares `kindKeys`, in this order, each with its number.
struct SharedKeysCase {
    const char* name;
    std::vector<String> set;
};
void PrintTo(const SharedKeysCase& each, std::ostream* out) {
    *out << each.name;
}

const String first = String::constant("first");
const String second = String::constant("second");
const String third = String::constant("third");

Dictionary withSharedKeys(RecordMemory& memory) {
    return Dictionary::withKeys(DictionaryKeys::constant({first, second, third}), memory);
}

class SharedKeysTest : public testing::TestWithParam<SharedKeysCase> {};

TEST_P(SharedKeysTest, IsATableLikeAnyOther) {
    RecordMemory memory;
    Dictionary shared = withSharedKeys(memory);
    Dictionary expected = Dictionary::empty();
    std::vector<Dictionary> sharedBefore;
    std::vector<Dictionary> expectedBefore;
    for (const bool isCopied : {false, true}) {
        for (const String& key : GetParam().set) {
            if (isCopied) {
                sharedBefore.push_back(shared);
                expectedBefore.push_back(expected);
            }
            shared.set(key, expected.count() + (isCopied ? 100 : 0));
            expected.set(key, expected.count() + (isCopied ? 100 : 0));
            ASSERT_EQ(shared, expected);
            ASSERT_EQ(shared[key], expected[key]);
        }
        shared = Dictionary(withSharedKeys(memory));
        expected = Dictionary::empty();
    }
    EXPECT_EQ(sharedBefore, expectedBefore);
    EXPECT_EQ(expected.find(third), shared.find(third));
}

INSTANTIATE_TEST_SUITE_P(
    Orders, SharedKeysTest,
    testing::Values(SharedKeysCase{"none", {}}, SharedKeysCase{"the first alone", {first}},
                    SharedKeysCase{"all", {first, second, third}},
                    SharedKeysCase{"one left out", {first, third}},
                    SharedKeysCase{"another order", {third, first, second}},
                    SharedKeysCase{"one twice", {first, first, second}},
                    SharedKeysCase{"one of the same content", {"first", "second", third}},
                    SharedKeysCase{"more", {first, second, third, "fourth", "fifth"}},
                    SharedKeysCase{"another among them", {first, "other", second, third}}));

TEST(DictionaryTest, MoreSharedKeysThanASmallTableHasAreItsOwn) {
    RecordMemory memory;
    const DictionaryKeys keys{"1",  "2",  "3",  "4",  "5",  "6",  "7",  "8", "9",
                              "10", "11", "12", "13", "14", "15", "16", "17"};
    Dictionary dictionary = Dictionary::withKeys(keys, memory);
    for (const String& key : keys) {
        dictionary.set(key, key);
    }
    EXPECT_EQ(dictionary.count(), keys.count());
    EXPECT_EQ(dictionary["17"], Value("17"));
}

TEST(DictionaryTest, TheSameSharedKeysAreMadeOnce) {
    EXPECT_EQ(&DictionaryKeys::constant({first, second}),
              &DictionaryKeys::constant({first, second}));
    EXPECT_NE(&DictionaryKeys::constant({first, second}),
              &DictionaryKeys::constant({second, first}));
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
