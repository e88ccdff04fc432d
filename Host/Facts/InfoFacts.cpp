#include "Host/Facts/InfoFacts.h"

#include "Host/Facts/RecordReading.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

void takeIncoming(const XMLElement& element, TextTaker& texts, InfoConflict& conflict) {
    for (const XMLElement version : element.children("version")) {
        if (version.attribute("side") == "source-right") {
            conflict.incomingRepository = texts.take(version.attribute("repos-url"));
            conflict.incomingPath = texts.take(version.attribute("path-in-repos"));
            conflict.incomingKind = texts.take(version.attribute("kind"));
            conflict.incomingRevision = numberIn(version.attribute("revision"));
        }
    }
}

InfoConflict conflictIn(const XMLElement& element, TextTaker& texts) {
    InfoConflict conflict;
    conflict.type =
        element.name() == "tree-conflict" ? "tree" : texts.take(element.attribute("type"));
    conflict.operation = texts.take(element.attribute("operation"));
    conflict.action = texts.take(element.attribute("action"));
    conflict.reason = texts.take(element.attribute("reason"));
    conflict.kind = texts.take(element.attribute("kind"));
    takeIncoming(element, texts, conflict);
    conflict.previousBaseFile = texts.takeChild(element, "prev-base-file");
    conflict.mineFile = texts.takeChild(element, "prev-wc-file");
    conflict.incomingFile = texts.takeChild(element, "cur-base-file");
    conflict.propertyFile = texts.takeChild(element, "prop-file");
    return conflict;
}

void takeConflicts(const XMLElement& record, TextTaker& texts, InfoEntry& entry) {
    for (const char* const name : {"conflict", "tree-conflict"}) {
        for (const XMLElement element : record.children(name)) {
            InfoConflict conflict = conflictIn(element, texts);
            const auto& known = entry.conflicts;
            if (std::find(known.begin(), known.end(), conflict) == known.end()) {
                entry.conflicts.push_back(std::move(conflict));
            }
        }
    }
}

void takeWorkingCopy(const XMLElement& info, TextTaker& texts, InfoEntry& entry) {
    entry.workingCopy = texts.takeChild(info, "wcroot-abspath");
    entry.schedule = texts.takeChild(info, "schedule");
    entry.depth = texts.takeChild(info, "depth");
    entry.changelist = texts.takeChild(info, "changelist");
    entry.checksum = texts.takeChild(info, "checksum");
    entry.movedFrom = texts.takeChild(info, "moved-from");
    entry.movedTo = texts.takeChild(info, "moved-to");
    entry.copiedFromURL = texts.takeChild(info, "copy-from-url");
    if (const auto revision = info.firstChild("copy-from-rev")) {
        entry.copiedFromRevision = numberIn(revision->text());
    }
}

InfoEntry entryIn(const XMLElement& record, TextTaker& texts) {
    InfoEntry entry;
    entry.path = texts.takePath(record.attribute("path"));
    entry.kind = texts.take(record.attribute("kind"));
    entry.url = texts.takeChild(record, "url");
    entry.revision = numberIn(record.attribute("revision"));
    entry.commit = texts.takeCommit(record);
    entry.lock = texts.takeLock(record);
    if (const auto repository = record.firstChild("repository")) {
        entry.repositoryRoot = texts.takeChild(*repository, "root");
        entry.repositoryUUID = texts.takeChild(*repository, "uuid");
    }
    if (const auto info = record.firstChild("wc-info")) {
        takeWorkingCopy(*info, texts, entry);
    }
    takeConflicts(record, texts, entry);
    return entry;
}

std::string_view wordForReason(std::string_view reason) noexcept {
    return reason == "moved-away" ? "moved away" : reason == "moved-here" ? "moved here" : reason;
}

} // namespace

String descriptionOf(const InfoConflict& treeConflict) {
    // After an incoming deletion there is nothing that came in: the client tells of what it was.
    const bool isGone =
        treeConflict.incomingKind.isNil() || treeConflict.incomingKind.view() == "none";
    const std::string& incomingKind =
        isGone ? treeConflict.kind.str() : treeConflict.incomingKind.str();
    std::string text = "local " + treeConflict.kind.str() + " ";
    text += wordForReason(treeConflict.reason.view());
    text += ", incoming " + incomingKind + " " + treeConflict.action.str();
    text += treeConflict.action.view() == "delete" ? " or move upon " : " upon ";
    return text + treeConflict.operation.str();
}

struct InfoFactsReader::State {
    State()
        : reader({"entry"}, [this](const XMLElement& record, std::size_t) {
              TextTaker texts(facts.unreadable);
              facts.entries.push_back(entryIn(record, texts));
          }) {}

    InfoFacts facts;
    TolerantReportReader reader;
};

InfoFactsReader::InfoFactsReader() : state_(std::make_unique<State>()) {}
InfoFactsReader::InfoFactsReader(InfoFactsReader&&) noexcept = default;
InfoFactsReader& InfoFactsReader::operator=(InfoFactsReader&&) noexcept = default;
InfoFactsReader::~InfoFactsReader() = default;

void InfoFactsReader::take(std::string_view piece) {
    state_->reader.take(piece);
}

Error InfoFactsReader::finish() {
    return state_->reader.finish();
}

const InfoFacts& InfoFactsReader::facts() const noexcept {
    return state_->facts;
}

InfoFacts InfoFactsReader::takeFacts() {
    return std::exchange(state_->facts, {});
}

} // namespace quen
