#include "Tools/Commands/Changes/IgnoreListGuard.h"

#include "Foundation/Data.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quen::tools {

namespace {

/// Why the list cannot be written; nil where it can, and for other runs.
String objectionTo(const StringArray& arguments) {
    const auto command = std::find(arguments.begin(), arguments.end(), "propset");
    if (std::distance(command, arguments.end()) < 4) {
        return {};
    }
    const String& list = *(command + 2);
    const String& directory = *(command + 3);
    if (!list.hasPrefix("-")) {
        return {};
    }
    return "the list of ignored names of \"" + directory.str() +
           "\" would begin with -, which the client takes for an option; another name is put in "
           "front with svn propedit svn:ignore";
}

} // namespace

ToolRun IgnoreListGuard::run(const ToolInvocation& invocation, std::stop_token stop) {
    const String objection = objectionTo(invocation.arguments);
    if (objection.isNil()) {
        return runner_->run(invocation, std::move(stop));
    }
    return {.end = RunEnd::couldNotStart,
            .exitStatus = {},
            .signal = {},
            .output = std::make_shared<Data>(),
            .errors = std::make_shared<Data>(),
            .reason = objection};
}

} // namespace quen::tools
