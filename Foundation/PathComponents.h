#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <string_view>
#include <vector>

namespace quen {

/// Paths as texts, by component rules: `/` separates, a run of separators counts as one, separators
/// at the end count for nothing. Nothing here looks at the disk.

/// `a/b.c` gives `b.c`, `a/b/` gives `b`, `/` gives `/`, the empty path the empty text.
QUEN_EXPORT std::string_view lastPathComponent(std::string_view path) noexcept;

/// The parent: `a/b` gives `a`, `/a` gives `/`, `a` gives the empty text.
QUEN_EXPORT std::string_view deletingLastPathComponent(std::string_view path) noexcept;

/// The two joined by exactly one separator; where one of them is empty, the other alone.
QUEN_EXPORT String appendingPathComponent(std::string_view directory, std::string_view component);

/// The components in order, a leading `/` being one of its own; none for the empty path.
QUEN_EXPORT std::vector<std::string_view> pathComponents(std::string_view path);

} // namespace quen
