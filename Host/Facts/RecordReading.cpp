#include "Host/Facts/RecordReading.h"

#include "Foundation/Number.h"

namespace quen {

void TolerantReportReader::take(std::string_view piece) {
    reader_.read(characters_.replaceIn(piece));
}

Error TolerantReportReader::finish() {
    reader_.read(characters_.rest());
    return reader_.finish();
}

String TextTaker::takePath(std::optional<std::string_view> text) {
    path_ = text ? String(ForbiddenCharacters::restored(*text)) : String();
    return take(text, Kind::path);
}

String TextTaker::take(std::optional<std::string_view> text, Kind kind) {
    if (!text) {
        return {};
    }
    if (!ForbiddenCharacters::areReplacedIn(*text)) {
        return ForbiddenCharacters::restored(*text);
    }
    String original = ForbiddenCharacters::restored(*text);
    unreadable_.push_back({kind, path_, original});
    return original;
}

String TextTaker::takeChild(const XMLElement& element, std::string_view name, Kind kind) {
    const auto child = element.firstChild(name);
    return child ? take(child->text(), kind) : String();
}

CommitFacts TextTaker::takeCommit(const XMLElement& parent) {
    const auto commit = parent.firstChild("commit");
    if (!commit) {
        return {};
    }
    return {numberIn(commit->attribute("revision")), takeChild(*commit, "author", Kind::author),
            takeChild(*commit, "date")};
}

std::shared_ptr<const LockFacts> TextTaker::takeLock(const XMLElement& parent) {
    const auto lock = parent.firstChild("lock");
    if (!lock) {
        return nullptr;
    }
    LockFacts facts;
    facts.token = takeChild(*lock, "token");
    facts.owner = takeChild(*lock, "owner");
    facts.comment = takeChild(*lock, "comment");
    facts.created = takeChild(*lock, "created");
    facts.expires = takeChild(*lock, "expires");
    return std::make_shared<const LockFacts>(std::move(facts));
}

std::optional<std::int64_t> numberIn(std::optional<std::string_view> text) noexcept {
    const auto number = text ? numberFrom(*text) : std::nullopt;
    return number >= 0 ? number : std::nullopt;
}

} // namespace quen
