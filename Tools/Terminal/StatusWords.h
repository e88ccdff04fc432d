#pragma once

#include "Tools/Terminal/Style.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quen::tools {

/// One flag of a status value, for people.
struct StatusWord {
    std::string text;
    Style style = Style::plain;
};

/// The words for a working copy status, one per flag; none for 0. Flags that no word is known for
/// are shown as one number, so that nothing is lost.
std::vector<StatusWord> wordsForStatus(std::uint32_t status);

} // namespace quen::tools
