#include "Host/Credentials/Person.h"

#include "Host/Credentials/PersonsAgent.h"

#include <algorithm>
#include <cstdlib>

namespace quen {

std::optional<std::string> variableOf(const EnvironmentChanges& environment,
                                      const std::string& name) {
    const auto change = std::find_if(environment.rbegin(), environment.rend(),
                                     [&](const auto& pair) { return pair.first.view() == name; });
    if (change != environment.rend()) {
        return change->second.isNil() ? std::nullopt : std::optional(change->second.str());
    }
    const char* const value = std::getenv(name.c_str()); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

Person Person::of(const EnvironmentChanges& environment) {
    const auto info = variableOf(environment, "GPG_AGENT_INFO");
    const auto home = variableOf(environment, "HOME");
    const auto runtime = variableOf(environment, "XDG_RUNTIME_DIR");
    const auto text = [](const auto& value) { return value ? value->c_str() : nullptr; };
    return {home.value_or(""), socketsOfPersonsAgent(text(info), text(home), text(runtime))};
}

} // namespace quen
