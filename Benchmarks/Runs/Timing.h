#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quen::benchmarks {

/// What a piece of work took: time on the clock, and the processors' time of this process and of
/// the children that it waited for.
struct Cost {
    double wall = 0;
    double cpu = 0;
};

Cost costOf(const std::function<void()>& work);

/// Runs a program with its output thrown away, as the bare client that everything is compared with.
/// Throws where it fails.
void runBare(const std::string& program, const std::vector<std::string>& arguments);

/// Runs a program and hands what it writes to `reader`, piece by piece as it comes: the usual way,
/// which wakes for each piece. Throws where the program fails, and what `reader` throws.
void runIntoPipe(const std::string& program, const std::vector<std::string>& arguments,
                 const std::string& inputFile, const std::function<void(std::string_view)>& reader);

/// Runs a program and answers what it wrote. Throws where it fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const std::string& inputFile = "/dev/null");

/// The client's own program, `svn`, or another of its family.
std::string toolPath(const std::string& tool = "svn");

} // namespace quen::benchmarks
