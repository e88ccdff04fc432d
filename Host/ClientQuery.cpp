#include "Host/ClientQuery.h"

#include "Foundation/PathComponents.h"
#include "Host/RunContext.h"

#include <utility>

namespace quen {

namespace {

/// No provider's, and none that counts as a write.
constexpr std::int32_t queryType = -1;

} // namespace

std::shared_ptr<ClientQuery> ClientQuery::make(StringArray arguments) {
    // Whoever watches the output of a provider's operation would take this for more of it.
    const RunContext context = RunContext::current().withOutputWatcher(nullptr);
    const RunContext::Scope scope(context);
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(queryType, nullptr, StringArray(), Dictionary());
    auto query = std::make_shared<ClientQuery>();
    query->initWithRequest(std::move(request));
    query->setLaunchPath(appendingPathComponent(context.toolsDirectory().view(), "svn"));
    query->setArguments(std::move(arguments));
    return query;
}

void runHere(QuenSourceControlTaskOperation& query) {
    query.run();
}

} // namespace quen
