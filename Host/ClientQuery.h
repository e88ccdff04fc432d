#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <functional>
#include <memory>
#include <string_view>

namespace quen {

/// A run of the client for the host's own sake, that changes nothing: what plans are made from. An
/// operation like any other: it can be queued, cancelled and limited, and leaves `error`.
class QUEN_EXPORT ClientQuery : public QuenSourceControlTaskOperation {
public:
    /// The client's arguments, the command first. Never null. Paths must be closed (see
    /// `closedClientPath`).
    static std::shared_ptr<ClientQuery> make(StringArray arguments);

    /// Everything that the client wrote; never null after the run, whole only where there is no
    /// `error`.
    const DataPtr& output() const noexcept { return output_; }

    void parseData() override { output_ = data(); }

private:
    DataPtr output_ = std::make_shared<const Data>(std::string_view());
};

/// Has a query run, and returns when it has ended: how a host keeps an eye on the runs that plans
/// make (in a queue, with a limit, to be cancelled).
using QueryRunner = std::function<void(QuenSourceControlTaskOperation& query)>;

/// On the calling thread.
QUEN_EXPORT void runHere(QuenSourceControlTaskOperation& query);

} // namespace quen
