#pragma once

#include "Host/Plans/Plans.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <utility>
#include <vector>

namespace quen::tools {

/// What a step would take from the disk that is in no revision. It is shown before the step, and
/// the person is asked; where nobody can be asked the step is refused unless the person was sure
/// beforehand. What goes is kept for `quen undo`.
class Losses {
public:
    /// `step` is the sub-command's name.
    Losses(std::string step, std::vector<LostItem> lost)
        : step_(std::move(step)), lost_(std::move(lost)) {}

    /// Of a plan for removal or revert. Explained where it has an error or was interrupted.
    template <typename Plan> static Outcome<Losses>
    ofPlan(const Session& session, const std::string& step, const Plan& plan) {
        const Error& error = plan.error;
        return error ? Outcome<Losses>(explain(session, error)) : Losses(step, plan.lost);
    }

    /// Runs a plan's query, which an interrupt ends.
    static void run(QuenSourceControlTaskOperation& query);

    bool isEmpty() const { return lost_.empty(); }

    /// False, or explained, where the step must not be taken.
    Outcome<bool> mayGo(const Session& session, bool isSure) const;

    /// Keeps the contents; tells what cannot be kept. `place` is a path in the working copy.
    void keep(const Session& session, const std::string& place);

    /// A sentence that says how to get back what was kept, with a blank before it; empty where
    /// nothing was.
    std::string advice() const;

    /// To be called with the exit status of the step, however it ended. Answers the status.
    int conclude(const Session& session, int status) const;

private:
    static Explained explain(const Session& session, const Error& error);
    void show() const;

    std::string step_;
    std::vector<LostItem> lost_;
    String keptAs_;
};

} // namespace quen::tools
