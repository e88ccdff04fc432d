#pragma once

#include "Foundation/URL.h"
#include "Foundation/Value.h"
#include "MarlFoundation/MarlAssertionFailureHandler.h"

#include <chrono>
#include <ostream>

/// How a failed comparison shows the project's values. Every test includes this, directly or with
/// another header of this directory, so that all agree.
namespace quen {

void PrintTo(const Value& value, std::ostream* out);
void PrintTo(const Array& array, std::ostream* out);
void PrintTo(const Dictionary& dictionary, std::ostream* out);
void PrintTo(const Dictionary::Entry& entry, std::ostream* out);
void PrintTo(const Error& error, std::ostream* out);
void PrintTo(const URL& url, std::ostream* out);
void PrintTo(const MarlAssertionFailure& failure, std::ostream* out);

} // namespace quen
