#pragma once

#include <cstddef>

namespace quen::tools {

/// The width of what standard output leads to, in cells: that of the terminal; otherwise what
/// COLUMNS says; otherwise 80.
std::size_t outputColumns() noexcept;

} // namespace quen::tools
