#pragma once

#include "Tools/Commands/Report/ReportFacts.h"

#include <string>

namespace quen::tools {

/// One page of HTML that holds everything it needs and loads nothing. What comes from the
/// repository is in it as JSON alone, in which no tag can begin; its script shows it as text.
std::string reportPage(const ReportFacts& facts, Date now);

} // namespace quen::tools
