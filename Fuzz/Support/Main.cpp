#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"

#include <cstdlib>

namespace quen::fuzz {

void reportFinding(std::string_view what) {
    std::cerr << "\nFINDING: " << what << std::endl;
    std::abort();
}

} // namespace quen::fuzz

/// What the engine calls, with every input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quen::fuzz::run(quen::fuzz::FuzzInput({reinterpret_cast<const char*>(data), size}));
    return 0;
}
