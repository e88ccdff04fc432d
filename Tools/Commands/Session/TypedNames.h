#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

#include <string>
#include <vector>

namespace quen::tools {

/// The files of a request, paths and URLs, as a person typed them: without what they are given for
/// the client's sake, a closing `@` and a `./` in front.
std::vector<std::string> typedFiles(const QuenSourceControlRequest& request);

/// Likewise, with where it copies from and where it goes to.
std::vector<std::string> typedNames(const QuenSourceControlRequest& request);

/// A line of the client's with the names in quotes as they were typed: the client shows paths
/// absolute, and sometimes with the closing `@`.
std::string withTypedNames(std::string line, const std::vector<std::string>& names);

/// Whether the line shows one of the names.
bool showsAny(const std::string& line, const std::vector<std::string>& names);

} // namespace quen::tools
