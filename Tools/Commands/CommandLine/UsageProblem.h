#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace quen::tools {

/// What is wrong with a command line, as a sentence for a person. `command` is the one that was
/// given.
std::string usageProblem(const CLI::ParseError& error, const CLI::App& command);

/// `Unknown option: --foo. Did you mean --force?`
std::string unknownOption(std::string_view word, const CLI::App& command);

} // namespace quen::tools
