#pragma once

#include <string>

namespace quen::tools {

/// Writes a long text to standard output; on a terminal through the pager: what PAGER says, which
/// may be a command with arguments, or `less -FRX`. An empty PAGER means none. A pager that cannot
/// be started is done without.
void printPaged(const std::string& text);

} // namespace quen::tools
