#include "Tools/Commands/CommandLine/UsageProblem.h"

#include "Tools/Commands/CommandLine/CommandText.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Terminal/SafeText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quen::tools {

namespace {

/// What an option lacks, by what its value is called.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> valuesInWords{{
    {"REV", "a revision"},
    {"N", "a number"},
    {"FILE", "a file"},
    {"DIR", "a directory"},
    {"BRANCH", "a branch"},
    {"MESSAGE", "a message"},
}};

std::string inWords(const std::string& value) {
    const auto known = std::find_if(valuesInWords.begin(), valuesInWords.end(),
                                    [&](const auto& each) { return each.first == value; });
    return known == valuesInWords.end() ? "a value (" + value + ")" : std::string(known->second);
}

/// The two options in `--peg requires --revision`.
std::pair<std::string, std::string> around(const std::string& text, const std::string& word) {
    const std::size_t at = text.find(word);
    return at == std::string::npos ? std::pair(text, std::string())
                                   : std::pair(text.substr(0, at), text.substr(at + word.size()));
}

std::string missingValue(const std::string& text, const CLI::App& command) {
    const std::string name = text.substr(0, text.find(':'));
    const CLI::Option* const option = command.get_option_no_throw(name);
    return name + " needs " + (option == nullptr ? "a value" : inWords(valueNameOf(*option))) + ".";
}

std::string extraWords(const CLI::App& command) {
    const std::vector<std::string> extras = command.remaining();
    const auto option = std::find_if(extras.begin(), extras.end(), [](const std::string& word) {
        return word.size() > 1 && word.starts_with('-');
    });
    if (option != extras.end()) {
        return unknownOption(*option, command);
    }
    return "Too many arguments: \"" + printable(extras.empty() ? "" : extras.front()) + "\".";
}

} // namespace

std::string unknownOption(std::string_view word, const CLI::App& command) {
    const std::string name(word.substr(0, word.find('=')));
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& each : option->get_lnames()) {
            names.push_back("--" + each);
        }
    }
    const std::string meant = name.starts_with("--") ? nearestName(name, names) : "";
    return "Unknown option: " + printable(name) + "." +
           (meant.empty() ? "" : " Did you mean " + meant + "?");
}

std::string usageProblem(const CLI::ParseError& error, const CLI::App& command) {
    const std::string text = error.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        return extraWords(command);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return missingValue(text, command);
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        return around(text, " is required").first + " is missing.";
    }
    if (dynamic_cast<const CLI::RequiresError*>(&error) != nullptr) {
        const auto [one, other] = around(text, " requires ");
        return one + " can only be used with " + other + ".";
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        const auto [one, other] = around(text, " excludes ");
        return one + " and " + other + " cannot be used together.";
    }
    if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
        const auto [name, value] =
            around(text.substr(std::min(text.find(": ") + 2, text.size())), " = ");
        return name + ": \"" + printable(value) + "\" is not a number.";
    }
    // The parser puts the option's name in front of what a check says.
    const std::size_t end = text.starts_with('-') ? text.find(": ") : std::string::npos;
    return printable(end == std::string::npos ? text : text.substr(end + 2));
}

} // namespace quen::tools
