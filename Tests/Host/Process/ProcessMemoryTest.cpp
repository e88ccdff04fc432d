#include "Tests/Host/Process/ProcessTestSupport.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

// The sanitizers bring an operator new of their own, and keep far more address space than any limit
// could leave them.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QUEN_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QUEN_SANITIZED
#endif
#endif

#ifndef QUEN_SANITIZED

namespace {

/// How many allocations of this thread still succeed.
thread_local int allocationsLeft = std::numeric_limits<int>::max();

} // namespace

// None is inlined: gcc would see a free without its malloc and warn.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (allocationsLeft != std::numeric_limits<int>::max() && allocationsLeft-- <= 0) {
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size); memory != nullptr) {
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace quen::test {
namespace {

class ProcessMemoryTest : public ProcessTest {};

ProcessOutcome runWithAllocations(const ProcessInvocation& invocation, int count) {
    std::stop_source stop;
    allocationsLeft = count;
    ProcessOutcome outcome = runProcess(invocation, stop.get_token());
    allocationsLeft = std::numeric_limits<int>::max();
    return outcome;
}

TEST_F(ProcessMemoryTest, MayEndAtAnyPointOfTheStart) {
    ProcessInvocation invocation = faultChild("say:3", {"an argument"});
    invocation.environment = {{"A_VARIABLE", "with a value that needs memory of its own"}};
    int refused = 0;
    ProcessOutcome outcome = runWithAllocations(invocation, refused);
    while (outcome.end == RunEnd::couldNotStart && refused < 1000) {
        EXPECT_EQ(outcome.error, ENOMEM);
        EXPECT_EQ(outputOf(outcome), "");
        EXPECT_EQ(errorsOf(outcome), "");
        outcome = runWithAllocations(invocation, ++refused);
    }
    EXPECT_EQ(described(outcome), "exited 3");
    EXPECT_EQ(outputOf(outcome), "output\n");
    EXPECT_GT(refused, 3) << "the start needs more memory than that";
}

TEST_F(ProcessMemoryTest, MayBeMissingForTheReasonAsWell) {
    ProcessInvocation invocation = program("/nowhere/svn");
    int count = 0;
    ProcessOutcome outcome = runWithAllocations(invocation, count);
    bool namedWithoutText = false;
    while (outcome.reason.isNil() && count < 1000) {
        EXPECT_TRUE(outcome.error == ENOMEM || outcome.error == ENOENT) << outcome.error;
        namedWithoutText = namedWithoutText || outcome.error == ENOENT;
        outcome = runWithAllocations(invocation, ++count);
    }
    EXPECT_EQ(described(outcome), "could not start: No such file or directory");
    EXPECT_TRUE(namedWithoutText);
}

/// In bytes.
rlim_t addressSpaceInUse() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

TEST_F(ProcessMemoryTest, MayEndWhileOutputArrives) {
    EXPECT_EQ(inForkedHost([]() -> std::string {
                  rlimit limit{0, 0};
                  limit.rlim_cur = limit.rlim_max = addressSpaceInUse() + (rlim_t{24} << 20U);
                  ::setrlimit(RLIMIT_AS, &limit);
                  const ProcessOutcome outcome = run(faultChild("flood:100"));
                  if (outcome.end != RunEnd::outputLost || outcome.error != ENOMEM) {
                      return described(outcome);
                  }
                  const std::size_t kept = outcome.output->size();
                  return kept > 0 && isPattern(outputOf(outcome), kept) ? "" : "nothing was kept";
              }),
              "");
}

} // namespace
} // namespace quen::test

#endif
