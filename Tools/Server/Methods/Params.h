#pragma once

#include "Tools/Console/JsonInput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quen::tools::server {

// What the params of many methods have in common. Each throws InputError with the member's path.

/// An absolute path; its directory's real path, where that is there, with the name behind it.
std::string readPath(const JsonInput& input);
/// At least one.
std::vector<std::string> readPaths(const JsonInput& params, std::string_view name = "paths");

/// A URL with a scheme.
std::string readURL(const JsonInput& input);
/// The one of `path` and `url` that is given.
std::string readLocation(const JsonInput& params);
/// A path or a URL under one name.
std::string readPathOrURL(const JsonInput& input);

/// `BASE`, `HEAD` or a number, as the client takes it; empty where the member is absent or null.
std::string readRevision(const JsonInput& params, std::string_view name);

bool readFlag(const JsonInput& params, std::string_view name);
/// Empty where the member is absent or null.
std::string readText(const JsonInput& params, std::string_view name);

/// The real path of the working copy that `workingCopy` names by its top.
std::string readWorkingCopy(const JsonInput& params);
/// That of the one that all the paths lie in.
std::string rootOf(const JsonInput& params, const std::vector<std::string>& paths,
                   std::string_view name = "paths");

} // namespace quen::tools::server
