#pragma once

#include "Foundation/String.h"

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// What is wrong with an input object, beginning with the path of the member at fault.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One member of the input, with its path for error messages. Every member function but the first
/// three throws InputError when the input is not as asked for. Refers to the parsed document, which
/// must outlive it.
class JsonInput {
public:
    /// The whole document; its path is empty.
    explicit JsonInput(const nlohmann::json& value) : value_(&value) {}

    bool isNull() const { return value_->is_null(); }
    bool isString() const { return value_->is_string(); }
    const nlohmann::json& json() const { return *value_; }

    /// Checks that this is an object without other members than these.
    void requireObject(std::initializer_list<std::string_view> members) const;
    bool has(std::string_view name) const { return value_->contains(name); }
    /// A member that must be there.
    JsonInput member(std::string_view name) const;

    std::string string() const;
    /// nil for null.
    String stringOrNil() const;
    bool boolean() const;
    std::int64_t integer(std::int64_t least, std::int64_t greatest) const;
    std::vector<JsonInput> array() const;
    std::vector<String> strings() const;
    /// The members of an object, with their names.
    std::vector<std::pair<std::string, JsonInput>> members() const;

    [[noreturn]] void fail(const std::string& message) const;

private:
    JsonInput(const nlohmann::json& value, std::string path)
        : value_(&value), path_(std::move(path)) {}
    void requireKind(bool isRight, std::string_view kind) const;
    std::string pathOf(std::string_view member) const;

    const nlohmann::json* value_;
    std::string path_;
};

} // namespace quen::tools
