#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quen::tools {

/// The words of a command line, without the program's name, ready for the parser.
struct ParserArguments {
    std::vector<std::string> words;
    /// A word such as `-2` that the command has no use for; the parser would take it for an
    /// argument. Empty for none.
    std::string unknownOption;
};

/// `--` goes, and the words after it that begin with `-` become names in the current directory:
/// nothing can take them for options then, neither here nor in the client.
///
/// The word after an option that takes a value is its value, whatever it looks like: `-c -444`
/// becomes `--change=-444`. `-2` is short for `--limit=2` where there is such an option.
///
/// CLI11 takes `[a,b]` for a list of values wherever several are taken, so a path that looks like
/// one would be torn apart. It becomes `./[a,b]`, which is the same path, until the parser has
/// passed it on.
ParserArguments parserArguments(const CLI::App& app, const std::vector<std::string>& words);

/// An argument behind the parser, as it was typed where it looks like a list.
std::string wordOfArgument(const std::string& argument);

} // namespace quen::tools
