#pragma once

#include "Benchmarks/Runs/Timing.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::benchmarks {

/// What the client costs in any host, whatever that makes of the output: the floors below which no
/// operation can come.

/// Runs the client as an operation does, with the output kept and not looked at.
void runAndKeep(const std::vector<std::string>& arguments);

/// The same; meanwhile every piece of the output goes through a parser of expat without handlers.
void runAndCheck(const std::vector<std::string>& arguments);

/// What `work` takes while a thread of this process is busy with something else: a ratio of wall
/// times above 1 is what the processors take from each other. The processor time is of both.
Cost costBesideNeighbour(const std::function<void()>& work);

} // namespace quen::benchmarks
