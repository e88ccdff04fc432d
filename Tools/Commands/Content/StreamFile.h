#pragma once

#include "Tools/Commands/Content/FetchFile.h"

namespace quen::tools {

/// How the client wrote a file out.
struct StreamedFile {
    /// The client's run where it failed; null where it did not.
    QuenSourceControlOperationPtr failed;
    /// Something was written.
    bool hasBegun = false;
    /// It failed because there is a directory.
    bool isDirectory = false;
};

/// Writes what the repository holds of a file to standard output, byte for byte, while the client
/// writes it: nothing is kept, and a reader who goes away ends the client. Tells nothing.
StreamedFile streamFile(const SourceTree& source, const FileToFetch& file);

} // namespace quen::tools
