#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>
#include <memory>

namespace quen {

/// Whether requests of that type change a working copy, so that their client, once killed, may
/// leave it locked. True also for a type that may do its work in the repository instead.
QUEN_EXPORT bool writesWorkingCopy(std::int32_t requestType) noexcept;

/// Whether an operation, after its run, may have left its working copy locked: it writes, and its
/// client was ended before its own end.
QUEN_EXPORT bool mayHaveLeftLock(const QuenSourceControlOperation& operation);

/// The top directory of the working copy that a path lies in; nil where it lies in none.
QUEN_EXPORT String topOfWorkingCopy(const String& path);

/// `svn cleanup` of the whole working copy that a path lies in: takes away the locks that a killed
/// client has left, and finishes or undoes what it had begun. An operation like any other: it can
/// be queued, cancelled and limited, and leaves `error`.
///
/// For a host to offer after a `TaskFailure::locked`, or where `mayHaveLeftLock`; only a person can
/// know that no other client is at work there.
class QUEN_EXPORT WorkingCopyCleanup : public QuenSourceControlTaskOperation {
public:
    /// Never null. A path that lies in no working copy is for the client to complain about.
    static std::shared_ptr<WorkingCopyCleanup> make(const String& path);
};

} // namespace quen
