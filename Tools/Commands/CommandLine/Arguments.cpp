#include "Tools/Commands/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>

namespace quen::tools {

namespace {

bool looksLikeList(const std::string& word) {
    return word.size() > 1 && word.front() == '[' && word.back() == ']';
}

/// `-2`, `-444`.
bool isNumberWithDash(const std::string& word) {
    return word.size() > 1 && word.front() == '-' &&
           std::all_of(word.begin() + 1, word.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0; });
}

bool takesSeveral(const CLI::App& command) {
    const auto options = command.get_options();
    return std::any_of(options.begin(), options.end(), [](const CLI::Option* option) {
        return option->get_positional() && option->get_allow_extra_args();
    });
}

const CLI::App* subcommandNamed(const CLI::App& app, const std::string& name) {
    const auto matches = app.get_subcommands(
        [&](const CLI::App* subcommand) { return subcommand->get_name() == name; });
    return matches.empty() ? nullptr : matches.front();
}

/// Goes through the words once.
class Preparation {
public:
    explicit Preparation(const CLI::App& app) : app_(app) {}

    ParserArguments made(const std::vector<std::string>& words) {
        for (const std::string& word : words) {
            take(word);
        }
        if (valueOf_ != nullptr) {
            prepared_.words.push_back(optionWord_);
        }
        return std::move(prepared_);
    }

private:
    void take(const std::string& word) {
        if (valueOf_ != nullptr) {
            takeValue(word);
        } else if (onlyNames_) {
            const bool isProtected = word.starts_with('-') || (takesLists() && looksLikeList(word));
            prepared_.words.push_back((isProtected ? "./" : "") + word);
        } else if (word == "--") {
            onlyNames_ = true;
        } else if (word.starts_with('-')) {
            takeOption(word);
        } else {
            takeName(word);
        }
    }

    /// With an equals sign no parser can take it for anything else.
    void takeValue(const std::string& word) {
        const auto names = valueOf_->get_lnames();
        if (names.empty() || word.empty()) {
            prepared_.words.insert(prepared_.words.end(), {optionWord_, word});
        } else {
            prepared_.words.push_back("--" + names.front() + "=" + word);
        }
        valueOf_ = nullptr;
    }

    void takeOption(const std::string& word) {
        const CLI::Option* const option =
            command_ == nullptr ? nullptr : command_->get_option_no_throw(word);
        if (option != nullptr && option->get_items_expected_max() > 0) {
            valueOf_ = option;
            optionWord_ = word;
        } else if (command_ != nullptr && isNumberWithDash(word)) {
            takeNumber(word);
        } else {
            prepared_.words.push_back(word);
        }
    }

    void takeNumber(const std::string& word) {
        if (command_->get_option_no_throw("--limit") != nullptr) {
            prepared_.words.push_back("--limit=" + word.substr(1));
        } else if (prepared_.unknownOption.empty()) {
            prepared_.unknownOption = word;
        }
    }

    void takeName(const std::string& word) {
        const CLI::App* const next = subcommandNamed(command_ == nullptr ? app_ : *command_, word);
        const bool isCommand = next != nullptr && !hasNames_;
        if (isCommand) {
            command_ = next;
        }
        const bool needsDirectory = !isCommand && takesLists() && looksLikeList(word);
        hasNames_ = hasNames_ || !isCommand;
        prepared_.words.push_back((needsDirectory ? "./" : "") + word);
    }

    bool takesLists() const { return command_ != nullptr && takesSeveral(*command_); }

    const CLI::App& app_;
    const CLI::App* command_ = nullptr;
    const CLI::Option* valueOf_ = nullptr;
    std::string optionWord_;
    bool onlyNames_ = false;
    bool hasNames_ = false;
    ParserArguments prepared_;
};

} // namespace

ParserArguments parserArguments(const CLI::App& app, const std::vector<std::string>& words) {
    return Preparation(app).made(words);
}

std::string wordOfArgument(const std::string& argument) {
    const bool isProtected = argument.starts_with("./") && looksLikeList(argument.substr(2));
    return isProtected ? argument.substr(2) : argument;
}

} // namespace quen::tools
