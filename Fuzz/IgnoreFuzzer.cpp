#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/Trees.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string>

namespace quen::fuzz {

using namespace test;

namespace {

Request query(std::int32_t type, const String& name, bool isValid = true) {
    return {.type = type,
            .sourceTree = workingTree({.isValid = isValid}),
            .files = StringArray{"/w/" + name.str()},
            .options = {{QuenSourceControlRequestOptionIgnoreItem, "svn:ignore"}}};
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ';
}

/// The client's report of a list. What XML cannot hold becomes a blank.
std::string reportOf(std::string_view list) {
    std::string report = "<properties><target path=\"/w\"><property name=\"svn:ignore\">";
    for (const char c : list) {
        switch (c) {
        case '&': report += "&amp;"; break;
        case '<': report += "&lt;"; break;
        case '>': report += "&gt;"; break;
        case '\r': report += "&#13;"; break;
        case '\n':
        case '\t': report += c; break;
        default: report += isControl(c) ? ' ' : c;
        }
    }
    return report + "</property></target></properties>";
}

/// How a list is edited.
struct Edit {
    /// The class and the arguments of the run that follows the query; absent where none does.
    std::optional<StringArray> run;
    Error error;

    friend bool operator==(const Edit&, const Edit&) = default;
    friend void PrintTo(const Edit& edit, std::ostream* out) {
        PrintTo(
            Outcome{.result = {}, .error = edit.error, .runs = {edit.run.value_or(StringArray())}},
            out);
    }
};

Edit editOf(std::int32_t type, const String& name, std::string_view list) {
    const std::string report = reportOf(list);
    const auto operation = std::make_shared<SVNPropGetOperation>();
    operation->initWithRequest(query(type, name).make());
    const Outcome outcome = outcomeOf(operation, {{.output = report}});
    require(outcome.runs.size() <= 2 && outcome.result.isNothing(), "more than an edit");
    return {outcome.runs.size() == 2 ? std::optional(outcome.runs.back()) : std::nullopt,
            outcome.error};
}

/// The model knows ASCII alone, and leaves names that are closed for the client to the tests.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '@'; });
}

/// A write drops what is not a name.
bool isName(std::string_view line) {
    return std::any_of(line.begin(), line.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

bool isPlainName(std::string_view name) {
    return isPlain(name) && isName(name) && name.find('/') == std::string_view::npos &&
           std::none_of(name.begin(), name.end(), isControl);
}

std::vector<std::string> namesIn(std::string_view list) {
    std::vector<std::string> names;
    for (FuzzInput lines(list); !lines.rest().empty();) {
        std::string line(lines.line());
        // As reportOf writes it.
        std::replace_if(
            line.begin(), line.end(), [](char c) { return isControl(c) && c != '\t' && c != '\r'; },
            ' ');
        if (isName(line)) {
            names.push_back(line);
        }
    }
    return names;
}

Edit write(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : "\n") + name;
    }
    return {StringArray{"SVNPropSetOperation", "propset", "svn:ignore", list, "/w"}, {}};
}

const Edit none;
const Edit removal{StringArray{"SVNPropDelOperation", "propdel", "svn:ignore", "/w"}, {}};
const Edit notFound{std::nullopt, {QuenSourceControlErrorDomain, -11}};

Edit expectedEdit(std::int32_t type, const std::string& name, std::string_view list) {
    std::vector<std::string> names = namesIn(list);
    const std::size_t count = names.size();
    const bool wasFound = std::erase(names, name) > 0;
    if (type == RequestTypeIgnore) {
        if (count == 1 && wasFound) {
            return none;
        }
        names.insert(names.begin(), name);
        return write(names);
    }
    if (names.empty()) {
        return wasFound ? removal : none;
    }
    return wasFound ? write(names) : notFound;
}

/// What is ignored stays ignored when that is asked again, and can be taken out again.
void requireRoundTrip(const String& name, const Edit& ignored) {
    const String list = ignored.run ? ignored.run->at(3) : name;
    const bool isAlone = list == name;
    requireEqual(editOf(RequestTypeIgnore, name, list.view()), isAlone ? none : ignored,
                 "ignoring twice is not ignoring once");
    require(list.hasPrefix(name.view()), "the name does not stand in front");
    const std::string_view others = list.view().substr(isAlone ? list.length() : name.length() + 1);
    requireEqual(editOf(RequestTypeUnignore, name, list.view()),
                 isAlone ? removal : write({std::string(others)}), "ignoring cannot be undone");
}

void fuzzList(std::int32_t type, std::string_view name, std::string_view list) {
    const Edit edit = editOf(type, name, list);
    if (!isPlainName(name) || !isPlain(list)) {
        return;
    }
    requireEqual(edit, expectedEdit(type, std::string(name), list), "another edit");
    if (type == RequestTypeIgnore) {
        requireRoundTrip(name, edit);
    }
}

} // namespace

void run(FuzzInput input) {
    const std::string_view name = input.line();
    const ReportChoices choices = reportChoices(input);
    const std::int32_t type = (choices.options & 1) != 0 ? RequestTypeIgnore : RequestTypeUnignore;
    if ((choices.options & 2) != 0) {
        fuzzList(type, name, choices.run.output);
        return;
    }
    const Outcome outcome =
        agreedOutcome<SVNPropGetOperation>(choices, query(type, name, (choices.options & 4) == 0));
    require(outcome.result.isNothing(), "a property query has a result");
    require(outcome.runs.size() == 1 || !outcome.error, "an edit follows a query that failed");
}

} // namespace quen::fuzz
