#pragma once

#include "Foundation/String.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

namespace quen {

/// The name of an operation's class, without namespaces: `SVNStatusOperation`.
String classNameOf(const QuenSourceControlOperation& operation);

} // namespace quen
