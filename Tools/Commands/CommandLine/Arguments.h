#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quen::tools {

/// The words of a command line, without the program's name, ready for the parser.
///
/// `--` goes, and the words behind it that begin with `-` become names in the current directory:
/// nothing can take them for options then, neither here nor in the client.
///
/// CLI11 takes `[a,b]` for a list of values wherever several are taken, so a path that looks like
/// one would be torn apart. It becomes `./[a,b]`, which is the same path. What follows an option
/// that has a value is that value, and stays.
std::vector<std::string> parserArguments(const CLI::App& app,
                                         const std::vector<std::string>& words);

} // namespace quen::tools
