#include "Tools/Commands/History/GraphViews.h"

#include "Foundation/Lines.h"
#include "Host/Text.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace quen::tools {

namespace {

/// With less room than this, who and when are left out of a line.
constexpr std::size_t leastForAuthor = 50;
constexpr std::size_t leastRoom = 20;
constexpr std::size_t anyWidth = std::numeric_limits<std::size_t>::max();

std::string revisionOf(const GraphNode& node) {
    return "r" + std::to_string(node.revision);
}

std::string branchText(const GraphNode& node, const ProjectLayout& layout) {
    return node.branch.empty() ? "" : "(" + printable(layout.nameOf(node.branch)) + ")";
}

std::string authorOf(const GraphNode& node) {
    return node.entry.commit.author.isEmpty() ? "-" : printable(node.entry.commit.author.view());
}

/// At most half of the output is for the graph.
std::size_t mostGraphCells(std::size_t width) {
    return width == 0 ? anyWidth : std::max<std::size_t>(width / 2, 4);
}

void appendLine(std::string& text, const GraphRow& row, std::size_t width,
                const std::string& line) {
    std::string whole = row.text;
    whole.append(line.empty() ? 0 : width - row.cells, ' ').append(line);
    whole.erase(whole.find_last_not_of(' ') + 1);
    text.append(whole).append("\n");
}

} // namespace

GraphText::GraphText(const ProjectLayout& layout, const Palette& palette, const Marks& marks,
                     const GraphFormat& format, Date now)
    : layout_(layout), palette_(palette), format_(format), now_(now),
      graph_(marks, palette, mostGraphCells(format.width)) {}

std::string GraphText::oneLineOf(const GraphNode& node, std::size_t room) const {
    const auto date = dateOf(node.entry.commit);
    const auto messageLines = quen::linesOf(node.entry.message.view());
    const std::string revision = revisionOf(node);
    const std::string branch =
        startingText(branchText(node, layout_), std::max(room / 3, leastRoom));
    const std::string author =
        startingText(authorOf(node), authorWidthIn(format_.width == 0 ? 0 : room));
    const std::string age = date ? ageText(*date, now_) : "";
    std::string message = messageLines.empty() ? "" : printable(messageLines.front());
    std::string line = palette_.paint(Style::warning, revision);
    std::string plain = revision;
    const auto add = [&](Style style, const std::string& text) {
        if (!text.empty()) {
            line.append("  ").append(palette_.paint(style, text));
            plain.append("  ").append(text);
        }
    };
    add(Style::good, branch);
    if (room >= leastForAuthor) {
        add(Style::heading, author);
        add(Style::faint, age);
    }
    const std::size_t used = terminalWidth(plain) + 2;
    if (room != anyWidth) {
        message = startingText(message, room > used ? room - used : 1);
    }
    return message.empty() ? line : line.append("  ").append(message);
}

/// The first one says who and when.
std::vector<std::string> GraphText::linesOf(const GraphNode& node, std::size_t room) const {
    const auto date = dateOf(node.entry.commit);
    std::string head = palette_.paint(Style::warning, revisionOf(node));
    for (const auto& [style, text] : {std::pair{Style::good, branchText(node, layout_)},
                                      {Style::heading, authorOf(node)},
                                      {Style::plain, date ? ageText(*date, now_) : ""}}) {
        head.append(text.empty() ? "" : "  ").append(palette_.paint(style, text));
    }
    std::vector<std::string> lines{head};
    if (format_.isQuiet) {
        return lines;
    }
    std::istringstream body(fullText(node.entry, palette_, now_));
    std::string line;
    std::getline(body, line); // says the same as the head
    while (std::getline(body, line)) {
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        std::istringstream parts(room == anyWidth || line.find('\x1b') != std::string::npos
                                     ? line
                                     : std::string(indent, ' ') +
                                           wrappedText(line.substr(indent), indent, room));
        for (std::string part; std::getline(parts, part);) {
            lines.push_back(part);
        }
        if (line.empty()) {
            lines.emplace_back();
        }
    }
    lines.emplace_back();
    return lines;
}

std::string GraphText::add(const GraphNode& node, bool isShown, const BranchGraph::NextOn& nextOn) {
    const GraphRows rows = graph_.add(node, isShown, nextOn);
    const std::size_t width = rows.width();
    const std::size_t room =
        format_.width == 0 ? anyWidth
                           : std::max(format_.width > width ? format_.width - width : 0, leastRoom);
    std::vector<std::string> lines;
    if (isShown) {
        lines = format_.isOneLine ? std::vector{oneLineOf(node, room)} : linesOf(node, room);
    }
    std::string text;
    for (const GraphRow& row : rows.before) {
        appendLine(text, row, row.cells, "");
    }
    std::size_t next = 0;
    const auto nextLine = [&] { return next < lines.size() ? lines[next++] : std::string(); };
    if (rows.node) {
        appendLine(text, *rows.node, width, nextLine());
    }
    for (const GraphRow& row : rows.after) {
        appendLine(text, row, width, nextLine());
    }
    while (next < lines.size()) {
        appendLine(text, rows.margin, width, nextLine());
    }
    return text;
}

void addGraphMembers(Dictionary& record, const GraphNode& node, const ProjectLayout& layout) {
    record.set("branch", node.branch.empty() ? Value() : Value(String(layout.nameOf(node.branch))));
    Array parents = Array::empty();
    for (const GraphParent& parent : node.parents) {
        if (parent.revision) {
            parents.append(*parent.revision);
        }
    }
    record.set("parents", std::move(parents));
}

} // namespace quen::tools
