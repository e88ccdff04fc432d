#include "Tools/Commands/Content/ListedEntries.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Times.h"

#include <array>
#include <cmath>

namespace quen::tools {

namespace {

std::string right(std::string text, std::size_t width) {
    return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

} // namespace

std::string sizeText(std::int64_t bytes) {
    constexpr std::array units{'k', 'M', 'G', 'T'};
    if (bytes < 1000) {
        return std::to_string(bytes);
    }
    auto size = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (size /= 1000; size >= 999.5 && unit + 1 < units.size(); ++unit) {
        size /= 1000;
    }
    const std::int64_t tenths = std::llround(size * 10);
    std::string text = std::to_string(tenths / 10);
    if (tenths < 100) {
        text.append(".").append(std::to_string(tenths % 10));
    }
    text.push_back(units[unit]);
    return text;
}

std::string nameOfEntry(const ListEntry& entry, const Palette& palette) {
    const std::string name = printable(entry.name.view());
    return entry.kind == "dir" ? palette.paint(Style::changed, name + "/") : name;
}

std::string detailedEntry(const ListEntry& entry, const Palette& palette, Date now) {
    const auto date = dateOf(entry.commit);
    const std::string revision =
        entry.commit.revision ? "r" + std::to_string(*entry.commit.revision) : "";
    std::string line = palette.paint(Style::warning, right(revision, 7));
    line.append("  ")
        .append(columnText(printable(entry.commit.author.view()), authorWidthIn(outputColumns())))
        .append("  ");
    line.append(palette.paint(Style::faint, columnText(date ? ageText(*date, now) : "", 14)));
    line.append("  ").append(right(entry.size ? sizeText(*entry.size) : "", 5)).append("  ");
    return line.append(nameOfEntry(entry, palette));
}

Dictionary entryRecord(const ListEntry& entry) {
    Dictionary record = Dictionary::empty();
    record.set("name", entry.name);
    record.set("kind", entry.kind);
    record.set("size", entry.size ? Value(*entry.size) : Value());
    record.set("revision", entry.commit.revision ? Value(*entry.commit.revision) : Value());
    record.set("author", entry.commit.author.isNil() ? Value() : Value(entry.commit.author));
    record.set("date", entry.commit.date.isNil() ? Value() : Value(entry.commit.date));
    return record;
}

Dictionary contractRecord(const ListEntry& entry) {
    Dictionary record = Dictionary::empty();
    record.set(QuenSourceControlOperationIsLeafKey, entry.kind != "dir");
    record.set(QuenSourceControlOperationNameKey, entry.name);
    for (const auto& member : entryRecord(entry)) {
        record.set(member.key, member.value);
    }
    return record;
}

} // namespace quen::tools
