#pragma once

#include <istream>
#include <string>

namespace quen::tools {

/// The person's editor, a shell's command line: SVN_EDITOR, `editor-cmd` in the client's settings,
/// VISUAL or EDITOR, the first that is set; empty where none is. That is the client's order.
std::string editorCommand();

/// The value of `editor-cmd` in the section `helpers` of the client's settings; empty where they do
/// not say.
std::string editorInSettings(std::istream& settings);

/// Lets the person edit a file, and waits until the editor has ended. The interrupt key is the
/// editor's meanwhile. False, with what is wrong in `problem`, when the editor cannot be started or
/// does not end well.
bool editFile(const std::string& editor, const std::string& path, std::string& problem);

} // namespace quen::tools
