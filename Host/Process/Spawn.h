#pragma once

#include "Foundation/String.h"

#include <sys/types.h>

namespace quen {

struct ProcessInvocation;

/// The host's descriptors that become the child's 0, 1 and 2. Each is above 2 itself.
struct ChildDescriptors {
    int input = -1;
    int output = -1;
    int errors = -1;
};

struct SpawnResult {
    pid_t pid = -1; // -1 when nothing was started
    int error = 0;
    String reason; // set where the error's own text would not say enough
};

/// Starts the child as `runProcess` describes it. May throw std::bad_alloc; nothing was started
/// then.
SpawnResult spawn(const ProcessInvocation& invocation, const ChildDescriptors& descriptors);

} // namespace quen
