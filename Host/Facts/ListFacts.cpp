#include "Host/Facts/ListFacts.h"

#include "Host/Facts/RecordReading.h"

#include <utility>

namespace quen {

struct ListFactsReader::State {
    State()
        : reader(
              {"list", "entry"},
              [this](const XMLElement& record, std::size_t) { takeRecord(record); },
              [this](const XMLElement& container, std::size_t) {
                  location = TextTaker(facts.unreadable).take(container.attribute("path"));
              }) {}

    void takeRecord(const XMLElement& record) {
        TextTaker texts(facts.unreadable);
        ListEntry entry;
        const auto name = record.firstChild("name");
        entry.location = location;
        entry.name = texts.takePath(name ? std::optional(name->text()) : std::nullopt);
        entry.kind = texts.take(record.attribute("kind"));
        if (const auto size = record.firstChild("size")) {
            entry.size = numberIn(size->text());
        }
        entry.commit = texts.takeCommit(record);
        entry.lock = texts.takeLock(record);
        facts.entries.push_back(std::move(entry));
    }

    ListFacts facts;
    String location;
    TolerantReportReader reader;
};

ListFactsReader::ListFactsReader() : state_(std::make_unique<State>()) {}
ListFactsReader::ListFactsReader(ListFactsReader&&) noexcept = default;
ListFactsReader& ListFactsReader::operator=(ListFactsReader&&) noexcept = default;
ListFactsReader::~ListFactsReader() = default;

void ListFactsReader::take(std::string_view piece) {
    state_->reader.take(piece);
}

Error ListFactsReader::finish() {
    return state_->reader.finish();
}

const ListFacts& ListFactsReader::facts() const noexcept {
    return state_->facts;
}

ListFacts ListFactsReader::takeFacts() {
    return std::exchange(state_->facts, {});
}

} // namespace quen
