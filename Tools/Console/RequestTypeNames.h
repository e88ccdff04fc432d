#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quen::tools {

/// The type of that name, such as `RequestTypeStatus`; nullopt for any other text.
std::optional<std::int32_t> requestTypeNamed(std::string_view name);

/// The name of a type; empty for one that has none.
std::string_view nameOfRequestType(std::int32_t type);

} // namespace quen::tools
