#include "Host/WorkingCopyCleanup.h"
#include "Tools/Console/RequestConsole.h"
#include "Tools/Server/Methods/RequestTypesJson.h"
#include "Tools/Server/Methods/Services.h"

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
    server.dispatcher().add(
        query<PerformParams>("provider/perform", decodePerform,
                             [services](const Call& call, const PerformParams& params) {
                                 return perform(services, call, params);
                             }));
}

} // namespace quen::tools::server
