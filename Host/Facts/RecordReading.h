#pragma once

#include "Foundation/XMLReport.h"
#include "Host/Facts/ForbiddenCharacters.h"
#include "Host/Facts/ReportFacts.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

// What the readers of facts share. Private to them.

/// A report that may hold forbidden characters, read record by record.
class TolerantReportReader {
public:
    TolerantReportReader(std::initializer_list<std::string_view> path,
                         XMLReportReader::RecordHandler handler,
                         XMLReportReader::ContainerHandler containerHandler = {})
        : reader_(path, std::move(handler), std::move(containerHandler)) {}

    void take(std::string_view piece);
    Error finish();

private:
    ForbiddenCharacters characters_;
    XMLReportReader reader_;
};

/// Takes the texts of one record, and notes those that XML cannot hold.
class TextTaker {
public:
    using Kind = UnreadableText::Kind;

    explicit TextTaker(std::vector<UnreadableText>& unreadable) : unreadable_(unreadable) {}

    /// The item that the texts to come belong to; noted itself where need be.
    String takePath(std::optional<std::string_view> text);
    /// nil for nullopt.
    String take(std::optional<std::string_view> text, Kind kind = Kind::other);
    /// The text of a child; nil where there is none.
    String takeChild(const XMLElement& element, std::string_view name, Kind kind = Kind::other);

    CommitFacts takeCommit(const XMLElement& parent);
    /// Null where the parent holds none.
    std::shared_ptr<const LockFacts> takeLock(const XMLElement& parent);

private:
    std::vector<UnreadableText>& unreadable_;
    String path_;
};

/// A number of the client's own; absent where the text is anything else.
std::optional<std::int64_t> numberIn(std::optional<std::string_view> text) noexcept;

} // namespace quen
