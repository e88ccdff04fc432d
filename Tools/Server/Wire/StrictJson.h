#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace quen::tools::server {

/// A JSON text as read, with what a lenient reader passes over.
struct StrictJson {
    nlohmann::json value;
    /// Why the text is not JSON; empty where it is.
    std::string fault;
    /// The path of the first name that stands twice in its object (`params.paths`); empty for none.
    /// The last one counts in `value`.
    std::string doubled;
};

/// Reads a text of at most `deepest` objects and arrays in each other. Nothing recurses on the
/// depth of the text.
StrictJson readStrictJson(std::string_view text, int deepest);

} // namespace quen::tools::server
