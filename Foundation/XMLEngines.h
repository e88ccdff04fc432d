#pragma once

#include <atomic>
#include <cstddef>

namespace quen {

/// What tests and benchmarks of the XML reader set and look at; nothing else touches it. Private to
/// the XML reader.
struct XMLEngines {
    /// Readers that are made from now on give everything to the engine.
    static std::atomic<bool> expatAlone;
    /// Of how many reports the engine has read anything, in this process.
    static std::atomic<std::size_t> expatCount;
};

} // namespace quen
