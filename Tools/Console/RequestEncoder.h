#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tools/Console/JsonOutput.h"

namespace quen::tools {

/// The JSON object that `decodeRequest` makes an equal request of. Members that would only say what
/// is taken for granted are left out. The list of what a tree contains is not known from outside,
/// and is left out too.
OrderedJson encodeRequest(const QuenSourceControlRequest& request);

/// The same in one line, for whoever only prints it.
std::string requestText(const QuenSourceControlRequest& request);

} // namespace quen::tools
