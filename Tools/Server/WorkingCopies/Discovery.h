#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quen::tools::server {

/// The real path; empty where there is nothing.
std::string realPathOf(const std::string& path);

/// The real path of the top of the working copy that a path lies in, which need not exist itself;
/// empty where it lies in none.
std::string rootAbove(const std::string& path);

/// The real paths of working copies in a directory and below it, as far as `depth` levels and
/// `entries` entries: it does not look into a working copy, nor through symbolic links.
std::vector<std::string> rootsBelow(const std::string& directory, int depth = 4,
                                    std::size_t entries = 20'000);

/// What the client's database of a working copy looks like now: it changes with every change that a
/// client makes. Empty where there is none.
std::string databaseStampOf(const std::string& root);

} // namespace quen::tools::server
