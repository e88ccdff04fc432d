#include "Host/Facts/HistoryFacts.h"

#include "Host/Facts/RecordReading.h"

#include <utility>

namespace quen {

namespace {

HistoryPath changedPath(const XMLElement& element, TextTaker& texts) {
    HistoryPath path;
    path.path = texts.takePath(element.text());
    const auto action = element.attribute("action");
    path.action = action && !action->empty() ? action->front() : 'M';
    path.kind = texts.take(element.attribute("kind"));
    path.copiedFrom = texts.take(element.attribute("copyfrom-path"));
    path.copiedFromRevision = numberIn(element.attribute("copyfrom-rev"));
    return path;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as merges of merges
HistoryEntry historyEntry(const XMLElement& element) {
    std::vector<UnreadableText> unreadable;
    TextTaker texts(unreadable);
    HistoryEntry entry;
    entry.commit = {numberIn(element.attribute("revision")), texts.takeChild(element, "author"),
                    texts.takeChild(element, "date")};
    entry.message = texts.takeChild(element, "msg");
    if (const auto paths = element.firstChild("paths")) {
        for (const XMLElement path : paths->children("path")) {
            entry.paths.push_back(changedPath(path, texts));
        }
    }
    for (const XMLElement merged : element.children("logentry")) {
        entry.merged.push_back(historyEntry(merged));
    }
    return entry;
}

} // namespace

struct HistoryReader::State {
    explicit State(Taker take)
        : reader({"logentry"}, [take = std::move(take)](const XMLElement& element, std::size_t) {
              take(historyEntry(element));
          }) {}

    TolerantReportReader reader;
};

HistoryReader::HistoryReader(Taker take) : state_(std::make_unique<State>(std::move(take))) {}
HistoryReader::~HistoryReader() = default;

void HistoryReader::take(std::string_view piece) {
    state_->reader.take(piece);
}

Error HistoryReader::finish() {
    return state_->reader.finish();
}

struct BlameReader::State {
    explicit State(Taker take)
        : reader({"target", "entry"},
                 [take = std::move(take)](const XMLElement& element, std::size_t) {
                     std::vector<UnreadableText> unreadable;
                     take(TextTaker(unreadable).takeCommit(element));
                 }) {}

    TolerantReportReader reader;
};

BlameReader::BlameReader(Taker take) : state_(std::make_unique<State>(std::move(take))) {}
BlameReader::~BlameReader() = default;

void BlameReader::take(std::string_view piece) {
    state_->reader.take(piece);
}

Error BlameReader::finish() {
    return state_->reader.finish();
}

} // namespace quen
