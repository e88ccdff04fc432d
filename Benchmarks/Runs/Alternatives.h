#pragma once

#include "Benchmarks/Figures/Figure.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::benchmarks {

/// A question to the client, in the words of each who is to ask it.
struct Question {
    /// `status`, `log` or `blame`.
    std::string kind;
    /// The working copy for a status, a URL for the others.
    std::string place;
    /// The client's own, as the operation has them.
    std::vector<std::string> arguments;
    std::size_t records = 0;
};

/// An operation's time on the clock over that of what people would use instead: Python with its
/// subprocess and ElementTree, Node with xml2js, the client's library through its Python binding.
/// One after the other in each turn. What has not been installed is left out, and a row says so.
///
/// `run` runs the operation and answers its seconds, `runClientAlone` the bare client. Where that
/// alone takes more of an alternative's time than the operation may, the row has no bound.
Figures measureAlternatives(const Question& question, const std::function<double()>& run,
                            const std::function<double()>& runClientAlone, std::size_t turns);

} // namespace quen::benchmarks
