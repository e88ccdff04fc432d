#pragma once

#include <cstddef>
#include <string>

namespace quen::benchmarks {

/// Real repositories and working copies of any size, in a place that must be a directory. Each
/// answers what to ask the client about.

/// A working copy in which every file was changed after it was checked out; its path.
std::string makeChangedFiles(const std::string& place, std::size_t files);

/// A repository in which every revision changes a few of its files; its URL.
std::string makeLongHistory(const std::string& place, std::size_t revisions);

/// A file that many revisions wrote a share of; its URL.
std::string makeLongFile(const std::string& place, std::size_t lines);

} // namespace quen::benchmarks
