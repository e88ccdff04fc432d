#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <string>

namespace quen::test {

/// `Documentation/requests.md`, made from the table of request types and from what the provider
/// answers to a request of each.
std::string requestPage(QuenSourceControlProtocol& provider);

} // namespace quen::test
