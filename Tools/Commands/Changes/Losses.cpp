#include "Tools/Commands/Changes/Losses.h"

#include "Host/Keeping/UndoStore.h"
#include "Host/Places/SettingsFile.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Question.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Table.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace quen::tools {

namespace {

/// No more than a screen holds.
constexpr std::size_t shownItems = 20;

std::string wordsFor(const LostItem& item) {
    const std::string word = item.status.item.str();
    const bool isNormal = word == "normal" || word == "none";
    if (!item.losesProperties || word == "unversioned" || word == "ignored") {
        return word;
    }
    return isNormal ? "properties modified" : word + ", properties modified";
}

/// What `quen undo` will not bring back.
std::vector<String> notesOn(const std::vector<LostItem>& lost) {
    std::vector<String> notes;
    for (const LostItem& item : lost) {
        if (item.losesProperties) {
            notes.emplace_back("changed properties of " + item.path.str());
        }
    }
    return notes;
}

} // namespace

void Losses::run(QuenSourceControlTaskOperation& query) {
    const InterruptWatch::Action action([&query] { query.cancel(); });
    query.run();
}

Explained Losses::explain(const Session& session, const Error& error) {
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted);
    }
    session.tell(error);
    return {ExitFailure};
}

void Losses::show() const {
    Table table;
    for (std::size_t i = 0; i < std::min(lost_.size(), shownItems); ++i) {
        table.add({{wordsFor(lost_[i])}, {shownPath(lost_[i].path.str())}});
    }
    table.print(std::cerr, Palette(Palette::Use::never));
    if (lost_.size() > shownItems) {
        std::cerr << "... and " << counted(lost_.size() - shownItems, "more item") << '\n';
    }
}

Outcome<bool> Losses::mayGo(const Session& session, bool isSure) const {
    if (isEmpty() || isSure) {
        return true;
    }
    show();
    if (!canAsk()) {
        return session.fail("These changes are in no revision and would be lost, so nothing was "
                            "done. With --yes it is done without asking.");
    }
    return ask("These changes are in no revision: " + step_ + " all the same?");
}

void Losses::keep(const Session& session, const std::string& place) {
    const std::vector<String> paths = lostContent(lost_);
    const std::filesystem::path top = topDirectoryOf(place);
    if (paths.empty() || top.empty()) {
        return;
    }
    const auto kept = UndoStore().keep(top.string(), step_, paths, notesOn(lost_));
    if (kept.error) {
        session.tell("Nothing can be kept for `quen undo`:");
        session.tell(kept.error);
    }
    for (const UndoRefusal& refusal : kept.refused) {
        session.tell("\"" + shownPath(refusal.path.str()) + "\" cannot be kept for `quen undo`: " +
                     printable(refusal.reason.view()) + ".");
    }
    keptAs_ = kept.entry.id;
}

std::string Losses::advice() const {
    return keptAs_.isNil() ? "" : " `quen undo` brings back what the files held.";
}

int Losses::conclude(const Session& session, int status) const {
    if (keptAs_.isNil()) {
        return status;
    }
    if (const Error error = UndoStore().noteResult(keptAs_)) {
        session.tell(error);
    }
    if (status != ExitSuccess) {
        session.tell("What the files held is kept: `quen undo` brings back what is gone.");
    }
    return status;
}

} // namespace quen::tools
