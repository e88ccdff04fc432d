#pragma once

#include "Benchmarks/Figures/Figure.h"

#include <cstddef>
#include <string>

namespace quen::benchmarks {

/// How large the data is that everything is measured on.
struct Sizes {
    std::size_t files = 60000;
    std::size_t revisions = 60000;
    std::size_t lines = 100000;
    std::size_t reportMegabytes = 100;
    std::size_t largeHostMegabytes = 4096;
    std::size_t pairs = 9;

    /// For a look at whether everything works.
    static Sizes small() { return {2000, 2000, 5000, 5, 512, 3}; }
};

/// Each measures what its name says, in turn and in one run, and prints its rows as they come.
Figures measureStatus(const Sizes& sizes);
Figures measureLog(const Sizes& sizes);
Figures measureBlame(const Sizes& sizes);
Figures measureInfo(const Sizes& sizes);
Figures measureMemory(const Sizes& sizes);
Figures measureStart(const Sizes& sizes);
Figures measureConsole(const Sizes& sizes);
Figures measureConcurrency(const Sizes& sizes);

/// The other ends of `measureMemory` and `measureStart`: this program once more, as a host that
/// runs one operation on a prepared report, or starts a client from a memory of a given size.
int hostOneReport(const std::string& kind);
int hostOneStream(const std::string& kind);
int hostStarts(std::size_t megabytes);

} // namespace quen::benchmarks
