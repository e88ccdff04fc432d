#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <string>
#include <string_view>

namespace quen {

/// The client reads what follows the last `@` in the last component of a path or URL as a revision
/// (a "peg revision"). A name that holds an `@` of its own must be closed with an empty one:
/// `icon@2x.png@`. In a URL it takes `%40` for an `@` as well.

/// Whether the client would look for a revision in that path.
QUEN_EXPORT bool needsPegClosed(std::string_view path) noexcept;

/// The path as the client takes it for what it is: with an `@` at its end where one is needed.
QUEN_EXPORT String withPegClosed(const String& path);

/// A location that is not closed, at a revision: `location@revision`.
QUEN_EXPORT String withPeg(const String& location, const String& revision);

/// A location that was closed where it needs to be, at a revision: behind an `@` at its end the
/// revision follows without another.
QUEN_EXPORT String locationAtRevision(const String& location, const String& revision);

/// What stands before the revision: all of a location that has none. Lives as long as the location.
QUEN_EXPORT std::string_view withoutPeg(std::string_view location) noexcept;

/// A URL with every `@` in its last component written as `%40`, so that one for a revision may
/// follow; and back, so that it can be seen. The server's name and the user in front of it stay.
QUEN_EXPORT std::string withEncodedAt(std::string url);
QUEN_EXPORT std::string withPlainAt(std::string url);

} // namespace quen
