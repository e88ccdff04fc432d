#pragma once

#include "Foundation/Date.h"
#include "Foundation/Export.h"
#include "Foundation/Shared.h"
#include "Foundation/String.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace quen {

class DictionaryKeys;
class MarlFilePath;
class RecordMemory;
class Value;

/// A nullable, ordered list of values. Copies share their elements until one of them is changed.
///
/// Threads: one Array object belongs to one thread at a time; copies of it may live in others.
class QUEN_EXPORT Array {
public:
    using const_iterator = const Value*;
    using value_type = Value;
    using size_type = std::size_t;

    /// nil; appending to it makes it a list.
    Array() noexcept = default;
    Array(std::initializer_list<Value> values);
    static Array empty();

    bool isNil() const noexcept { return !values_; }
    std::size_t count() const noexcept;
    /// `index` must be below `count`.
    const Value& operator[](std::size_t index) const noexcept;
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;

    // As standard containers have them. `empty` is the factory above, so the question is `isEmpty`.
    std::size_t size() const noexcept { return count(); }
    /// True for nil and for the list without elements.
    bool isEmpty() const noexcept { return count() == 0; }
    /// The list must not be empty.
    const Value& front() const noexcept { return (*this)[0]; }
    const Value& back() const noexcept { return (*this)[count() - 1]; }
    bool contains(const Value& value) const noexcept;

    void append(Value value);
    void reserve(std::size_t count);

    /// nil equals only nil.
    friend bool operator==(const Array& a, const Array& b) noexcept;

private:
    Shared<std::vector<Value>> values_;
};

/// A nullable, ordered, flat table from names to values. Made for records of a few keys that are
/// constants: a key costs a pointer, comparing two constants costs a pointer comparison. Past
/// `indexThreshold` keys it keeps a hash index, so that a table of a million names works too.
///
/// Copies share their entries until one of them is changed.
///
/// Threads: one Dictionary object belongs to one thread at a time; copies may live in others.
class QUEN_EXPORT Dictionary {
public:
    struct Entry;
    /// An entry where it lies. Lives until the table is changed.
    struct EntryReference;
    class const_iterator;
    static constexpr std::size_t indexThreshold = 16;

