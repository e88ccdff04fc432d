#pragma once

#include <string>

namespace quen::tools {

/// Whether a person can be asked: standard input and standard error are terminals, and nobody has
/// said `neverAsk`.
bool canAsk() noexcept;

/// From now on nobody can be asked.
void neverAsk() noexcept;

/// Asks on standard error and reads the answer from standard input. True for `y` or `yes`, in any
/// case; everything else, and the end of the input, is a no.
bool ask(const std::string& question);

} // namespace quen::tools
