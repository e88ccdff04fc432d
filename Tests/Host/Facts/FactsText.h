#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "Host/Facts/StatusFacts.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

// Facts as lines that a test can compare whole and print.

std::string lineOf(const StatusEntry& entry);
std::vector<std::string> linesOf(const StatusFacts& facts);
std::string lineOf(const UnreadableText& unreadable);

std::string lineOf(const ChangedItem& item);
std::string lineOf(const ConflictFacts& conflict);
/// Everything in a change's facts, a line each.
std::vector<std::string> linesOf(const ChangeFacts& facts);
std::vector<std::string> linesOf(const std::vector<ConflictFacts>& conflicts);

/// The pieces of `size` bytes that make up the text; the last may be shorter.
std::vector<std::string_view> piecesOf(std::string_view text, std::size_t size);

/// Every capture below a directory of Tests/Data, by its path in there; those that end so.
std::vector<std::string> captures(std::string_view directory, std::string_view ending);

} // namespace quen::test
