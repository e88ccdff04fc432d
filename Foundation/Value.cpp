#include "Foundation/Value.h"

#include <algorithm>
#include <string>

namespace quen {

const String NSLocalizedDescriptionKey = String::constant("NSLocalizedDescriptionKey");
const String NSLocalizedRecoverySuggestionErrorKey =
    String::constant("NSLocalizedRecoverySuggestionErrorKey");

// Array

Array::Array(std::initializer_list<Value> values)
    : values_(Shared<std::vector<Value>>::make(values)) {}

Array Array::empty() {
    return Array(std::initializer_list<Value>{});
}

std::size_t Array::count() const noexcept {
    return values_ ? values_->size() : 0;
}

const Value& Array::operator[](std::size_t index) const noexcept {
    return (*values_)[index];
}

bool Array::contains(const Value& value) const noexcept {
    return std::find(begin(), end(), value) != end();
}

Array::const_iterator Array::begin() const noexcept {
    return values_ ? values_->data() : nullptr;
}

Array::const_iterator Array::end() const noexcept {
    return begin() + count();
}

void Array::append(Value value) {
    values_.own().push_back(std::move(value));
}

void Array::reserve(std::size_t count) {
    values_.own().reserve(count);
}

QUEN_EXPORT bool operator==(const Array& a, const Array& b) noexcept {
    return a.isNil() == b.isNil() && std::equal(a.begin(), a.end(), b.begin(), b.end());
}

// Error

Error::Error(String domain, std::int64_t code, Dictionary userInfo)
    : data_(Shared<ErrorData>::make(ErrorData{
          std::move(domain), code, userInfo.isNil() ? Dictionary::empty() : std::move(userInfo)})) {
}

const String& Error::domain() const noexcept {
    static const String nil;
    return data_ ? data_->domain : nil;
}

std::int64_t Error::code() const noexcept {
    return data_ ? data_->code : 0;
}

const Dictionary& Error::userInfo() const noexcept {
    static const Dictionary nil;
    return data_ ? data_->userInfo : nil;
}

String Error::localizedDescription() const noexcept {
    return userInfo()[NSLocalizedDescriptionKey].stringValue();
}

String Error::localizedRecoverySuggestion() const noexcept {
    return userInfo()[NSLocalizedRecoverySuggestionErrorKey].stringValue();
}

String Error::description() const {
    if (isNil()) {
        return {};
    }
    return "Error Domain=" + domain().str() + " Code=" + std::to_string(code()) + " \"" +
           localizedDescription().str() + "\"";
}

QUEN_EXPORT bool operator==(const Error& a, const Error& b) noexcept {
    return a.isNil() == b.isNil() && a.code() == b.code() && a.domain() == b.domain() &&
           a.userInfo() == b.userInfo();
}

// Value

Value::Value(String string) noexcept {
    if (!string.isNil()) {
        data_ = std::move(string);
    }
}

Value::Value(FilePathValue path) {
    if (path != nullptr) {
        data_ = Shared<FilePathValue>::make(std::move(path));
    }
}

Value::Value(Error error) noexcept {
    if (error) {
        data_ = std::move(error);
    }
}

Value::Value(Array array) noexcept {
    if (!array.isNil()) {
        data_ = std::move(array);
    }
}

Value::Value(Dictionary dictionary) noexcept {
    if (!dictionary.isNil()) {
        data_ = std::move(dictionary);
    }
}

namespace {

bool textIsTrue(std::string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        text.remove_prefix(1);
    }
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return !text.empty() &&
           std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

} // namespace

bool Value::boolValue() const noexcept {
    if (const bool* value = boolean()) {
        return *value;
    }
    if (const std::int64_t* value = integer()) {
        return *value != 0;
    }
    const String* text = string();
    return text != nullptr && textIsTrue(text->view());
}

String Value::stringValue() const {
    if (const String* text = string()) {
        return *text;
    }
    if (const std::int64_t* value = integer()) {
        return std::to_string(*value);
    }
    if (const bool* value = boolean()) {
        return *value ? "1" : "0";
    }
    return {};
}

QUEN_EXPORT bool operator==(const Value& a, const Value& b) noexcept {
    const FilePathValue* path = a.filePath();
    const FilePathValue* otherPath = b.filePath();
    if (path != nullptr && otherPath != nullptr) {
        return *path == *otherPath;
    }
    return std::visit(
        []<typename A, typename B>(const A& x, const B& y) {
            if constexpr (std::same_as<A, B> && !std::same_as<A, Shared<FilePathValue>>) {
                return x == y;
            } else {
                return false;
            }
        },
        a.data_, b.data_);
}

} // namespace quen
