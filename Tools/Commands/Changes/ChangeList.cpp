#include "Tools/Commands/Changes/ChangeList.h"

#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/StatusWords.h"
#include "Tools/Terminal/Table.h"

#include <sstream>

namespace quen::tools {

namespace {

std::string wordsOf(std::uint32_t status) {
    std::string text;
    for (const StatusWord& word : wordsForStatus(status)) {
        text += (text.empty() ? "" : ", ") + word.text;
    }
    return text;
}

Table tableOf(const Value& result, std::uint32_t flags) {
    Table table;
    const Array records = result.array() == nullptr ? Array() : *result.array();
    for (const Value& value : records) {
        const Dictionary& record = *value.dictionary();
        const std::int64_t* const status = record[QuenSourceControlOperationWCStatusKey].integer();
        const auto bits = status == nullptr ? 0U : static_cast<std::uint32_t>(*status);
        if ((bits & flags) != 0) {
            table.add({{wordsOf(bits)}, {shownText(record, QuenSourceControlOperationPathKey)}});
        }
    }
    return table;
}

} // namespace

Outcome<std::vector<std::string>> linesOfChanges(Session& session, const SourceTree& source,
                                                 const std::vector<std::string>& paths,
                                                 std::uint32_t flags) {
    const auto operation =
        session.query(makeRequest(RequestTypeStatus, source, clientPaths(paths)));
    if (!operation) {
        return operation.explained();
    }
    std::ostringstream text;
    tableOf((*operation)->result(), flags).print(text, Palette(Palette::Use::never));
    std::vector<std::string> lines;
    const std::string whole = text.str();
    for (const std::string_view line : linesOf(whole)) {
        lines.emplace_back(line);
    }
    return lines;
}

} // namespace quen::tools
