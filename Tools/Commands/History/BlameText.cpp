#include "Tools/Commands/History/BlameText.h"

#include "Foundation/Lines.h"
#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>

namespace quen::tools {

namespace {

/// What is printed at once.
constexpr std::size_t pieceSize = 64 * 1024;

/// The younger, the more striking.
Style styleForAge(Date date, Date now) {
    if (now - date < std::chrono::weeks(1)) {
        return Style::good;
    }
    if (now - date < std::chrono::months(3)) {
        return Style::warning;
    }
    return now - date < std::chrono::years(1) ? Style::changed : Style::faint;
}

std::string padding(const std::string& text, std::size_t width) {
    const std::size_t used = terminalWidth(text);
    return std::string(width > used ? width - used : 0, ' ');
}

/// What stands in front of the lines of each revision.
class Margins {
public:
    Margins(const BlameLines& lines, const BlameFormat& format, const Palette& palette)
        : format_(format), palette_(palette), now_(currentDate()) {
        std::optional<Key> last;
        for (std::size_t i = 0; i < lines.count(); ++i) {
            const Key key{lines.numbers()[i], lines.staysIgnored(i)};
            if (key != last && !margins_.contains(key)) {
                add(key, lines.commitOf(i));
            }
            last = key;
        }
        for (auto& [key, margin] : margins_) {
            margin.text = textOf(margin);
        }
    }

    const std::string& of(std::int64_t revision, bool isMarked) const {
        return margins_.at({revision, isMarked}).text;
    }

private:
    /// A revision, and whether it is marked.
    using Key = std::pair<std::int64_t, bool>;

    struct Margin {
        std::string revision;
        std::string author;
        std::string age;
        std::optional<Date> date;
        std::string text;
    };

    void add(const Key& key, const CommitFacts& commit) {
        const auto& [revision, isMarked] = key;
        Margin margin;
        margin.revision =
            (revision == noRevision ? "-" : "r" + std::to_string(revision)) + (isMarked ? "*" : "");
        margin.author = revision != noRevision ? startingText(printable(commit.author.view()),
                                                              authorWidthIn(outputColumns()))
                        // Of a range it is older; else it is a change of today.
                        : format_.isRange ? "(earlier)"
                                          : "(not committed)";
        margin.date = dateOf(commit);
        margin.age = margin.date ? ageText(*margin.date, now_) : "";
        widest_.revision = std::max(widest_.revision, margin.revision.size());
        widest_.author = std::max(widest_.author, terminalWidth(margin.author));
        widest_.age = std::max(widest_.age, margin.age.size());
        margins_.emplace(key, std::move(margin));
    }

    std::string textOf(const Margin& margin) const {
        const Style style = margin.date ? styleForAge(*margin.date, now_) : Style::bad;
        std::string text = padding(margin.revision, widest_.revision);
        text.append(palette_.paint(Style::warning, margin.revision)).append("  ");
        text.append(margin.author).append(padding(margin.author, widest_.author)).append("  ");
        return text.append(palette_.paint(style, margin.age))
            .append(padding(margin.age, widest_.age))
            .append("  ");
    }

    struct {
        std::size_t revision = 0;
        std::size_t author = 0;
        std::size_t age = 0;
    } widest_;
    const BlameFormat& format_;
    const Palette& palette_;
    const Date now_;
    std::map<Key, Margin> margins_;
};

/// Takes the next line, without its end.
std::string_view nextLine(std::string_view& text) {
    std::string_view line = takeLine(text);
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    return line;
}

Value orNull(const String& text) {
    return text.isNil() ? Value() : Value(text);
}

} // namespace

void printBlame(const BlameLines& lines, std::string_view text, const BlameFormat& format,
                const Palette& palette) {
    const Margins margins(lines, format, palette);
    const std::size_t numberWidth = std::to_string(lines.count()).size();
    PagedOutput output;
    std::string piece;
    for (std::size_t i = 0; i < lines.count(); ++i) {
        const std::string number = std::to_string(i + 1);
        const std::string line = printableLine(nextLine(text));
        piece.append(margins.of(lines.numbers()[i], lines.staysIgnored(i)));
        piece.append(padding(number, numberWidth)).append(palette.paint(Style::faint, number));
        piece.append(line.empty() ? "" : "  ").append(line).append("\n");
        if (piece.size() > pieceSize && !output.write(std::exchange(piece, {}))) {
            return;
        }
    }
    output.write(piece);
}

void printBlameInLines(const BlameLines& lines, std::string_view text) {
    for (std::size_t i = 0; i < lines.count() && std::cout; ++i) {
        const CommitFacts& commit = lines.commitOf(i);
        Dictionary record = Dictionary::empty();
        record.set("line", static_cast<std::int64_t>(i + 1));
        record.set("revision", commit.revision ? Value(*commit.revision) : Value());
        record.set("author", orNull(commit.author));
        record.set("date", orNull(commit.date));
        record.set("text", String(nextLine(text)));
        if (const auto ignored = lines.ignoredAt(i)) {
            record.set("ignoredRevision", *ignored);
        }
        std::cout << jsonText(record) << '\n';
    }
}

Value blameRecords(const BlameLines& lines) {
    Array records;
    for (std::size_t i = 0; i < lines.count(); ++i) {
        const CommitFacts& commit = lines.commitOf(i);
        Dictionary record = Dictionary::empty();
        record.set(QuenSourceControlOperationLineNumberKey, String(std::to_string(i + 1)));
        if (commit.revision) {
            record.set(QuenSourceControlOperationRevisionKey,
                       String(std::to_string(*commit.revision)));
        }
        if (!commit.author.isNil()) {
            record.set(QuenSourceControlOperationAuthorKey, commit.author);
        }
        if (const auto date = dateOf(commit)) {
            record.set(QuenSourceControlOperationDateKey, *date);
        }
        if (const auto ignored = lines.ignoredAt(i)) {
            record.set("ignoredRevision", *ignored);
        }
        records.append(std::move(record));
    }
    return records;
}

} // namespace quen::tools
