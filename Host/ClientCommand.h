#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// A run of the client that no request of the provider stands for. An operation like any other: it
/// can be queued, cancelled and limited, and leaves `error`.
class QUEN_EXPORT ClientCommand : public QuenSourceControlTaskOperation {
public:
    /// The client with these words and paths behind it. Never null. The names of `paths`, which
    /// must be absolute or URLs, are closed as by withPegClosed. `type` is the request type that
    /// the run is most like: what an interrupted run may leave behind follows from it; -1 for one
    /// that only reads.
    static std::shared_ptr<ClientCommand> make(const std::vector<std::string>& words,
                                               const std::vector<std::string>& paths,
                                               std::int32_t type = -1);

    /// A run for the host's own sake, that changes nothing: what plans are made from. The arguments
    /// are taken as they are, the command first; paths must be closed. Whoever watches the output
    /// of the current context does not see this one's. Never null.
    static std::shared_ptr<ClientCommand> makeQuery(StringArray arguments);

    /// Everything that the client wrote; never null, whole only where there is no `error`.
    const DataPtr& output() const noexcept { return output_; }

    void parseData() override;

private:
    DataPtr output_ = std::make_shared<const Data>(std::string_view());
};

/// Has a query run, and returns when it has ended: how a host keeps an eye on the runs that plans
/// make (in a queue, with a limit, to be cancelled).
using QueryRunner = std::function<void(QuenSourceControlTaskOperation& query)>;

/// On the calling thread.
QUEN_EXPORT void runHere(QuenSourceControlTaskOperation& query);

} // namespace quen
