#include "Tools/Commands/Changes/Summaries.h"

#include <cctype>

namespace quen::tools {

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string capitalised(std::string text) {
    if (!text.empty()) {
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    }
    return text;
}

std::string committedSummary(const Value& /*result*/, const ChangeOutput& output) {
    return output.revision().empty() ? "Nothing to commit."
                                     : "Committed revision " + output.revision() + ".";
}

} // namespace quen::tools
