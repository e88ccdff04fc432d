#include "Tools/Commands/Content/NamedPlaces.h"

#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

#include <iostream>

namespace quen::tools {

Outcome<std::vector<ListEntry>> entriesOf(Session& session, const SourceTree& source,
                                          const std::vector<std::string>& urls) {
    std::vector<std::string> words = userOption(source);
    words.insert(words.end(), {"list", "--xml"});
    ListFactsReader reader;
    const int status = session.streamClient(words, urls, [&](std::string_view piece) {
        reader.take(piece);
        return true;
    });
    const Error broken = reader.finish();
    if (status != ExitSuccess) {
        return Explained{status};
    }
    if (broken) {
        session.tell(broken);
        return Explained{ExitFailure};
    }
    return reader.takeFacts().entries;
}

void printNamedPlaces(const std::vector<ListEntry>& places, const std::string& current,
                      const Palette& palette) {
    const Date now = currentDate();
    const std::size_t authorWidth = authorWidthIn(outputColumns());
    Table table;
    for (const ListEntry& place : places) {
        const auto date = dateOf(place.commit);
        const bool isCurrent = place.name == current;
        const std::string mark = current.empty() ? "" : isCurrent ? "* " : "  ";
        table.add({{mark + printable(place.name.view()), isCurrent ? Style::good : Style::plain},
                   {"r" + std::to_string(place.commit.revision.value_or(0)), Style::warning, true},
                   {startingText(printable(place.commit.author.view()), authorWidth)},
                   {date ? ageText(*date, now) : "", Style::faint}});
    }
    table.print(std::cout, palette);
}

} // namespace quen::tools
