#include "Tools/Commands/Changes/Summaries.h"

namespace quen::tools {

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string committedSummary(const Value& /*result*/, const ClientReport& report) {
    return report.revision().empty() ? "Nothing to commit."
                                     : "Committed revision " + report.revision() + ".";
}

} // namespace quen::tools
