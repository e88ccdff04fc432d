#pragma once

#include "Host/Facts/StatusFacts.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// What an update or a merge would do, told without doing it.
struct TransferPreview {
    /// `Would update to revision 9`.
    std::string headline;
    /// How many items it would touch.
    std::size_t incoming = 0;
    struct Item {
        std::string words;
        String path;
    };
    /// Changed on both sides.
    std::vector<Item> onBothSides;
    /// Unversioned, in the place of something that comes in.
    std::vector<Item> inTheWay;
    /// Changed here and not committed, and not meant by the others.
    std::vector<Item> localChanges;
};

std::vector<TransferPreview::Item> previewItems(const std::vector<StatusEntry>& entries);

/// On standard output, as records with `--json`. ExitConflicts where something is changed on both
/// sides or in the way.
int tellPreview(const Session& session, const TransferPreview& preview);

void addPreviewOption(Subcommand& command, bool& isPreview);

} // namespace quen::tools
