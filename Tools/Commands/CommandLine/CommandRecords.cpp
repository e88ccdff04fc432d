#include "Tools/Commands/CommandLine/CommandRecords.h"

#include "Tools/Console/JsonOutput.h"

namespace quen::tools {

namespace {

Dictionary optionRecord(const OptionText& option) {
    return {{"shortName", textOrNull(option.shortName)},
            {"longName", textOrNull(option.longName)},
            {"alias", textOrNull(option.alias)},
            {"value", textOrNull(option.value)},
            {"help", String(option.help)},
            {"isGeneral", option.isGeneral}};
}

Dictionary argumentRecord(const ArgumentText& argument) {
    return {{"name", String(argument.name)},
            {"help", String(argument.help)},
            {"isRequired", argument.isRequired},
            {"isRepeated", argument.isRepeated}};
}

} // namespace

Dictionary commandRecord(const CommandText& command) {
    Array aliases = Array::empty();
    for (const std::string& alias : command.aliases) {
        aliases.append(String(alias));
    }
    Array options = Array::empty();
    for (const OptionText& option : command.options) {
        options.append(optionRecord(option));
    }
    Array arguments = Array::empty();
    for (const ArgumentText& argument : command.arguments) {
        arguments.append(argumentRecord(argument));
    }
    Array commands = Array::empty();
    for (const CommandText& each : command.commands) {
        if (!each.isHidden) {
            commands.append(commandRecord(each));
        }
    }
    return {{"name", String(command.name)},
            {"help", String(command.help)},
            {"details", textOrNull(command.details)},
            {"group", textOrNull(command.group)},
            {"usage", String(command.usage())},
            {"aliases", aliases},
            {"options", options},
            {"arguments", arguments},
            {"commands", commands}};
}

} // namespace quen::tools
