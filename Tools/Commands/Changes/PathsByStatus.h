#pragma once

#include "Tools/Commands/Changes/LocalEdit.h"

#include <string>
#include <vector>

namespace quen::tools {

/// The items at and below a directory whose status has the word, without what lies below another of
/// them. Paths are relative to the directory here where they lie below it. Explained where the
/// client fails.
Outcome<std::vector<std::string>> pathsWithStatus(const Session& session, const std::string& word,
                                                  const std::string& directory);

/// Makes an edit of these paths in place of those of the options. With a word, which is what their
/// status says, they are shown first, and the person is asked. The exit status.
int editByStatus(Session& session, const LocalEdit& edit, const LocalEditOptions& options,
                 const std::vector<std::string>& paths, const std::string& word);

} // namespace quen::tools
