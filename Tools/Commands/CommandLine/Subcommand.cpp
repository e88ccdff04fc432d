#include "Tools/Commands/CommandLine/Subcommand.h"

#include "Tools/Commands/CommandLine/Arguments.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

namespace quen::tools {

Parameter& Parameter::required() {
    option_->required();
    return *this;
}

Parameter& Parameter::checked(WordCheck check, const std::string& kind) {
    option_->check(std::move(check));
    return kind.empty() ? *this : named(kind);
}

Parameter& Parameter::named(const std::string& kind) {
    option_->type_name(kind);
    return *this;
}

Parameter& Parameter::oneOf(const std::vector<std::string>& values) {
    std::string shown;
    for (const std::string& value : values) {
        shown.append(shown.empty() ? "" : "|").append(value);
    }
    return checked(
        [option = option_, values](const std::string& word) -> std::string {
            if (std::find(values.begin(), values.end(), word) != values.end()) {
                return {};
            }
            std::string text =
                "\"" + word + "\" is not a value for " + option->get_name() + ": use ";
            for (const std::string& value : values) {
                text.append(&value == &values.front()  ? ""
                            : &value == &values.back() ? " or "
                                                       : ", ");
                text.append(value);
            }
            return text + ".";
        },
        shown);
}

Parameter& Parameter::general() {
    option_->group(generalOptions);
    return *this;
}

Parameter& Parameter::needs(const Parameter& other) {
    option_->needs(other.option_);
    return *this;
}

Parameter& Parameter::excludes(const Parameter& other) {
    option_->excludes(other.option_);
    return *this;
}

Parameter& Parameter::repeatable() {
    option_->trigger_on_parse();
    return *this;
}

std::string Subcommand::name() const {
    const CLI::App* const parent = app_->get_parent();
    const bool isNested = parent != nullptr && parent->get_parent() != nullptr;
    return (isNested ? parent->get_name() + " " : "") + app_->get_name();
}

Parameter Subcommand::flag(const std::string& names, bool& isGiven, const std::string& help) {
    return Parameter(*app_->add_flag(names, isGiven, help));
}

Parameter Subcommand::option(const std::string& names, std::string& value,
                             const std::string& help) {
    return Parameter(*app_->add_option(names, value, help));
}

Parameter Subcommand::option(const std::string& names, std::optional<std::string>& value,
                             const std::string& help) {
    return Parameter(*app_->add_option(names, value, help));
}

Parameter Subcommand::option(const std::string& names, std::int64_t& value,
                             const std::string& help) {
    return Parameter(*app_->add_option(names, value, help));
}

Parameter Subcommand::option(const std::string& names, std::uint32_t& value,
                             const std::string& help) {
    return Parameter(*app_->add_option(names, value, help));
}

Parameter Subcommand::option(const std::string& names, const std::string& kind, WordCheck read,
                             const std::string& help) {
    const auto take = [read = std::move(read)](const std::string& word) {
        if (const std::string complaint = read(word); !complaint.empty()) {
            throw CLI::ValidationError(complaint, CLI::ExitCodes::ValidationError);
        }
    };
    return Parameter(*app_->add_option_function<std::string>(names, take, help)->type_name(kind));
}

Parameter Subcommand::argument(const std::string& name, std::string& value,
                               const std::string& help) {
    return Parameter(*app_->add_option(name, value, help));
}

Parameter Subcommand::arguments(const std::string& name, std::vector<std::string>& values,
                                const std::string& help) {
    return Parameter(*app_->add_option(name, values, help)->transform(wordOfArgument));
}

void Subcommand::details(const std::string& text) {
    app_->footer(text);
}

void Subcommand::hide() {
    app_->group("");
}

Subcommand Subcommand::subcommand(const std::string& name, const std::string& help) {
    app_->require_subcommand(0, 1);
    CLI::App* const command = app_->add_subcommand(name, help);
    command->get_help_ptr()->group(generalOptions);
    return {*line_, *command};
}

void Subcommand::run(std::function<int()> action) {
    app_->callback([line = line_, app = app_, action = std::move(action)] {
        if (app->get_subcommands().empty()) {
            line->choose(action);
        }
    });
}

void Subcommand::setUsageStatus(int status) {
    line_->setUsageStatus(*app_, status);
}

} // namespace quen::tools
