#pragma once

#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace quen::tools {

using OrderedJson = nlohmann::ordered_json;

/// How values look on the wire: nothing is null; strings, integers and booleans are JSON's own; a
/// date is `YYYY-MM-DDTHH:MM:SS.ffffffZ`; a file path is `{"MarlFilePath": path}`; an error is an
/// object of domain, code and userInfo. Bytes of a text that are not UTF-8 become U+FFFD.
OrderedJson toJson(const String& text);
OrderedJson toJson(const Value& value);
OrderedJson toJson(const Error& error);
OrderedJson toJson(const std::optional<StringArray>& texts);

/// The text; nothing for an empty one and for nil.
Value textOrNull(const String& text);

/// The value in one line of JSON, for whoever only prints it.
std::string jsonText(const Value& value);

} // namespace quen::tools
