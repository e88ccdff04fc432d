#pragma once

#include "Host/Plans/Plans.h"
#include "Tools/Commands/Session/Session.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quen::tools {

/// What a commit of some paths would send, told before it is sent.
class CommitPreview {
public:
    /// Asks the client. Explained where it cannot be told, and where the commit would fail: in
    /// conflict, not under version control, half of a move, an added directory left out.
    static Outcome<CommitPreview> of(Session& session, const QuenSourceControlRequestPtr& request,
                                     const std::vector<std::string>& paths);

    bool sendsNothing() const noexcept { return plan_.sent.empty(); }

    /// An item a line in aligned columns, `modified  src/a.c`, no more than `limit` of them, and
    /// how many more there are.
    std::vector<std::string> items(std::size_t limit) const;
    /// What is not sent, and may have been meant; in how many commits it goes.
    std::vector<std::string> notes() const;

private:
    explicit CommitPreview(CommitPlan plan) : plan_(std::move(plan)) {}
    bool tellOfObstacles(const Session& session, const std::vector<std::string>& paths) const;
    bool tellOfNamed(const Session& session, const std::vector<std::string>& paths) const;

    CommitPlan plan_;
};

} // namespace quen::tools
