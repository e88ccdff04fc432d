#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// What the client's settings say about where it looks for passwords: the value of
/// `password-stores` in the section `auth`; nothing where they leave that to the client.
std::optional<std::string> passwordStoresOf(std::string_view settings);

/// A person's settings with the agent among the places where the client looks for passwords.
/// Nothing where it is among them as they are. `common` are the machine's, which count where the
/// person's say nothing.
std::optional<std::string> settingsWithAgent(std::string_view settings, std::string_view common);

} // namespace quen
