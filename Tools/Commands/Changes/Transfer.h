#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "Host/Keeping/TheirsKeeper.h"
#include "Tools/Commands/Changes/Change.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::tools {

/// A change that brings something from the repository into a working copy: update, merge, switch,
/// checkout.
struct Transfer {
    Change change;
    /// A sentence or more about one that was made.
    std::function<std::string(const ChangeFacts& facts)> summary;
    /// Keeps what came in where the client decided for what was here; empty where nothing is to be
    /// kept.
    std::function<std::vector<KeptTheirs>(const ChangeFacts& facts)> keepTheirs = {};
    /// The command that shows what came in where it was not kept, without the item: `quen cat`;
    /// empty where there is none.
    std::string showTheirs = {};
    /// Made one after another behind the change, and told of together with it; none is made once
    /// something went wrong or is left to decide, which the next would only bury.
    std::vector<QuenSourceControlRequestPtr> further = {};
};

/// Makes it and tells how it went: like `makeChange`, and on standard error each conflict that the
/// client decided or left, and each item that it skipped, with what to do; also where the client
/// failed, or was interrupted, after some were decided. All from the bytes of the one run.
/// ExitConflicts where there was any of these and nothing else went wrong.
int makeTransfer(Session& session, const Transfer& transfer);

/// `--no-theirs`, for transfers that decide conflicts.
void addTheirsOption(Subcommand& command, bool& dropsTheirs);

/// What the client's relative paths begin in.
String workingDirectory();

/// How many items the client worked on, each once: ` (3 items)`; nothing for none.
std::string itemsIn(const ChangeFacts& facts);
std::size_t itemCountOf(const ChangeFacts& facts);

/// ` revision 12`; nothing where the client named none.
std::string revisionIn(const ChangeFacts& facts);

} // namespace quen::tools
