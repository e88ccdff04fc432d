#pragma once

#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

namespace quen {

/// Why a host must not send a request, though a provider would serve it; nil for any other. One
/// that removes "nothing" below the folder of branches removes the folder, with every branch: its
/// destination is empty, is made of separators and the names `.` and `..`, or is a peg revision
/// alone.
///
/// A ClientRunner starts no client for such a request. From any thread.
Error refusalOfRequest(const QuenSourceControlRequest& request);

} // namespace quen
