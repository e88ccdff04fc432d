#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

#include <memory>

namespace quen {

/// `svn propget` of the ignore list of the directory that holds the request's one file. For
/// RequestTypeIgnore and RequestTypeUnignore it then works out the edited list and queues the
/// operation that writes it behind itself. Has no result.
///
/// A name of the list is an entry with a letter or a digit in it: what has none (an empty line, a
/// bare `*`) is dropped by the next write.
///
/// `arguments` are set only where the options name the ignore list as what to edit. `error` without
/// a description: the name to remove is not in the list. A list that the client cannot show as text
/// is left alone, with an error that says so.
class SVNPropGetOperation : public SVNOperation {
public:
    /// The edit that was queued; null where none was. Good once this operation has ended, whatever
    /// has become of the edit by then.
    const std::shared_ptr<SVNOperation>& queuedEdit() const { return edit_; }

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    /// Adds the edit, where one is due, to the queue on which this operation runs.
    void parseOutput(const QuenSourceControlRequest& request) override;

    template <typename Edit> void queueEdit(const QuenSourceControlRequestPtr& request);
    void queueWrite(const QuenSourceControlRequest& request, StringArray names);
    void ignore(const String& name, const StringArray& list);
    void unignore(const String& name, StringArray list);

    std::shared_ptr<SVNOperation> edit_;
};

} // namespace quen
