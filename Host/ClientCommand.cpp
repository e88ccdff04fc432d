#include "Host/ClientCommand.h"

#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"

#include <utility>

namespace quen {

std::shared_ptr<ClientCommand> ClientCommand::make(const std::vector<std::string>& words,
                                                   const std::vector<std::string>& paths,
                                                   std::int32_t type) {
    StringArray arguments(words.begin(), words.end());
    StringArray files;
    for (const std::string& path : paths) {
        files.emplace_back(path);
        arguments.push_back(closedClientPath(path));
    }
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(type, nullptr, std::move(files), Dictionary());
    auto operation = std::make_shared<ClientCommand>();
    operation->initWithRequest(std::move(request));
    operation->setLaunchPath(
        appendingPathComponent(RunContext::current().toolsDirectory().view(), "svn"));
    operation->setArguments(std::move(arguments));
    return operation;
}

} // namespace quen
