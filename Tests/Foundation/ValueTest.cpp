#include "Foundation/Value.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

/// Foundation only carries the pointer; any class of that name will do.
class quen::MarlFilePath {};

namespace quen::test {

namespace {

// Value

TEST(ValueTest, IsTwoWordsWide) {
    EXPECT_EQ(sizeof(Value), 2 * sizeof(void*));
}

struct KindCase {
    const char* kind;
    Value value;
};

std::vector<KindCase> oneOfEachKind() {
    return {{"nothing", {}},
            {"boolean", true},
            {"integer", 1},
            {"string", "1"},
            {"date", Date(std::chrono::microseconds(1))},
            {"file path", std::make_shared<const MarlFilePath>()},
            {"error", Error("domain", 1)},
            {"array", Array{1}},
            {"dictionary", Dictionary{{"1", 1}}}};
}

std::string kindOf(const Value& value) {
    std::string kind;
    const auto add = [&kind](bool is, const char* name) { kind += is ? name : ""; };
    add(value.isNothing(), "nothing");
    add(value.boolean() != nullptr, "boolean");
    add(value.integer() != nullptr, "integer");
    add(value.string() != nullptr, "string");
    add(value.date() != nullptr, "date");
    add(value.filePath() != nullptr, "file path");
    add(value.error() != nullptr, "error");
    add(value.array() != nullptr, "array");
    add(value.dictionary() != nullptr, "dictionary");
    return kind;
}

TEST(ValueTest, AnswersAsItsOwnKindOnly) {
    for (const KindCase& each : oneOfEachKind()) {
        EXPECT_EQ(kindOf(each.value), each.kind);
    }
}

TEST(ValueTest, EqualsOnlyItsOwnKind) {
    const std::vector<KindCase> cases = oneOfEachKind();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        for (std::size_t j = 0; j < cases.size(); ++j) {
            EXPECT_EQ(cases[i].value == cases[j].value, i == j)
                << cases[i].kind << " and " << cases[j].kind;
        }
    }
}

TEST(ValueTest, ComparesContent) {
    EXPECT_EQ(Value("a"), Value(String("a")));
    EXPECT_NE(Value("a"), Value("b"));
    EXPECT_NE(Value(1), Value(2));
    EXPECT_EQ((Value(Array{1, "a"})), (Value(Array{1, "a"})));
    EXPECT_NE((Value(Array{1, "a"})), (Value(Array{"a", 1})));
    EXPECT_NE(Value(std::make_shared<const MarlFilePath>()),
              Value(std::make_shared<const MarlFilePath>()));
}

TEST(ValueTest, StoresNilAsNothing) {
    const char* const noText = nullptr;
    EXPECT_TRUE(Value(String()).isNothing());
    EXPECT_TRUE(Value(noText).isNothing());
    EXPECT_TRUE(Value(Array()).isNothing());
    EXPECT_TRUE(Value(Dictionary()).isNothing());
    EXPECT_TRUE(Value(Error()).isNothing());
    EXPECT_TRUE(Value(FilePathValue()).isNothing());
    EXPECT_FALSE(Value(Array::empty()).isNothing());
    EXPECT_FALSE(Value(Dictionary::empty()).isNothing());
    EXPECT_FALSE(Value("").isNothing());
}

TEST(ValueTest, KnowsWhatIsTrue) {
    const struct {
        Value value;
        bool expected;
    } cases[] = {
        {true, true},
        {false, false},
        {0, false},
        {1, true},
        {-1, true},
        {"Y", true},
        {"YES", true},
        {"y", true},
        {"yes", true},
        {"true", true},
        {"T", true},
        {"1", true},
        {"9 lives", true},
        {"  yes", true},
        {"\t1", true},
        {"+1", true},
        {"-1", true},
        {"+0001", true},
        {"0y", true},
        {"-Y", true},
        {"", false},
        {"no", false},
        {"NO", false},
        {"0", false},
        {"000", false},
        {"-0", false},
        {"+", false},
        {"--1", false},
        {"false", false},
        {"on", false},
        {"0.5", false},
        {"- 1", false},
        {"  ", false},
        {"\xc3\xbf", false},
        {{}, false},
        {Array{true}, false},
        {Dictionary{{"y", true}}, false},
        {Error("D", 1), false},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(each.value.boolValue(), each.expected) << each.value.stringValue();
    }
}

TEST(ValueTest, IsShownAsText) {
    EXPECT_EQ(Value("text").stringValue(), "text");
    EXPECT_EQ(Value(-42).stringValue(), "-42");
    EXPECT_EQ(Value(std::numeric_limits<std::int64_t>::min()).stringValue(),
              "-9223372036854775808");
    EXPECT_EQ(Value(true).stringValue(), "1");
    EXPECT_EQ(Value(false).stringValue(), "0");
    EXPECT_TRUE(Value().stringValue().isNil());
    EXPECT_TRUE(Value(Array{1}).stringValue().isNil());
}

// Array

TEST(ArrayTest, NilBecomesAListWhenSomethingIsAppended) {
    Array array;
    EXPECT_TRUE(array.isNil());
    EXPECT_EQ(array.count(), 0U);
    EXPECT_EQ(array.begin(), array.end());
    array.append("a");
    EXPECT_FALSE(array.isNil());
    EXPECT_EQ(array, Array{"a"});
    EXPECT_NE(Array(), Array::empty());
}

TEST(ArrayTest, CopiesShareUntilOneChanges) {
    Array first{1, 2};
    const Array second = first;
    EXPECT_EQ(first.begin(), second.begin());
    first.append(3);
    EXPECT_EQ(first, (Array{1, 2, 3}));
    EXPECT_EQ(second, (Array{1, 2}));
}

TEST(ArrayTest, HoldsACopyOfItself) {
    Array array{1};
    array.append(array);
    EXPECT_EQ(array, (Array{1, Array{1}}));
}

TEST(ArrayTest, IteratesInOrder) {
    Array array;
    array.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
        array.append(i);
    }
    std::int64_t expected = 0;
    for (const Value& value : array) {
        EXPECT_EQ(value, Value(expected));
        ++expected;
    }
    EXPECT_EQ(expected, 1000);
    EXPECT_EQ(array[999], Value(999));
}

