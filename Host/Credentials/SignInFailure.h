#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Host/TaskFailure.h"

#include <string>

namespace quen {

/// Why a run was not let in, found out by asking further than the client's own complaint.
struct SignInFailure {
    TaskFailure failure = TaskFailure::other;
    /// `https://host:443`
    String server = {};
    /// What a person can do, in whole sentences that name the server.
    String nextStep = {};
    /// The client's or the secure shell's own words; nil where the run's errors hold them.
    String clientText = {};
};

/// With the next step for that failure. `user` may be empty.
QUEN_EXPORT SignInFailure signInFailure(TaskFailure failure, const std::string& server,
                                        const std::string& user);

} // namespace quen