    /// nil; setting a value makes it a table.
    Dictionary() noexcept = default;
    Dictionary(std::initializer_list<Entry> entries);
    Dictionary(const Dictionary& other) noexcept;
    Dictionary(Dictionary&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    Dictionary& operator=(Dictionary other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~Dictionary() {
        if (block_ != nullptr) {
            release();
        }
    }
    static Dictionary empty() { return withCapacity(0); }
    /// An empty table with room for `capacity` entries.
    static Dictionary withCapacity(std::size_t capacity);
    /// The same for one of many records, made in their memory.
    static Dictionary withCapacity(std::size_t capacity, RecordMemory& memory);
    /// An empty table for one of many records, in which those very keys cost nothing as long as
    /// they are set in their order, the last ones left out or not. With other keys it is a table
    /// like any other.
    static Dictionary withKeys(const DictionaryKeys& keys, RecordMemory& memory);

    bool isNil() const noexcept { return block_ == nullptr; }
    std::size_t count() const noexcept;
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;

    // As standard containers have them. `empty` is the factory above, so the question is `isEmpty`.
    std::size_t size() const noexcept { return count(); }
    /// True for nil and for the table without entries.
    bool isEmpty() const noexcept { return count() == 0; }
    bool contains(const String& key) const noexcept { return find(key) != nullptr; }

    /// The value stored under `key`, or null. Lives until the table is changed.
    const Value* find(const String& key) const noexcept;
    /// The value stored under `key`, or the value nothing.
    const Value& operator[](const String& key) const noexcept;

    /// Replaces the value under `key`, or adds the entry at the end.
    void set(String key, Value value);

    /// The same entries in the same order.
    friend bool operator==(const Dictionary& a, const Dictionary& b) noexcept;

private:
    struct Block;

    static Block* makeBlock(std::size_t capacity, const DictionaryKeys* shared,
                            RecordMemory* memory);
    static void freeBlock(Block* block) noexcept;
    void release() noexcept;
    /// Makes the block this object's own, with room for one entry more.
    void prepareToAdd();
    void prepareToChange();
    void moveTo(std::size_t capacity, const DictionaryKeys* shared);

    Block* block_ = nullptr;
};

class Error;
struct ErrorData;

/// A nullable error: a domain, a code in it, and a table of further facts under the user-info keys.
/// Immutable; copies share. No error is nil.
class QUEN_EXPORT Error {
public:
    Error() noexcept = default;
    Error(String domain, std::int64_t code, Dictionary userInfo = Dictionary());

    bool isNil() const noexcept { return !data_; }
    explicit operator bool() const noexcept { return !isNil(); }
    /// nil and 0 for no error.
    const String& domain() const noexcept;
    std::int64_t code() const noexcept;
    const Dictionary& userInfo() const noexcept;
    /// What is stored under NSLocalizedDescriptionKey, or nil.
    String localizedDescription() const noexcept;
    /// What is stored under NSLocalizedRecoverySuggestionErrorKey, or nil.
    String localizedRecoverySuggestion() const noexcept;
    /// The error in one line, for a log: `Error Domain=D Code=N "text"`; nil for no error.
    String description() const;

    friend bool operator==(const Error& a, const Error& b) noexcept;

private:
    Shared<ErrorData> data_;
};

/// The standard user-info keys.
QUEN_EXPORT extern const String NSLocalizedDescriptionKey;
QUEN_EXPORT extern const String NSLocalizedRecoverySuggestionErrorKey;

/// A path object that a Value can carry. Foundation never looks inside.
using FilePathValue = std::shared_ptr<const MarlFilePath>;

/// One value of a result, an option or an error's facts; two words wide. A closed set of kinds:
/// nothing, boolean, integer, string, date, file path, error, array, dictionary. A nil string,
/// array, dictionary, error or path is stored as nothing.
class QUEN_EXPORT Value {
public:
    Value() noexcept = default;
    Value(std::same_as<bool> auto boolean) noexcept : data_(boolean) {}
    Value(std::integral auto integer) noexcept requires(!std::same_as<decltype(integer), bool>)
        : data_(static_cast<std::int64_t>(integer)) {}
    Value(String string) noexcept;
    Value(const char* string) : Value(String(string)) {}
    Value(std::string_view string) : Value(String(string)) {}
    Value(const std::string& string) : Value(String(string)) {}
    Value(Date date) noexcept : data_(date) {}
    Value(FilePathValue path);
    Value(Error error) noexcept;
    Value(Array array) noexcept;
    Value(Dictionary dictionary) noexcept;

    bool isNothing() const noexcept { return std::holds_alternative<std::monostate>(data_); }

    /// Each answers null when the value is of another kind.
    const bool* boolean() const noexcept { return std::get_if<bool>(&data_); }
    const std::int64_t* integer() const noexcept { return std::get_if<std::int64_t>(&data_); }
    const String* string() const noexcept { return std::get_if<String>(&data_); }
    const Date* date() const noexcept { return std::get_if<Date>(&data_); }
    const FilePathValue* filePath() const noexcept {
        const auto* box = std::get_if<Shared<FilePathValue>>(&data_);
        return box == nullptr ? nullptr : box->get();
    }
    const Error* error() const noexcept { return std::get_if<Error>(&data_); }
    const Array* array() const noexcept { return std::get_if<Array>(&data_); }
    const Dictionary* dictionary() const noexcept { return std::get_if<Dictionary>(&data_); }

    /// The truth of a boolean, of a number (not 0), of a text (begins with Y, y, T, t or a number
    /// other than 0, after white space, a sign and zeros); false for everything else.
    bool boolValue() const noexcept;
    /// A string as it is, a number as decimal text, a boolean as "1" or "0"; nil for all else.
    String stringValue() const;

    /// Same kind and same content; file paths are compared by object.
    friend bool operator==(const Value& a, const Value& b) noexcept;

private:
    std::variant<std::monostate, bool, std::int64_t, String, Date, Shared<FilePathValue>, Error,
                 Array, Dictionary>
        data_;
};

struct Dictionary::Entry {
    String key;
    Value value;
    friend bool operator==(const Entry& a, const Entry& b) noexcept = default;
};

struct Dictionary::EntryReference {
    const String& key;
    const Value& value;

    operator Entry() const { return {key, value}; }
    friend bool operator==(const EntryReference& a, const EntryReference& b) noexcept {
        return a.key == b.key && a.value == b.value;
    }
};

class Dictionary::const_iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using reference = EntryReference;

    /// What `->` goes through.
    struct pointer {
        EntryReference entry;
        const EntryReference* operator->() const noexcept { return &entry; }
    };

    const_iterator() noexcept = default;

    reference operator*() const noexcept { return {*key_, *value_}; }
    pointer operator->() const noexcept { return {**this}; }
    const_iterator& operator++() noexcept {
        ++key_;
        ++value_;
        return *this;
    }
    const_iterator operator++(int) noexcept {
        const const_iterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b) noexcept {
        return a.value_ == b.value_;
    }

private:
    friend class Dictionary;
    const_iterator(const String* key, const Value* value) noexcept : key_(key), value_(value) {}

    const String* key_ = nullptr;
    const Value* value_ = nullptr;
};

struct ErrorData {
    String domain;
    std::int64_t code = 0;
    Dictionary userInfo;
};

} // namespace quen
