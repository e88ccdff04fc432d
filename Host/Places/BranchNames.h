#pragma once

#include "Foundation/String.h"

#include <string>
#include <string_view>

namespace quen {

/// Whether a text can name a branch: parts between single slashes, none of them empty, `.` or `..`.
/// Anything else would stand for the folder of the branches, or for something outside it.
bool isBranchName(std::string_view name);

/// A name, or several with slashes between, percent-encoded as in a URL; an `@` stays.
std::string encodedName(std::string_view name);

/// The name as it stands behind the URL of the branches, for what a plug-in hands to the client as
/// it is: percent-encoded, and closed like a name that holds an `@`.
String branchNameInURL(std::string_view name);

} // namespace quen
