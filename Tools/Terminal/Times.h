#pragma once

#include "Foundation/Date.h"

#include <string>

namespace quen::tools {

/// How long ago a date is, as people say it: `just now`, `5 minutes ago`, `3 days ago`, `2 years
/// ago`. Whole units, rounded down. Clocks differ: a date up to a minute ahead is just now, one
/// beyond is `in the future`.
std::string ageText(Date date, Date now);

/// The date on the clock of this machine: `2024-01-01 10:11:12 +0100`.
std::string localDateText(Date date);

/// The time now.
Date currentDate();

} // namespace quen::tools
