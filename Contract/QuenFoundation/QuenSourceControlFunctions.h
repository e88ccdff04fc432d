#pragma once

#include "Foundation/Data.h"
#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Foundation/Value.h"
#include "MarlFoundation/MarlFilePath.h"

namespace quen {

/// A tool's output as text; nil for no data and for data that is not text. Which encodings are
/// understood is the host's own matter. From any thread.
QUEN_EXPORT String quensc_stringFromData(const DataPtr& data);

/// A path for a new temporary file whose name is based on the last component of `fileName`; nothing
/// exists there yet. The host cleans up when the last holder of the path, or of the path object
/// made from its text, lets go. Null when no temporary place can be made; `error`, where given, is
/// then set to one that says which directory could not be used and why. From any thread.
QUEN_EXPORT MarlFilePathPtr
QuenSourceControl_filePathForTmpFileBasedOnFileName(const String& fileName, Error* error = nullptr);

} // namespace quen
