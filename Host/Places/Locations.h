#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// Whether a person means a place in a repository by its URL: a scheme, `://`, and more. Everything
/// else is a path.
bool isRepositoryURL(std::string_view location);

/// Whether something has that name on the disk; a link counts, wherever it leads.
bool isOnDisk(const std::string& path);
/// Whether it is a path, and that of a directory or of a link to one.
bool isDirectory(const std::string& location);

/// As it is named without `.` and `..` parts and without slashes at the end; links are not
/// followed.
std::string plainPath(const std::string& path);
/// Likewise, from the root on; empty where the current directory is needed and cannot be told.
std::string absolutePath(const std::string& path);

/// By components: `/a/b` lies at or below `/a`, `/ab` does not; a path lies at or below itself.
bool isAtOrBelow(std::string_view path, std::string_view directory) noexcept;
/// Likewise, but a path does not lie below itself.
bool isBelow(std::string_view path, std::string_view directory) noexcept;

/// The directory that a checkout of a URL is named after: its last part, decoded.
std::string directoryNameFor(const std::string& url);

/// A person's path or URL as the client must be given it: one that begins with `-` would be read as
/// an option, so it is named from the current directory.
String clientPath(const std::string& path);
StringArray clientPaths(const std::vector<std::string>& paths);

/// Likewise, for what a plug-in hands to the client as it stands (a request's destination, a source
/// tree's location): the client would read what follows an `@` in the name as a revision, so the
/// name is closed with another. A request's files are closed by the plug-in.
String closedClientPath(const std::string& path);

/// Likewise, for what is imported: unlike most commands, the client's import reads no revisions.
/// Behind `/.` the plug-in sees no name to close.
String importedPath(const std::string& path);

/// Likewise, for a directory that the plug-in looks for afterwards under the name that it was
/// given: a slash at its end also keeps the client from reading a revision.
String closedDirectory(const std::string& path);

} // namespace quen
