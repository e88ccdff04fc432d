#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quen {

/// The client's words for the state of an item, as host status flags; nullopt for an unknown word.
/// Words match exactly. The tables differ on purpose: a repository's "modified" is a flag of its
/// own, while a log's "M" says contents and properties, for the log does not tell them apart.

std::optional<std::uint32_t> propertyStatusValue(std::string_view word) noexcept;
/// `isCopied` counts for "added" alone.
std::optional<std::uint32_t> workingCopyStatusValue(std::string_view word, bool isCopied) noexcept;
std::optional<std::uint32_t> repositoryStatusValue(std::string_view word) noexcept;
/// The action letters of a log.
std::optional<std::uint32_t> logActionStatusValue(std::string_view letter) noexcept;

} // namespace quen
