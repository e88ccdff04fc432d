#pragma once

#include "Tools/Console/JsonOutput.h"
#include "Tools/Server/Runs/Runs.h"

#include <nlohmann/json.hpp>

namespace quen::tools::server {

/// An error as the server tells it: `{domain, code, description, suggestion, codes, causes,
/// clientText}`; null for none.
OrderedJson errorJson(const Error& error, const std::string& clientText);

/// What an error means for a host, in one word; null for none.
OrderedJson failureJson(const Error& error);

/// The two at the end of an answer: `error` and `failure`, both null when all is well.
void addOutcome(OrderedJson& answer, const Ran& ran);

} // namespace quen::tools::server
