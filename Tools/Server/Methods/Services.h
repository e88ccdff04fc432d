#pragma once

#include "Tools/Server/Runs/ByteCache.h"
#include "Tools/Server/Runs/OutcomeJson.h"
#include "Tools/Server/Runs/Requests.h"
#include "Tools/Server/Runs/Runs.h"
#include "Tools/Server/Server.h"
#include "Tools/Server/WorkingCopies/WorkingCopies.h"

namespace quen::tools::server {

/// What methods work with. Lives as long as they do.
struct Services {
    Dispatcher& dispatcher;
    MessageSink& sink;
    WindowLog& log;
    Runs& runs;
    WorkingCopies& copies;
    /// What never changes: contents, blames and histories of given revisions.
    ByteCache& cache;
};

// Each adds the methods of its family.
void addProviderMethods(Server& server, const Services& services);
void addWorkingCopyMethods(Server& server, const Services& services);
void addTransferMethods(Server& server, const Services& services);
void addPlanMethods(Server& server, const Services& services);
void addChangeMethods(Server& server, const Services& services);
void addLossMethods(Server& server, const Services& services);
void addTreeChangeMethods(Server& server, const Services& services);
void addFileMethods(Server& server, const Services& services);
void addBlameMethod(Server& server, const Services& services);
void addHistoryMethods(Server& server, const Services& services);
void addDifferenceMethods(Server& server, const Services& services);
void addBranchMethods(Server& server, const Services& services);
void addRepositoryMethods(Server& server, const Services& services);
void addAttributeMethods(Server& server, const Services& services);
void addUpkeepMethods(Server& server, const Services& services);

/// What every method's run begins with.
inline RunOptions optionsOf(const Call& call) {
    return {call.stop(), {}, {}};
}

} // namespace quen::tools::server
