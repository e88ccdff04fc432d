#include "Host/ClientCommand.h"

#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"

#include <utility>

namespace quen {

namespace {

/// No provider's, and none that counts as a write.
constexpr std::int32_t queryType = -1;

std::shared_ptr<ClientCommand> makeRun(std::int32_t type, StringArray files,
                                       StringArray arguments) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(type, nullptr, std::move(files), Dictionary());
    auto run = std::make_shared<ClientCommand>();
    run->initWithRequest(std::move(request));
    run->setLaunchPath(
        appendingPathComponent(RunContext::current().toolsDirectory().view(), "svn"));
    run->setArguments(std::move(arguments));
    return run;
}

} // namespace

std::shared_ptr<ClientCommand> ClientCommand::make(const std::vector<std::string>& words,
                                                   const std::vector<std::string>& paths,
                                                   std::int32_t type) {
    StringArray arguments(words.begin(), words.end());
    for (const std::string& path : paths) {
        arguments.push_back(closedClientPath(path));
    }
    return makeRun(type, StringArray(paths.begin(), paths.end()), std::move(arguments));
}

std::shared_ptr<ClientCommand> ClientCommand::makeQuery(StringArray arguments) {
    // Whoever watches the output of a provider's operation would take this for more of it.
    const RunContext context = RunContext::current().withOutputWatcher(nullptr);
    const RunContext::Scope scope(context);
    return makeRun(queryType, StringArray(), std::move(arguments));
}

void ClientCommand::parseData() {
    if (data() != nullptr) {
        output_ = data();
    }
}

void runHere(QuenSourceControlTaskOperation& query) {
    query.run();
}

} // namespace quen
