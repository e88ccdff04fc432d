#pragma once

#include "Fuzz/Support/Input.h"

#include <string>

namespace quen::fuzz {

/// A report made as the input's bytes say, in one of three ways that the first byte chooses: the
/// bytes themselves; what reports are made of, in any order; or a well-formed report, in which a
/// few bytes may then be changed.
std::string madeReport(FuzzInput input);

} // namespace quen::fuzz
