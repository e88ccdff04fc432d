#include "Tools/Commands/Changes/TransferPreview.h"

#include "MarlFoundation/MarlFilePath.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/Table.h"

#include <iostream>

namespace quen::tools {

namespace {

void printItems(const std::string& heading, const std::vector<TransferPreview::Item>& items) {
    if (items.empty()) {
        return;
    }
    Table table;
    for (const TransferPreview::Item& item : items) {
        table.add({{"  " + item.words}, {shownPath(item.path.view())}});
    }
    std::cout << heading << '\n';
    table.print(std::cout, Palette(Palette::Use::never));
}

Array recordsOf(const std::vector<TransferPreview::Item>& items) {
    Array records;
    for (const TransferPreview::Item& item : items) {
        records.append(Dictionary{{"path", item.path}, {"status", String(item.words)}});
    }
    return records;
}

void printForPeople(const TransferPreview& preview) {
    std::cout << preview.headline << ": "
              << (preview.incoming == 0 ? "nothing comes in"
                                        : counted(preview.incoming, "item") + " would change")
              << ".\n";
    printItems("Changed on both sides; where the same lines are concerned, yours are kept:",
               preview.onBothSides);
    printItems("In the way of what comes in; a tree conflict would be left:", preview.inTheWay);
    printItems("Changed here and not committed:", preview.localChanges);
}

} // namespace

std::vector<TransferPreview::Item> previewItems(const std::vector<StatusEntry>& entries) {
    std::vector<TransferPreview::Item> items;
    items.reserve(entries.size());
    for (const StatusEntry& entry : entries) {
        items.push_back({wordsForItem(entry), entry.path});
    }
    return items;
}

int tellPreview(const Session& session, const TransferPreview& preview) {
    if (session.options().json) {
        printJson(Dictionary{{"incoming", static_cast<std::int64_t>(preview.incoming)},
                             {"changedOnBothSides", recordsOf(preview.onBothSides)},
                             {"inTheWay", recordsOf(preview.inTheWay)},
                             {"localChanges", recordsOf(preview.localChanges)}});
    } else {
        printForPeople(preview);
    }
    return preview.onBothSides.empty() && preview.inTheWay.empty() ? ExitSuccess : ExitConflicts;
}

void addPreviewOption(Subcommand& command, bool& isPreview) {
    command.flag("--preview", isPreview,
                 "Change nothing; show what both sides have changed (status 3 if anything)");
}

} // namespace quen::tools
