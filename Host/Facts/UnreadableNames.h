#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <vector>

namespace quen {

/// A directory whose entries the client could not read, and those that are at fault.
struct UnreadableNames {
    /// Absolute; nil where the error is about something else.
    String directory;
    /// The names that are not UTF-8, byte for byte and sorted. Empty where they are gone by now.
    std::vector<String> names;
};

/// A file name that is not UTF-8 ends the client's run (`Error converting entry in directory 'DIR'
/// to UTF-8`), and its error names the directory alone. This looks there for the names.
QUEN_EXPORT UnreadableNames unreadableNamesOf(const Error& error);

} // namespace quen
