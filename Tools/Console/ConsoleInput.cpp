#include "Tools/Console/ConsoleInput.h"

#include "Tools/Console/Base64.h"
#include "Tools/Console/RequestDecoder.h"

#include <climits>
#include <memory>
#include <string>

namespace quen::tools {

namespace {

nlohmann::json parse(std::string_view text) {
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw InputError("not JSON: " + std::string(error.what()));
    }
}

std::string decodeBase64(const JsonInput& member) {
    const auto bytes = bytesFromBase64(member.string());
    if (!bytes) {
        member.fail("expected base64");
    }
    return *bytes;
}

/// What a run wrote to a stream: a text, or base64 under the other name, or nothing.
DataPtr decodeStream(const JsonInput& run, std::string_view name) {
    const std::string base64Name = std::string(name) + "Base64";
    if (run.has(name) && run.has(base64Name)) {
        run.member(base64Name).fail("cannot stand beside \"" + std::string(name) + "\"");
    }
    if (run.has(base64Name)) {
        return std::make_shared<Data>(decodeBase64(run.member(base64Name)));
    }
    return std::make_shared<Data>(run.has(name) ? run.member(name).string() : std::string());
}

ToolRun decodeRun(const JsonInput& input) {
    input.requireObject({"stdout", "stderr", "exitStatus", "stdoutBase64", "stderrBase64"});
    ToolRun run;
    run.output = decodeStream(input, "stdout");
    run.errors = decodeStream(input, "stderr");
    run.exitStatus = input.has("exitStatus")
                         ? static_cast<int>(input.member("exitStatus").integer(INT_MIN, INT_MAX))
                         : 0;
    return run;
}

} // namespace

ConsoleInput decodeConsoleInput(std::string_view text) {
    const nlohmann::json document = parse(text);
    return decodeConsoleInput(JsonInput(document));
}

ConsoleInput decodeConsoleInput(const JsonInput& root) {
    root.requireObject({"request", "dryRun", "logLevel", "replay"});
    ConsoleInput input;
    input.request = decodeRequest(root.member("request"));
    if (root.has("dryRun")) {
        input.dryRun = root.member("dryRun").boolean();
    }
    if (root.has("logLevel")) {
        input.logLevel = static_cast<std::uint32_t>(root.member("logLevel").integer(0, UINT32_MAX));
    }
    if (root.has("replay")) {
        input.replay.emplace();
        for (const JsonInput& run : root.member("replay").array()) {
            input.replay->push_back(decodeRun(run));
        }
    }
    return input;
}

} // namespace quen::tools
