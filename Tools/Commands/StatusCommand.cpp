#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Terminal/StatusWords.h"
#include "Tools/Terminal/Table.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    bool asksRepository = false;
    bool showsIgnored = false;
    std::vector<std::string> paths{"."};
};

/// One record of the result, as people read it.
struct Item {
    std::uint32_t workingCopy = 0;
    std::uint32_t repository = 0;
    std::string path;

    bool isIgnored() const {
        return workingCopy == QuenSourceControlStatusIgnored &&
               repository == QuenSourceControlStatusNone;
    }
};

std::uint32_t statusIn(const Dictionary& record, const String& key) {
    const std::int64_t* const status = record[key].integer();
    return status == nullptr ? 0 : static_cast<std::uint32_t>(*status);
}

std::vector<Item> itemsOf(const Array& records) {
    std::vector<Item> items;
    for (const Value& value : records) {
        const Dictionary& record = *value.dictionary();
        items.push_back({statusIn(record, QuenSourceControlOperationWCStatusKey),
                         statusIn(record, QuenSourceControlOperationRepositoryStatusKey),
                         record[QuenSourceControlOperationPathKey].stringValue().str()});
    }
    return items;
}

/// The words of one status in one cell, in the colour of the gravest.
Table::Cell statusCell(std::uint32_t status, const std::string& whenNone) {
    const std::vector<StatusWord> words = wordsForStatus(status);
    if (words.empty()) {
        return {whenNone, Style::faint};
    }
    Table::Cell cell{words.front().text, words.front().style};
    for (std::size_t i = 1; i < words.size(); ++i) {
        cell.text += ", " + words[i].text;
    }
    return cell;
}

/// How many items each word stands beside, in the order of first appearance.
class Summary {
public:
    void count(const Item& item) {
        ++items_;
        for (const StatusWord& word : wordsForStatus(item.workingCopy)) {
            add(word.text);
        }
        if (item.repository != QuenSourceControlStatusNone) {
            add("changed in the repository");
        }
    }

    std::string text() const {
        std::string text = std::to_string(items_) + (items_ == 1 ? " item" : " items");
        for (const auto& [word, count] : counts_) {
            text += (&word == &counts_.front().first ? ": " : ", ") + std::to_string(count) + " " +
                    word;
        }
        return text;
    }
    bool isEmpty() const { return items_ == 0; }

private:
    void add(const std::string& word) {
        const auto known = std::find_if(counts_.begin(), counts_.end(),
                                        [&](const auto& count) { return count.first == word; });
        if (known == counts_.end()) {
            counts_.emplace_back(word, 1);
        } else {
            ++known->second;
        }
    }

    std::size_t items_ = 0;
    std::vector<std::pair<std::string, std::size_t>> counts_;
};

void printForPeople(const Array& records, const Options& options) {
    const Palette palette = options.common.palette();
    Table table;
    if (options.asksRepository) {
        table.add(
            {{"Here", Style::heading}, {"Repository", Style::heading}, {"Path", Style::heading}});
    }
    Summary summary;
    std::size_t hidden = 0;
    for (const Item& item : itemsOf(records)) {
        if (item.isIgnored() && !options.showsIgnored) {
            ++hidden;
            continue;
        }
        summary.count(item);
        Table::Row row{statusCell(item.workingCopy, "unchanged")};
        if (options.asksRepository) {
            row.push_back(statusCell(item.repository, "-"));
        }
        row.push_back({printable(item.path)});
        table.add(std::move(row));
    }
    if (!summary.isEmpty()) {
        table.print(std::cout, palette);
    }
    std::cout << palette.paint(Style::heading, summary.isEmpty() ? "No changes" : summary.text());
    if (hidden > 0) {
        std::cout << palette.paint(Style::faint, " (" + std::to_string(hidden) +
                                                     " ignored; --ignored shows them)");
    }
    std::cout << '\n';
}

int runStatusCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto operation = session.perform(
        makeRequest(options.asksRepository ? RequestTypeRemoteStatus : RequestTypeStatus, *source,
                    clientPaths(options.paths)));
    return showRecords(session, operation,
                       [&](const Array& records) { printForPeople(records, options); });
}

} // namespace

void addStatusCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("status", "Show local changes");
    command.flag("-u,--show-updates", options->asksRepository,
                 "Also show what others have committed since");
    command.flag("--ignored", options->showsIgnored, "Also show ignored items");
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runStatusCommand);
}

} // namespace quen::tools
