#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

#include <cstddef>

namespace quen {

/// 0 for an absent list too.
std::size_t fileCountOf(const QuenSourceControlRequest& request);

/// Whether the request has a value for an option, of whatever kind.
bool hasOption(const QuenSourceControlRequest& request, const String& key);

/// An option's value as a text, whatever it is: `(a, b)` for an array, `{key = value}` for a
/// dictionary. nil only where the request has none, so that no argument takes its place.
String optionText(const QuenSourceControlRequest& request, const String& key);

/// Puts a piece at the end of a command; nothing where it is nil.
void appendPiece(StringArray& command, const String& piece);

/// `-m` and the request's log message; nothing where it has none.
void appendMessageIfGiven(StringArray& command, const QuenSourceControlRequest& request);

/// `-m`, given or not, and the request's log message: for a change that the repository does not
/// take without one.
void appendRequiredMessage(StringArray& command, const QuenSourceControlRequest& request);

/// The directory that holds the request's first file; nil where there is no file.
String parentOfFirstFile(const QuenSourceControlRequest& request);

} // namespace quen
