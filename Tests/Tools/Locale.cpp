#include <cstdlib>

namespace {

/// The texts that these tests expect are those of a locale of UTF-8, whatever the machine has.
const int isSet = setenv("LC_ALL", "C.UTF-8", 1); // NOLINT(concurrency-mt-unsafe)

} // namespace
