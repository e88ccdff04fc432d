#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// The name that was probably meant by a word with a slip or two in it; empty where none is near.
std::string nearestName(std::string_view word, const std::vector<std::string>& names);

} // namespace quen::tools
