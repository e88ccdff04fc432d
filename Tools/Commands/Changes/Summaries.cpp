#include "Tools/Commands/Changes/Summaries.h"

namespace quen::tools {

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string committedSummary(const Value& /*result*/, const ChangeOutput& output) {
    return output.revision().empty() ? "Nothing to commit."
                                     : "Committed revision " + output.revision() + ".";
}

} // namespace quen::tools
