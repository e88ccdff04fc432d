#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Terminal/Style.h"

#include <cstddef>
#include <string>

namespace quen::tools {

/// Who changed something and when: `r12  alice  3 days ago (2024-01-01 10:11:12 +0100)`. What is
/// not known is left out, but for the author, whose absence is worth a word.
std::string commitLine(const CommitFacts& commit, const Palette& palette, Date now);

/// A revision with its message and, where there are some, its changed paths.
std::string fullText(const HistoryEntry& entry, const Palette& palette, Date now);

/// How many cells the names of authors take at most, in columns of an output of `width` cells; 0
/// for any width.
std::size_t authorWidthIn(std::size_t width) noexcept;

/// A revision in one line of at most `width` cells; 0 for any width.
std::string oneLine(const HistoryEntry& entry, const Palette& palette, std::size_t width);

/// The record that the provider makes of a revision, and behind it the members of `shortRecord`.
Dictionary contractRecord(const HistoryEntry& entry, bool hasPaths);

/// A revision for a script: revision, author, date, message and, where `hasPaths`, paths.
Dictionary shortRecord(const HistoryEntry& entry, bool hasPaths);

} // namespace quen::tools
