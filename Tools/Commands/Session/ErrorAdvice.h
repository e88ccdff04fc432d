#pragma once

#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <string>
#include <vector>

namespace quen::tools {

/// What a person is told of an error, a line each: the reason, with paths and URLs as they were
/// typed, and then one thing to do where there is one. `request` is the one that failed; null where
/// there was none.
std::vector<std::string> linesForPerson(const Error& error,
                                        const QuenSourceControlRequest* request);
/// Likewise; `advice` is set to the one thing to do, the empty text where there is none.
std::vector<std::string> linesForPerson(const Error& error, const QuenSourceControlRequest* request,
                                        std::string& advice);

} // namespace quen::tools
