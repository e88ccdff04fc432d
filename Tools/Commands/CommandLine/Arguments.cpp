#include "Tools/Commands/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace quen::tools {

namespace {

bool looksLikeList(const std::string& word) {
    return word.size() > 1 && word.front() == '[' && word.back() == ']';
}

bool takesSeveral(const CLI::App& command) {
    const auto options = command.get_options();
    return std::any_of(options.begin(), options.end(), [](const CLI::Option* option) {
        return option->get_positional() && option->get_allow_extra_args();
    });
}

bool takesValue(const CLI::App& command, const std::string& word) {
    const CLI::Option* const option =
        word.starts_with('-') ? command.get_option_no_throw(word) : nullptr;
    return option != nullptr && option->get_items_expected_max() > 0;
}

const CLI::App* subcommandNamed(const CLI::App& app, const std::string& name) {
    const auto matches = app.get_subcommands(
        [&](const CLI::App* subcommand) { return subcommand->get_name() == name; });
    return matches.empty() ? nullptr : matches.front();
}

} // namespace

std::vector<std::string> parserArguments(const CLI::App& app,
                                         const std::vector<std::string>& words) {
    const CLI::App* const command = words.empty() ? nullptr : subcommandNamed(app, words.front());
    const bool protectsLists = command != nullptr && takesSeveral(*command);
    std::vector<std::string> arguments;
    bool onlyNames = false;
    bool isValue = false;
    for (const std::string& word : words) {
        if (word == "--" && !onlyNames && !isValue) {
            onlyNames = true;
            continue;
        }
        const bool needsDirectory = (onlyNames && word.starts_with('-')) ||
                                    (protectsLists && !isValue && looksLikeList(word));
        arguments.push_back((needsDirectory ? "./" : "") + word);
        isValue = command != nullptr && !onlyNames && !isValue && takesValue(*command, word);
    }
    return arguments;
}

} // namespace quen::tools
