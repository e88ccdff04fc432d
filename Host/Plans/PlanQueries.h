#pragma once

#include "Host/ClientCommand.h"
#include "Host/Facts/StatusFacts.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

// The runs that plans are made from. Private to `Plans.h`.

struct StatusAnswer {
    StatusFacts facts;
    Error error;
};

/// `svn status --xml` with further options, of paths that are not closed. An entry that several
/// targets hold is told once.
StatusAnswer askStatus(const std::vector<String>& paths, const StringArray& options,
                       const QueryRunner& run);

/// Which of some items, all copied or moved here, were changed since: in text, in properties.
struct CopiedEdits {
    std::set<std::string> texts;
    std::set<std::string> properties;
    Error error;
};
CopiedEdits askCopiedEdits(const std::vector<String>& paths, const QueryRunner& run);

/// The differences of properties alone, as the client words them; as much as came before a failure.
std::string askPropertyDifferences(const std::vector<String>& paths, const QueryRunner& run);

/// The sections of a plain diff, for `askCopiedEdits`.
CopiedEdits copiedEditsIn(std::string_view diff);

} // namespace quen
