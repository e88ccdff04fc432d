#pragma once

#include <string>

namespace quen::tools {

/// The page of a report, with `@DATA@` where its data goes. Made from the files in Page/ by the
/// build.
std::string pageWithoutData();

} // namespace quen::tools
