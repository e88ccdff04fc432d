#pragma once

#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/Confirmation.h"
#include "Tools/Commands/Session/Session.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace quen::tools {

/// What a step would take from the disk, or mix with something else, that is in no revision. It is
/// shown before the step, and the person is asked; where nobody can be asked the step is refused
/// unless the person was sure beforehand. What goes is kept for `quen undo`.
///
/// The order: `confirm`, `keep`, the step, `conclude`.
class Losses {
public:
    /// Nothing is lost. `step` is the sub-command's name.
    explicit Losses(std::string step) : Losses(std::move(step), {{}, {}}, {}) {}
    /// `lost` is kept; the person is shown what the confirmation holds.
    Losses(std::string step, Confirmation confirmation, std::vector<LostItem> lost)
        : step_(std::move(step)), confirmation_(std::move(confirmation)), lost_(std::move(lost)) {}

    /// Of a plan for removal or revert. Explained where it has an error or was interrupted.
    template <typename Plan> static Outcome<Losses>
    ofPlan(const Session& session, const std::string& step, const Plan& plan) {
        const Error& error = plan.error;
        return error ? Outcome<Losses>(explain(session, error)) : lostBy(step, plan.lost);
    }

    /// Why a plan could not be made; `request` is the one that it is for, where there is one.
    static Explained explain(const Session& session, const Error& error,
                             const QuenSourceControlRequest* request = nullptr);

    /// ExitSuccess where the step may be taken, otherwise the exit status, explained.
    int confirm(const Session& session, bool isSure) const {
        return confirmation_.obtain(session, isSure);
    }

    /// Keeps the contents. What cannot be kept is told before the step, and asked about unless the
    /// person is sure. `paths` are those of the command. Answers like `confirm`.
    int keep(const Session& session, const std::vector<std::string>& paths, bool isSure);

    bool isKept() const { return !kept_.empty(); }
    /// How many of the paths that were named are lost without being under version control: a client
    /// that takes them says nothing of them.
    std::size_t unversionedAmong(const std::vector<std::string>& paths) const;
    /// The command that brings back what was kept: `quen undo`, with the working copies where they
    /// are not the one here.
    std::string undoCommand() const;
    /// A sentence that says so, with a blank before it; empty where nothing was kept.
    std::string advice() const;

    /// To be called with the exit status of the step, however it ended. Answers the status.
    int conclude(const Session& session, int status) const;

private:
    struct Kept {
        std::string workingCopy;
        String id;
    };

    static Losses lostBy(const std::string& step, const std::vector<LostItem>& lost);
    void keepOf(const Session& session, const std::string& workingCopy,
                const std::vector<LostItem>& lost, Confirmation& unkept);
    void forget();

    std::string step_;
    Confirmation confirmation_;
    std::vector<LostItem> lost_;
    std::vector<Kept> kept_;
};

/// What a status says of an item, with its properties: `modified, properties modified`.
std::string wordsForItem(const StatusEntry& entry);

} // namespace quen::tools
