#pragma once

#include <string>

namespace quen::tools {

/// The person's editor, a shell's command line: SVN_EDITOR, VISUAL or EDITOR, the first that is
/// set; empty where none is.
std::string editorCommand();

/// Lets the person edit a file, and waits until the editor has ended. The interrupt key is the
/// editor's meanwhile. False, with what is wrong in `problem`, when the editor cannot be started or
/// does not end well.
bool editFile(const std::string& editor, const std::string& path, std::string& problem);

} // namespace quen::tools
