#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <string>
#include <vector>

namespace quen {

/// The errors that caused this one, whether it holds one or an array of them.
QUEN_EXPORT std::vector<Error> underlyingErrorsOf(const Error& error);

/// What a person should read of an error, in one or more lines without a line feed at the end;
/// empty for nil, and never empty for another. An error without a text of its own is told by those
/// that caused it, and as a last resort by its domain and code.
///
/// `requestType` is what was asked for. The provider speaks of unignoring when ignoring failed too;
/// with the type given, the words are about what was asked for.
QUEN_EXPORT std::string descriptionOfError(const Error& error, std::int32_t requestType = -1);

} // namespace quen
