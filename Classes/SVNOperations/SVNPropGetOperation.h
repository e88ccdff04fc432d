#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// `svn propget` of the ignore list of the directory that holds the request's one file. For
/// RequestTypeIgnore and RequestTypeUnignore it then works out the edited list and queues the
/// operation that writes it behind itself. Has no result.
///
/// A name of the list is an entry with a letter or a digit in it: what has none (an empty line, a
/// bare `*`) is dropped by the next write.
class SVNPropGetOperation : public SVNOperation {
public:
    /// Sets `arguments` only where the options name the ignore list as what to edit.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Adds the edit, where one is due, to the queue on which this operation runs. `error` without
    /// a description: the name to remove is not in the list.
    void parseData() override;
};

} // namespace quen
