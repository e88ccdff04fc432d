#include "Tools/Commands/BranchEditCommands.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

namespace quen::tools {

void addTagCommand(CommandLine& line) {
    addTagEdit(line.add("tag", "Create a tag: a copy that keeps a state under a name"));
}

} // namespace quen::tools
