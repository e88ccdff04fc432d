#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <variant>

namespace quen {

/// What fills a placeholder: a text (for `%@` and `%s`), a whole number (`%ld`) or a real number
/// (`%.4f`, any number of digits).
using FormatArgument = std::variant<String, std::int64_t, double>;

/// The format with its placeholders filled in order. A nil text is shown as `(null)`. A placeholder
/// without an argument, and a `%` that begins none, stay as they are; arguments left over are
/// ignored.
QUEN_EXPORT String formatText(std::string_view format, std::span<const FormatArgument> arguments);
QUEN_EXPORT String formatText(std::string_view format,
                              std::initializer_list<FormatArgument> arguments);

} // namespace quen
