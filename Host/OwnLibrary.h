#pragma once

#include <filesystem>
#include <string>

namespace quen {

/// The file that the host library's code was loaded from: the shared library, a plug-in that it is
/// linked into, or the program. Absolute; empty where the system does not say.
struct OwnLibrary {
    std::string path;
    /// The code is the program's own, whose names every module sees.
    bool isProgram = false;
};

OwnLibrary ownLibrary();

/// Where the project's libraries are, in the build tree and where installed alike.
std::filesystem::path directoryOfLibraries();

} // namespace quen
