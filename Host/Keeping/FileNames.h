#pragma once

#include <string>

namespace quen {

// How names of the disk are found and changed, for `FileWriter`.

/// The directory that a file lies in; `.` for a name alone.
std::string directoryOfFile(const std::string& path);

/// A hidden name that nobody else has or could guess.
std::string randomFileName();

/// Where a link leads, through further links; the link need not lead to anything that exists.
std::string destinationOfLink(const std::string& path);

/// Renames without replacing: -1, with errno, where it fails; EEXIST where the name is taken.
int renameToNew(const char* from, const char* to) noexcept;

/// So that a new name in the directory outlives a power cut, where the file system can do that.
void syncDirectory(const std::string& path) noexcept;

} // namespace quen
