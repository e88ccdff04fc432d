#pragma once

#include "Tools/Commands/Session/Session.h"
#include "Tools/Terminal/Table.h"

#include <string>
#include <utility>

namespace quen::tools {

/// What a person is shown and asked before a step that takes or touches something: a heading, the
/// items, and a question. No more than a screenful of items is shown, with a count of the rest.
class Confirmation {
public:
    /// `These changes will be lost:` and `Revert 20 items?`
    Confirmation(std::string heading, std::string question)
        : heading_(std::move(heading)), question_(std::move(question)) {}

    /// Words about an item, and the item as it is to be shown, both safe for a terminal.
    void add(std::string words, std::string item);
    bool isEmpty() const { return count_ == 0; }

    /// Asks on a terminal. ExitSuccess where the step may be taken: the answer is yes, the person
    /// was sure beforehand, or there is nothing to ask about. Otherwise the exit status of the
    /// command, which has then been explained; also where nobody can be asked.
    int obtain(const Session& session, bool isSure) const;

    /// Shows heading and items on standard error.
    void show(const Session& session) const;

private:
    std::string heading_;
    std::string question_;
    Table shown_;
    std::size_t count_ = 0;
};

} // namespace quen::tools
