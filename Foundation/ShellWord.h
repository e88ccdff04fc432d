#pragma once

#include <string>
#include <string_view>

namespace quen {

/// A text as one word of a shell's command line, quoted only where that is needed.
std::string shellWord(std::string_view text);

} // namespace quen
