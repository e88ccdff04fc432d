#pragma once

#include "Tests/System/Sandbox.h"

#include <chrono>
#include <future>

namespace quen::test {

/// A program that runs beside the test, until it ends by itself or `end` is called, the destructor
/// at the latest. It ends with the test's process, however that ends.
class RunningProgram {
public:
    /// The words are looked up on PATH, in the sandbox's environment.
    RunningProgram(const Sandbox& sandbox, const Sandbox::Words& words);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    bool endsWithin(std::chrono::milliseconds time) const;
    /// Ends it with everything that it started in its group. What it wrote, once.
    std::string end();

private:
    std::stop_source stop_;
    std::future<ProcessOutcome> outcome_;
};

} // namespace quen::test
