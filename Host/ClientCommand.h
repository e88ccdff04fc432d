#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quen {

/// A run of the client that no request of the provider stands for: `svn WORDS.. PATHS..`. An
/// operation like any other: it can be queued, cancelled and limited, leaves `error`, and its
/// standard output in `data`.
class ClientCommand : public QuenSourceControlTaskOperation {
public:
    /// Never null. The names of `paths`, which must be absolute or URLs, are closed where they hold
    /// an `@`. `type` is the request type that the run is most like: what an interrupted run may
    /// leave behind follows from it; -1 for one that only reads.
    static std::shared_ptr<ClientCommand> make(const std::vector<std::string>& words,
                                               const std::vector<std::string>& paths,
                                               std::int32_t type = -1);
};

} // namespace quen
