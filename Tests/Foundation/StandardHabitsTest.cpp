// What is written by somebody who knows the standard's containers and texts, and nothing of ours.

#include "Foundation/Value.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <numeric>
#include <ranges>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quen::test {
namespace {

static_assert(std::ranges::contiguous_range<const Array>);
static_assert(std::ranges::sized_range<const Array>);
// Its keys and its values lie apart, so that an entry is a pair of references.
static_assert(std::ranges::input_range<const Dictionary>);
static_assert(std::ranges::sized_range<const Dictionary>);
static_assert(std::same_as<std::ranges::range_value_t<const Dictionary>, Dictionary::Entry>);
static_assert(std::same_as<std::ranges::range_value_t<Array>, Value>);
static_assert(std::constructible_from<std::string, const String&>);
static_assert(std::constructible_from<std::string_view, const String&>);
// A view of a text that is gone in the same line is nobody's wish.
static_assert(!std::convertible_to<String, std::string_view>);
// `empty()` makes an empty list: taken for a question it does not compile.
static_assert(!std::constructible_from<bool, Array> && !std::constructible_from<bool, Dictionary>);

TEST(StandardHabits, TextsComeInAndGoOutAsStandardOnes) {
    const std::string standard = "standard";
    const std::string_view view = "view";
    const char* const null = nullptr;
    struct Row {
        String text;
        std::string out;
    };
    const Row rows[] = {{standard, "standard"},          {view, "view"}, {"plain", "plain"},
                        {std::string("moved"), "moved"}, {null, ""},     {{}, ""}};
    for (const Row& row : rows) {
        EXPECT_EQ(std::string(row.text), row.out);
        EXPECT_EQ(std::string_view(row.text), row.out);
        EXPECT_EQ(row.text.str(), row.out);
        EXPECT_EQ(row.text.size(), row.out.size());
        EXPECT_EQ(row.text.empty(), row.out.empty());
    }
}

TEST(StandardHabits, TextsCompareFromBothSides) {
    const String text = "abc";
    EXPECT_TRUE(text == std::string("abc") && std::string("abc") == text);
    EXPECT_TRUE(text == std::string_view("abc") && std::string_view("abc") == text);
    EXPECT_TRUE(text == "abc" && "abc" == text);
    EXPECT_TRUE(text != std::string("abd") && text < String("abd"));
    EXPECT_FALSE(String() == std::string()) << "nil is not the empty text";
}

TEST(StandardHabits, TextsAreKeys) {
    const std::set<String> ordered{"b", "a"};
    EXPECT_EQ(*ordered.begin(), "a");
    std::unordered_map<String, int> hashed;
    hashed["a"] = 1;
    EXPECT_EQ(hashed.at(std::string("a")), 1);
}

TEST(StandardHabits, ValuesAreMadeOfWhatIsAtHand) {
    const std::string standard = "text";
    const Value texts[] = {"text", standard, std::string_view(standard), String("text")};
    for (const Value& value : texts) {
        ASSERT_NE(value.string(), nullptr);
        EXPECT_EQ(*value.string(), "text");
        EXPECT_EQ(value, Value("text"));
    }
    const Value numbers[] = {1, 1U, 1L, std::int8_t{1}, std::size_t{1}};
    for (const Value& value : numbers) {
        EXPECT_EQ(value, Value(std::int64_t{1}));
    }
    EXPECT_NE(Value(true), Value(1));
}

TEST(StandardHabits, ListsAndTablesAreWrittenDown) {
    const Array list{"a", 2, true, Array{"inner"}, Dictionary{{"key", "value"}}};
    EXPECT_EQ(list.size(), 5U);
    EXPECT_EQ(list.front(), Value("a"));
    EXPECT_EQ(*list.back().dictionary(), (Dictionary{{"key", Value("value")}}));
    EXPECT_TRUE(list.contains(2) && list.contains("a") && !list.contains("b"));

    const Dictionary table{{"one", 1}, {"two", "zwei"}, {"list", Array{1, 2}}};
    EXPECT_EQ(table.size(), 3U);
    EXPECT_TRUE(table.contains("two") && !table.contains("three"));
    EXPECT_EQ(table["two"].stringValue(), "zwei");
    EXPECT_TRUE(table["three"].isNothing());
}

TEST(StandardHabits, EmptinessIsAskedAsOfAnyRange) {
    struct Row {
        Array list;
        bool isEmpty;
    };
    const Row rows[] = {{Array(), true}, {Array::empty(), true}, {Array{1}, false}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.list.isEmpty(), row.isEmpty);
        EXPECT_EQ(std::ranges::empty(row.list), row.isEmpty);
        EXPECT_EQ(std::size(row.list) == 0, row.isEmpty);
    }
    EXPECT_TRUE(Dictionary().isEmpty() && Dictionary::empty().isEmpty());
    EXPECT_TRUE(std::ranges::empty(Dictionary()));
    EXPECT_FALSE((Dictionary{{"a", 1}}.isEmpty()));
}

TEST(StandardHabits, AlgorithmsTakeThem) {
    const Array list{3, 1, 2};
    const auto number = [](const Value& value) { return *value.integer(); };
    EXPECT_EQ(number(*std::ranges::max_element(list, {}, number)), 3);
    EXPECT_EQ(std::ranges::count(list, Value(2)), 1);
    std::vector<Value> sorted(list.begin(), list.end());
    std::ranges::sort(sorted, {}, number);
    EXPECT_EQ(sorted.front(), Value(1));
    std::vector<std::int64_t> doubled;
    std::ranges::transform(list, std::back_inserter(doubled),
                           [&](const Value& v) { return 2 * number(v); });
    EXPECT_EQ(std::accumulate(doubled.begin(), doubled.end(), std::int64_t{0}), 12);

    const Dictionary table{{"b", 1}, {"a", 2}};
    std::string keys;
    for (const auto& [key, value] : table) {
        keys += std::string(key) + *value.stringValue().c_str();
    }
    EXPECT_EQ(keys, "b1a2") << "in the order in which they were set";
}

TEST(StandardHabits, ErrorsAreTestedAndTold) {
    const Error none;
    const Error error("Domain", 7,
                      {{NSLocalizedDescriptionKey, "It failed."},
                       {NSLocalizedRecoverySuggestionErrorKey, "Try again."}});
    EXPECT_FALSE(none);
    EXPECT_TRUE(error && error.localizedDescription() == "It failed.");
    EXPECT_EQ(error.localizedRecoverySuggestion(), "Try again.");
    EXPECT_TRUE(none.localizedRecoverySuggestion().isNil());
}

} // namespace
} // namespace quen::test
