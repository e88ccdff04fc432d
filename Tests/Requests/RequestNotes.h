#pragma once

#include <string_view>

namespace quen::test {

/// What the table does not know of a request type, in words.
struct RequestNotes {
    std::string_view purpose;
    std::string_view effects;
    /// What surprises. Empty where nothing does.
    std::string_view pitfalls = {};
};

RequestNotes notesOfRequest(std::string_view type);

} // namespace quen::test
