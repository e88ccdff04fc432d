#pragma once

#include "Tools/Console/JsonOutput.h"

#include <nlohmann/json.hpp>

namespace quen::tools::server {

/// What `provider/describe` answers.
OrderedJson descriptionJson();

/// The names of the types that are served.
OrderedJson requestTypeNames();

} // namespace quen::tools::server
