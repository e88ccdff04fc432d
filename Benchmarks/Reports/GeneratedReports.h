#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen::benchmarks {

/// Reports as the client prints them, of any size and always the same.
///
/// A history of revisions with the paths that each changed.
std::string logReportOf(std::size_t revisions);
/// The lines of one file.
std::string blameReportOf(std::size_t lines);
/// A working copy of changed files.
std::string statusReportOf(std::size_t files);
/// A directory of files.
std::string listReportOf(std::size_t files);
/// Information about files.
std::string infoReportOf(std::size_t files);
/// The files in which two trees differ.
std::string summaryReportOf(std::size_t files);

/// The kinds above, for whoever goes through all of them.
struct ReportKind {
    std::string_view name;
    std::string (*make)(std::size_t records);

    /// A report of about so many bytes.
    std::string ofSize(std::size_t bytes) const;
};

const std::vector<ReportKind>& reportKinds();

} // namespace quen::benchmarks
