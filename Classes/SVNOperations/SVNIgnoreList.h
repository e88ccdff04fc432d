#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

#include <string_view>

namespace quen {

/// The entries of an ignore list: its lines, as they are and in order, without those in which no
/// character is a letter, a mark or a digit by Unicode's classes. Bytes that are not UTF-8 are
/// not characters.
StringArray ignoreListFromText(std::string_view text);

} // namespace quen
