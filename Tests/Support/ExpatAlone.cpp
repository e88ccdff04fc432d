#include "Foundation/XMLEngines.h"

#include <cstdlib>

// Lets a suite run once more with every report read by the engine alone. Before main, so that no
// reader is made earlier.

namespace quen::test {
namespace {

const bool isSet = [] {
    const bool isWanted = std::getenv("QUEN_TEST_EXPAT_ALONE") != nullptr;
    if (isWanted) {
        XMLEngines::expatAlone = true;
    }
    return isWanted;
}();

} // namespace
} // namespace quen::test
