#pragma once

#include "Foundation/Data.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen::test {

/// A file of Tests/Data, by its path in there. Throws where it cannot be read, which fails the
/// test and says why.
std::string testData(std::string_view path);

DataPtr dataOf(std::string_view bytes);

/// Every beginning of a report that is not the whole of it, the empty one included. White space at
/// the report's end counts for nothing, for without it the report is whole all the same. The views
/// live as long as the report's text.
std::vector<std::string_view> malformedReports(std::string_view report);

} // namespace quen::test
