#pragma once

#include "Tools/Commands/Session/Session.h"

#include <functional>

namespace quen::tools {

/// How a sub-command that shows something ends: prints the operation's records, as JSON or by
/// `printForPeople`, then tells its error; the exit status that follows. Where there is an error,
/// what was found all the same is printed.
int showRecords(const Session& session, const Outcome<QuenSourceControlOperationPtr>& operation,
                const std::function<void(const Array& records)>& printForPeople);

} // namespace quen::tools
