#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// Where a command stands in the list of all commands, and what else it may be called.
struct CommandPlace {
    std::string group;
    /// The names that Subversion's own client has for it too.
    std::vector<std::string> aliases;
};

/// Of a command by its name, never an alias. One that is not in the table stands under the last
/// heading.
CommandPlace placeOf(std::string_view name);

/// The command that goes by that name as well; the word itself where none does.
std::string_view commandNamed(std::string_view word);

/// The headings, in their order.
const std::vector<std::string>& commandGroups();

} // namespace quen::tools
