#include "Tools/Commands/Content/StatusViews.h"

#include "Host/Text.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Commands/Content/StatusRecords.h"
#include "Tools/Commands/Session/ShortNames.h"
#include "Tools/Console/JsonOutput.h"

#include <iostream>
#include <string_view>
#include <utility>

namespace quen::tools {

namespace {

/// Columns are as wide as the words that are usual: nobody waits for the longest one.
constexpr std::size_t hereWidth = std::string_view("unversioned").size();
constexpr std::size_t incomingWidth = std::string_view("Repository").size();

/// A word of a column with the blanks behind it.
std::string cell(const std::string& text, std::size_t width, const Palette& palette, Style style) {
    const std::size_t used = terminalWidth(text);
    return palette.paint(style, text) + std::string(width > used ? width - used : 0, ' ') + "  ";
}

/// Words, and a summary at the end.
class PeoplesView : public StatusView {
public:
    PeoplesView(const StatusFormat& format, const Palette& palette)
        : format_(format), palette_(palette) {}

    void show(const StatusEntry& entry, const std::string& reason) override {
        const StatusItem item = statusItem(entry, reason, format_.asksRepository);
        if (item.isIgnored && !format_.showsIgnored) {
            ++hidden_;
            return;
        }
        printHeadings(item);
        summary_.count(item);
        std::cout << cell(joinedWords(item.here), hereWidth, palette_, item.here.front().style);
        if (format_.asksRepository) {
            const bool isNew = !item.incoming.empty();
            std::cout << cell(isNew ? joinedWords(item.incoming) : "-", incomingWidth, palette_,
                              isNew ? item.incoming.front().style : Style::faint);
        }
        std::cout << item.described() << '\n';
    }

    void finish(bool isWhole) override {
        if (summary_.isEmpty() && !isWhole) {
            return;
        }
        std::cout << palette_.paint(Style::heading,
                                    summary_.isEmpty() ? "No changes" : summary_.text());
        if (hidden_ > 0) {
            std::cout << palette_.paint(Style::faint, " (" + std::to_string(hidden_) +
                                                          " ignored; --ignored shows them)");
        }
        std::cout << '\n';
    }

private:
    /// The client tells the members of each changelist together, last of all.
    void printHeadings(const StatusItem& item) {
        if (summary_.isEmpty() && format_.asksRepository) {
            std::cout << cell("Here", hereWidth, palette_, Style::heading)
                      << cell("Repository", incomingWidth, palette_, Style::heading)
                      << palette_.paint(Style::heading, "Path") << '\n';
        }
        if (item.changelist != changelist_) {
            std::cout << (summary_.isEmpty() ? "" : "\n")
                      << palette_.paint(Style::heading, item.changelist.empty()
                                                            ? "In no changelist:"
                                                            : "Changelist " + item.changelist + ":")
                      << '\n';
            changelist_ = item.changelist;
        }
    }

    const StatusFormat format_;
    const Palette palette_;
    StatusSummary summary_;
    std::size_t hidden_ = 0;
    std::string changelist_;
};

/// `M  greet.c`: the letters of the client for the item and its properties, a line each.
class ShortView : public StatusView {
public:
    ShortView(const StatusFormat& format, const Palette& palette)
        : format_(format), palette_(palette) {}

    void show(const StatusEntry& entry, const std::string& reason) override {
        const StatusItem item = statusItem(entry, reason, format_.asksRepository);
        if (item.isIgnored && !format_.showsIgnored) {
            return;
        }
        const std::string incoming = !format_.asksRepository ? ""
                                     : item.incoming.empty() ? "  "
                                                             : "* ";
        std::cout << palette_.paint(item.here.front().style, statusLetters(entry)) << ' '
                  << palette_.paint(Style::warning, incoming) << item.path << '\n';
    }

    void finish(bool /*isWhole*/) override {}

private:
    const StatusFormat format_;
    const Palette palette_;
};

/// One array of the contract's records, or one short record a line.
class ScriptsView : public StatusView {
public:
    explicit ScriptsView(bool isInLines) : isInLines_(isInLines) {}

    void show(const StatusEntry& entry, const std::string& reason) override {
        if (isInLines_) {
            std::cout << jsonText(shortStatusRecord(entry, reason)) << '\n';
            return;
        }
        std::cout << (std::exchange(isFirst_, false) ? "[" : ",")
                  << jsonText(withShortNames(statusRecord(entry, reason)));
    }

    void finish(bool /*isWhole*/) override {
        if (!isInLines_) {
            std::cout << (isFirst_ ? "[]\n" : "]\n");
        }
    }

private:
    const bool isInLines_;
    bool isFirst_ = true;
};

} // namespace

std::unique_ptr<StatusView> StatusView::make(const StatusFormat& format, const Palette& palette) {
    if (format.isInLines || format.isJson) {
        return std::make_unique<ScriptsView>(format.isInLines);
    }
    return format.isShort
               ? std::unique_ptr<StatusView>(std::make_unique<ShortView>(format, palette))
               : std::make_unique<PeoplesView>(format, palette);
}

} // namespace quen::tools
