#include "Tools/Commands/History/HistoryFormat.h"

#include "Foundation/Lines.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/StatusWords.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <sstream>

namespace quen::tools {

namespace {

constexpr std::size_t revisionWidth = 6;
/// With less room than this the message alone is shown.
constexpr std::size_t leastForAuthor = 60;

std::uint32_t statusOf(char action) {
    switch (action) {
    case 'A': return QuenSourceControlStatusAdded;
    case 'D': return QuenSourceControlStatusDeleted;
    case 'R': return QuenSourceControlStatusReplaced;
    default: return QuenSourceControlStatusModified | QuenSourceControlStatusPropertiesModified;
    }
}

std::string revisionText(const CommitFacts& commit) {
    return "r" + (commit.revision ? std::to_string(*commit.revision) : std::string("?"));
}

std::string authorText(const CommitFacts& commit) {
    return commit.author.isEmpty() ? "(no author)" : printable(commit.author.view());
}

std::string origin(const HistoryPath& path) {
    if (path.copiedFrom.isNil()) {
        return {};
    }
    return " (from " + printable(path.copiedFrom.view()) +
           (path.copiedFromRevision ? "@" + std::to_string(*path.copiedFromRevision) : "") + ")";
}

std::string pathsText(const std::vector<HistoryPath>& paths, const Palette& palette) {
    Table table;
    for (const HistoryPath& path : paths) {
        const auto words = wordsForStatus(statusOf(path.action));
        const StatusWord word = words.empty() ? StatusWord{"changed"} : words.front();
        table.add({{"  "},
                   {word.text, word.style},
                   {printable(path.path.view()) + palette.paint(Style::faint, origin(path))}});
    }
    std::ostringstream out;
    table.print(out, palette);
    return out.str();
}

/// With this room and more, longer names of authors are shown.
constexpr std::size_t wideOutput = 120;

} // namespace

std::size_t authorWidthIn(std::size_t width) noexcept {
    return width < wideOutput ? 10 : 20;
}

std::string commitLine(const CommitFacts& commit, const Palette& palette, Date now) {
    std::string line = palette.paint(Style::warning, revisionText(commit));
    line += "  " + palette.paint(Style::heading, authorText(commit));
    if (const auto date = dateOf(commit)) {
        line += "  " + ageText(*date, now) +
                palette.paint(Style::faint, " (" + localDateText(*date) + ")");
    }
    return line;
}

std::string fullText(const HistoryEntry& entry, const Palette& palette, Date now) {
    std::string text = commitLine(entry.commit, palette, now) + "\n";
    text += entry.message.isEmpty() ? "" : "\n";
    for (const std::string_view line : linesOf(entry.message.view())) {
        text.append(line.empty() ? "" : "    ").append(printableLine(line)).append("\n");
    }
    if (!entry.paths.empty()) {
        text.append("\n").append(pathsText(entry.paths, palette));
    }
    return text;
}

std::string oneLine(const HistoryEntry& entry, const Palette& palette, std::size_t width) {
    const auto date = dateOf(entry.commit);
    std::string revision = revisionText(entry.commit);
    revision.resize(std::max(revision.size(), revisionWidth), ' ');
    const std::string day = date ? localDateText(*date).substr(0, 10) : std::string(10, ' ');
    const std::string author = columnText(
        entry.commit.author.isEmpty() ? "-" : authorText(entry.commit), authorWidthIn(width));
    const auto lines = linesOf(entry.message.view());
    std::string message = lines.empty() ? "" : printable(lines.front());
    const bool showsAuthor = width == 0 || width >= leastForAuthor;
    const std::size_t used =
        revision.size() + day.size() + 4 + (showsAuthor ? authorWidthIn(width) + 2 : 0);
    if (width > 0) {
        message = startingText(message, width > used ? width - used : 1);
    }
    std::string line = palette.paint(Style::warning, revision);
    line.append("  ").append(palette.paint(Style::faint, day)).append("  ");
    if (showsAuthor) {
        line.append(palette.paint(Style::heading, author)).append("  ");
    }
    return line.append(message).append("\n");
}

Dictionary contractRecord(const HistoryEntry& entry, bool hasPaths) {
    Dictionary record = Dictionary::withCapacity(10);
    if (entry.commit.revision) {
        record.set(QuenSourceControlOperationRevisionKey,
                   String(std::to_string(*entry.commit.revision)));
    }
    if (!entry.commit.author.isNil()) {
        record.set(QuenSourceControlOperationAuthorKey, entry.commit.author);
    }
    if (const auto date = dateOf(entry.commit)) {
        record.set(QuenSourceControlOperationDateKey, *date);
    }
    if (!entry.paths.empty()) {
        Dictionary files = Dictionary::empty();
        for (const HistoryPath& path : entry.paths) {
            files.set(path.path, statusOf(path.action));
        }
        record.set(QuenSourceControlOperationFilesKey, std::move(files));
    }
    if (!entry.message.isNil()) {
        record.set(QuenSourceControlOperationMessageKey, entry.message);
    }
    for (const auto& member : shortRecord(entry, hasPaths)) {
        record.set(member.key, member.value);
    }
    return record;
}

Dictionary shortRecord(const HistoryEntry& entry, bool hasPaths) {
    Dictionary record = Dictionary::empty();
    record.set("revision", entry.commit.revision ? Value(*entry.commit.revision) : Value());
    record.set("author", entry.commit.author.isNil() ? Value() : Value(entry.commit.author));
    record.set("date", entry.commit.date.isNil() ? Value() : Value(entry.commit.date));
    record.set("message", entry.message.isNil() ? Value(String("")) : Value(entry.message));
    if (!hasPaths) {
        return record;
    }
    Array paths = Array::empty();
    for (const HistoryPath& path : entry.paths) {
        Dictionary item = Dictionary::empty();
        item.set("path", path.path);
        item.set("action", String(std::string(1, path.action)));
        if (!path.copiedFrom.isNil()) {
            item.set("copiedFrom", path.copiedFrom);
            item.set("copiedFromRevision",
                     path.copiedFromRevision ? Value(*path.copiedFromRevision) : Value());
        }
        paths.append(std::move(item));
    }
    record.set("paths", std::move(paths));
    return record;
}

} // namespace quen::tools
