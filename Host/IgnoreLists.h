#pragma once

#include "Foundation/Value.h"
#include "Host/ClientCommand.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// The names in a directory's `svn:ignore`, as the client reports them with `propget --xml`: its
/// lines, in order, without empty ones. nullopt where the property is not plain text, and for what
/// is not a report; an absent property is an empty list.
std::optional<StringArray> ignoreListIn(std::string_view report);

/// Why the name of a path cannot be in a list that the provider writes, with the pattern that can:
/// `holds an @, ..`; empty for one that can.
std::string problemOfIgnoredName(const std::string& path, RequestType type);

/// A path that cannot be ignored, or taken out again; the reason can follow its name.
struct IgnoreProblem {
    String path;
    String reason;
};

/// What is wrong with an edit of ignored names, found before anything is changed.
struct IgnorePlan {
    std::vector<IgnoreProblem> problems;
    /// A query was cancelled, or its client could not be started.
    Error error;
};

/// For a request of type ignore or unignore with these paths, whose last parts are the names. An
/// edit with a problem should not be made: the provider's takes one path after another, so that
/// some of them would be changed.
IgnorePlan planIgnore(const std::vector<String>& paths, RequestType type,
                      const QueryRunner& run = runHere);

/// Which of the paths the lists do not show as ignored, or as no longer ignored: somebody else
/// wrote a list at the same time. Empty where all is well.
std::vector<String> undoneIgnores(const std::vector<String>& paths, RequestType type,
                                  const QueryRunner& run = runHere);

} // namespace quen
