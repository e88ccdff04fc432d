#include "Host/WorkingCopyCleanup.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Host/RunContext.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

namespace quen {

namespace {

/// No provider's, and none that counts as a write: a cleanup that is killed leaves what was there.
constexpr std::int32_t cleanupType = -1;

bool isInterruption(TaskFailure failure) {
    constexpr std::array interruptions{TaskFailure::cancelled, TaskFailure::timedOut,
                                       TaskFailure::idleTimedOut, TaskFailure::lost,
                                       TaskFailure::killed};
    return std::ranges::find(interruptions, failure) != interruptions.end();
}

} // namespace

bool writesWorkingCopy(std::int32_t requestType) noexcept {
    const RequestFacts* const facts = requestFactsOf(requestType);
    return facts != nullptr && facts->writesWorkingCopy;
}

bool mayHaveLeftLock(const QuenSourceControlOperation& operation) {
    return operation.request() != nullptr && writesWorkingCopy(operation.request()->type()) &&
           !operation.wasSkipped() && isInterruption(taskFailureOf(operation.error()));
}

String topOfWorkingCopy(const String& path) {
    std::error_code error;
    auto at = std::filesystem::absolute(path.str(), error).lexically_normal();
    if (!at.has_filename() && at.has_relative_path()) {
        at = at.parent_path(); // a slash at the end
    }
    while (!error && !at.empty()) {
        // An error here says that there is nothing to be seen.
        std::error_code ignored;
        if (std::filesystem::exists(at / ".svn", ignored)) {
            return at.string();
        }
        if (at == at.parent_path()) {
            break;
        }
        at = at.parent_path();
    }
    return {};
}

std::shared_ptr<WorkingCopyCleanup> WorkingCopyCleanup::make(const String& path) {
    const String top = topOfWorkingCopy(path);
    const String target = top.isNil() ? path : top;
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(cleanupType, nullptr, StringArray{target}, Dictionary());
    auto operation = std::make_shared<WorkingCopyCleanup>();
    operation->initWithRequest(std::move(request));
    operation->setLaunchPath(
        appendingPathComponent(RunContext::current().toolsDirectory().view(), "svn"));
    operation->setArguments(StringArray{"cleanup", withPegClosed(target)});
    return operation;
}

} // namespace quen
