#pragma once

#include "Foundation/String.h"
#include "Host/RunSettings.h"

#include <optional>
#include <string>
#include <vector>

namespace quen {

/// Whose client it is: what the run's environment says about where their things lie.
struct Person {
    /// Empty where there is none.
    std::string home;
    /// Sockets of their own agent, where one may listen.
    std::vector<std::string> agents;

    std::string configDirectory() const { return home + "/.subversion"; }

    static Person of(const EnvironmentChanges& environment);
};

/// A variable as a child with these changes has it; nothing where it is not set.
std::optional<std::string> variableOf(const EnvironmentChanges& environment,
                                      const std::string& name);

} // namespace quen
