#pragma once

#include "Host/Facts/ChangeFacts.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quen {

/// The conflicts that the client tells of while it changes something, each item once among the
/// facts. Private to `ChangeFactsReader`.
class ChangeConflicts {
public:
    /// The item's conflict, made where there was none. `external` is the one in which it lies.
    ConflictFacts& at(const String& path, ChangeFacts& facts, std::optional<std::size_t> external);

    /// Notes what a line tells to be settled; false for a line of another kind.
    bool takeSettled(std::string_view line, ChangeFacts& facts,
                     std::optional<std::size_t> external);

private:
    /// Where each item's is among the facts.
    std::unordered_map<std::string, std::size_t> numbers_;
};

} // namespace quen
