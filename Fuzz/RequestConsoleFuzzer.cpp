#include "Classes/SVNController.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Host/RunContext.h"
#include "Tools/Console/RequestConsole.h"
#include "Tools/Console/RunRecorder.h"

#include <memory>
#include <string>
#include <vector>

namespace quen::fuzz {

using namespace tools;

namespace {

/// The provider is linked, not loaded. Without a replay no client can be started, and temporary
/// files have no place.
RequestConsole makeConsole() {
    RunContext::setProcessDefault(
        RunContext().withToolsDirectory("/tools").withTemporaryDirectory("/nowhere"));
    return {std::make_shared<SVNController>(),
            std::make_shared<PlaybackRunner>(std::vector<ToolRun>()),
            {}};
}

std::vector<std::string> membersOf(const OrderedJson& json) {
    std::vector<std::string> members;
    for (const auto& [name, value] : json.items()) {
        members.push_back(name);
    }
    return members;
}

} // namespace

void run(FuzzInput input) {
    static RequestConsole console = makeConsole();
    static const std::vector<std::string> served{"authenticationRequired",
                                                 "valid",
                                                 "validationError",
                                                 "operation",
                                                 "launchPath",
                                                 "arguments",
                                                 "files",
                                                 "runs",
                                                 "result",
                                                 "error",
                                                 "dataReleased",
                                                 "assertions",
                                                 "log"};
    static const std::vector<std::string> refused{"requestError"};

    const RequestConsole::Answer answer = console.serve(input.rest());
    const auto members = membersOf(answer.json);
    require(members == refused || (members == served && answer.inputError.empty()),
            "an answer of other members");
    require(nlohmann::json::accept(answer.json.dump()), "the answer is not JSON");
}

} // namespace quen::fuzz
