#include "Host/WorkingCopyCleanup.h"
#include "Tools/Console/RequestConsole.h"
#include "Tools/Server/Methods/RequestTypesJson.h"
#include "Tools/Server/Methods/Services.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <memory>
#include <utility>

namespace quen::tools::server {

namespace {

struct PerformParams {
    /// Shared, because a method's params may be copied and a request must not.
    std::shared_ptr<ConsoleInput> input;
};

PerformParams decodePerform(const JsonInput& params) {
    return {std::make_shared<ConsoleInput>(decodeConsoleInput(params))};
}

bool isPath(const std::string& text) {
    return text.starts_with('/');
}

/// The working copy that the request changes; empty where it changes none, or none that is told.
std::string changedBy(const ConsoleInput& input) {
    const QuenSourceControlRequest& request = *input.request;
    if (!writesWorkingCopy(request.type()) || input.dryRun.value_or(false) || input.replay) {
        return {};
    }
    const std::string destination = request.destination().str();
    if (request.type() == RequestTypeCheckout) {
        return isPath(destination) ? destination : std::string();
    }
    for (const String& file : request.files().value_or(StringArray())) {
        if (isPath(file.str())) {
            return rootAbove(file.str());
        }
    }
    if (isPath(destination)) {
        return rootAbove(destination);
    }
    const auto tree = request.sourceTree();
    const std::string location = tree == nullptr ? std::string() : tree->location().str();
    return isPath(location) ? rootAbove(location) : std::string();
}

OrderedJson perform(const Services& services, const Call& call, const PerformParams& params) {
    const RunContext context = services.runs.context();
    const RunContext::Scope scope(context);
    RequestConsole console(services.runs.provider(), context.toolRunner(), {});
    RequestConsole::Served served = console.perform(std::move(*params.input), call.stop());
    if (served.operation != nullptr && wasEndedBy(call.stop(), *served.operation)) {
        throw requestCancelled(mayHaveLeftLock(*served.operation));
    }
    served.json["failure"] =
        served.operation == nullptr ? OrderedJson() : failureJson(served.operation->error());
    return std::move(served.json);
}

} // namespace

void addProviderMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<int>(
        "provider/describe",
        [](const JsonInput& params) {
            params.requireObject({});
            return 0;
        },
        [](const Call&, int) { return descriptionJson(); }));
    server.dispatcher().add({"provider/perform", false, [services](const JsonInput& input) {
                                 const PerformParams params = decodePerform(input);
                                 return PreparedCall{changedBy(*params.input),
                                                     [services, params](Call& call) {
                                                         return perform(services, call, params);
                                                     }};
                             }});
}

} // namespace quen::tools::server
