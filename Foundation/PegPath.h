#pragma once

#include "Foundation/String.h"

#include <string_view>

namespace quen {

/// The client reads what follows the last `@` in the last component of a path or URL as a revision
/// (a "peg revision"). A name that holds an `@` of its own must be closed with an empty one:
/// `icon@2x.png@`.

/// Whether the client would look for a revision in that path.
bool needsPegClosed(std::string_view path) noexcept;

/// The path as the client takes it for what it is: with an `@` at its end where one is needed.
String withPegClosed(const String& path);

} // namespace quen