// Error

TEST(ErrorTest, NoErrorIsNil) {
    const Error none;
    EXPECT_TRUE(none.isNil());
    EXPECT_FALSE(none);
    EXPECT_TRUE(none.domain().isNil());
    EXPECT_EQ(none.code(), 0);
    EXPECT_TRUE(none.userInfo().isNil());
    EXPECT_TRUE(none.localizedDescription().isNil());
    EXPECT_TRUE(none.description().isNil());
    EXPECT_EQ(none, Error());
}

TEST(ErrorTest, CarriesDomainCodeAndFacts) {
    const Error error("D", -7, {{NSLocalizedDescriptionKey, "It broke."}});
    EXPECT_TRUE(error);
    EXPECT_EQ(error.domain(), "D");
    EXPECT_EQ(error.code(), -7);
    EXPECT_EQ(error.localizedDescription(), "It broke.");
    EXPECT_EQ(error.description(), "Error Domain=D Code=-7 \"It broke.\"");
    EXPECT_TRUE(Error("D", -7).localizedDescription().isNil());
    EXPECT_EQ(Error("D", -7).userInfo(), Dictionary::empty());
}

TEST(ErrorTest, EqualsByEverythingItCarries) {
    const Error error("D", 1, {{"k", "v"}});
    EXPECT_EQ(error, Error("D", 1, {{"k", "v"}}));
    EXPECT_NE(error, Error("E", 1, {{"k", "v"}}));
    EXPECT_NE(error, Error("D", 2, {{"k", "v"}}));
    EXPECT_NE(error, Error("D", 1, {{"k", "w"}}));
    EXPECT_NE(error, Error());
    EXPECT_NE(Error("", 0), Error());
}

} // namespace
} // namespace quen::test
