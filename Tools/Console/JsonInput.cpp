#include "Tools/Console/JsonInput.h"

#include <algorithm>
#include <utility>

namespace quen::tools {

void JsonInput::fail(const std::string& message) const {
    throw InputError(path_.empty() ? message : path_ + ": " + message);
}

std::string JsonInput::pathOf(std::string_view member) const {
    return (path_.empty() ? "" : path_ + ".") + std::string(member);
}

void JsonInput::requireKind(bool isRight, std::string_view kind) const {
    if (!isRight) {
        fail("expected " + std::string(kind));
    }
}

void JsonInput::requireObject(std::initializer_list<std::string_view> members) const {
    requireKind(value_->is_object(), "an object");
    for (const auto& [name, value] : value_->items()) {
        if (std::find(members.begin(), members.end(), name) == members.end()) {
            JsonInput(value, pathOf(name)).fail("unknown member");
        }
    }
}

JsonInput JsonInput::member(std::string_view name) const {
    const auto found = value_->find(name);
    if (found == value_->end()) {
        throw InputError(pathOf(name) + ": required");
    }
    return {*found, pathOf(name)};
}

std::string JsonInput::string() const {
    requireKind(value_->is_string(), "a string");
    return value_->get<std::string>();
}

String JsonInput::stringOrNil() const {
    requireKind(value_->is_string() || value_->is_null(), "a string or null");
    return value_->is_null() ? String() : String(value_->get_ref<const std::string&>());
}

bool JsonInput::boolean() const {
    requireKind(value_->is_boolean(), "true or false");
    return value_->get<bool>();
}

std::int64_t JsonInput::integer(std::int64_t least, std::int64_t greatest) const {
    requireKind(value_->is_number_integer(), "an integer");
    const bool isTooLarge = value_->is_number_unsigned() &&
                            value_->get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX);
    const std::int64_t number = isTooLarge ? 0 : value_->get<std::int64_t>();
    if (isTooLarge || number < least || number > greatest) {
        fail("expected an integer from " + std::to_string(least) + " to " +
             std::to_string(greatest));
    }
    return number;
}

std::vector<JsonInput> JsonInput::array() const {
    requireKind(value_->is_array(), "an array");
    std::vector<JsonInput> elements;
    for (const nlohmann::json& element : *value_) {
        elements.push_back({element, path_ + "[" + std::to_string(elements.size()) + "]"});
    }
    return elements;
}

std::vector<String> JsonInput::strings() const {
    std::vector<String> texts;
    for (const JsonInput& element : array()) {
        texts.emplace_back(element.string());
    }
    return texts;
}

std::vector<std::pair<std::string, JsonInput>> JsonInput::members() const {
    requireKind(value_->is_object(), "an object");
    std::vector<std::pair<std::string, JsonInput>> members;
    for (const auto& [name, value] : value_->items()) {
        members.emplace_back(name, JsonInput(value, pathOf(name)));
    }
    return members;
}

} // namespace quen::tools
