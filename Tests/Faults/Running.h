#pragma once

#include "Foundation/OperationQueue.h"
#include "Host/RunContext.h"
#include "Tests/Faults/OperationKinds.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace quen::test {

/// An operation of a kind, before, during or after its run.
struct KindRun {
    const OperationKind* kind;
    QuenSourceControlOperationPtr operation;
};

/// A new operation of each kind, on `width` threads at once. Going while the queue lives.
struct RunsOfAllKinds {
    std::vector<KindRun> runs;
    OperationQueuePtr queue;
};
RunsOfAllKinds startAll(const std::vector<OperationKind>& kinds, std::size_t width);
/// The same, to their end.
std::vector<KindRun> runAll(const std::vector<OperationKind>& kinds, std::size_t width);

/// How many things were tried and how many went as they should: told on standard output, and in the
/// test's properties.
class Tally {
public:
    explicit Tally(std::string name) : name_(std::move(name)) {}
    Tally(const Tally&) = delete;
    Tally& operator=(const Tally&) = delete;
    ~Tally();

    /// What went wrong, in words; empty where nothing did. A failure of the test as well.
    void count(const std::string& what, const std::string& wrong);
    /// A group of them is over, all within its time.
    void countGroup() { ++groups_; }

private:
    std::string name_;
    int groups_ = 0;
    int tried_ = 0;
    int passed_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// The error in one line: domain, code, description, suggestion and causes.
std::string lineOf(const Error& error);

} // namespace quen::test
