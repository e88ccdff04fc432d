#include "Tools/Console/JsonOutput.h"

#include "Host/Text.h"
#include "MarlFoundation/MarlFilePath.h"

#include <nlohmann/json.hpp>

namespace quen::tools {

namespace {

OrderedJson toJson(const Array& array) {
    OrderedJson json = OrderedJson::array();
    for (const Value& value : array) {
        json.push_back(tools::toJson(value));
    }
    return json;
}

OrderedJson toJson(const Dictionary& dictionary) {
    OrderedJson::object_t members;
    members.reserve(dictionary.count());
    for (const auto& entry : dictionary) {
        // Behind the last member, without the search for an equal name that each insertion costs:
        // a dictionary holds a name once.
        members.emplace_back(replacingInvalidUTF8(entry.key.view()), tools::toJson(entry.value));
    }
    return members;
}

} // namespace

OrderedJson toJson(const String& text) {
    return text.isNil() ? OrderedJson() : OrderedJson(replacingInvalidUTF8(text.view()));
}

OrderedJson toJson(const Error& error) {
    if (!error) {
        return {};
    }
    OrderedJson json;
    json["domain"] = toJson(error.domain());
    json["code"] = error.code();
    json["userInfo"] = toJson(error.userInfo());
    return json;
}

OrderedJson toJson(const std::optional<StringArray>& texts) {
    if (!texts) {
        return {};
    }
    OrderedJson json = OrderedJson::array();
    for (const String& text : *texts) {
        json.push_back(toJson(text));
    }
    return json;
}

OrderedJson toJson(const Value& value) {
    if (const bool* boolean = value.boolean()) {
        return *boolean;
    }
    if (const std::int64_t* integer = value.integer()) {
        return *integer;
    }
    if (const String* string = value.string()) {
        return toJson(*string);
    }
    if (const Date* date = value.date()) {
        return dateText(*date);
    }
    if (const FilePathValue* path = value.filePath()) {
        return {{"MarlFilePath", toJson((*path)->pathString())}};
    }
    if (const Error* error = value.error()) {
        return toJson(*error);
    }
    if (const Array* array = value.array()) {
        return toJson(*array);
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        return toJson(*dictionary);
    }
    return {};
}

Value textOrNull(const String& text) {
    return text.isEmpty() ? Value() : Value(text);
}

std::string jsonText(const Value& value) {
    return toJson(value).dump();
}

} // namespace quen::tools
