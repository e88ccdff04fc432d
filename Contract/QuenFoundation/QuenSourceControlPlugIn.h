#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <cstdint>

/// How a host finds a provider in a loadable module: the module exports one function of the name
/// and type below, and nothing else.
namespace quen {

/// Grows whenever a declaration of the contract changes. Host and module must agree exactly.
inline constexpr std::uint32_t QuenSourceControlContractVersion = 1;

/// What the entry point answers; lives as long as the module is loaded.
struct QuenSourceControlPlugIn {
    /// The version that the module was built with. Stays the first member in every version; when it
    /// is not the host's own, the host reads nothing else.
    std::uint32_t contractVersion;
    /// The provider's name for people.
    const char* name;
    /// A new provider; never null. The module must stay loaded while the provider or anything that
    /// it made is alive.
    QuenSourceControlProtocolPtr (*makeProvider)();
};

using QuenSourceControlPlugInEntryPoint = const QuenSourceControlPlugIn*();

inline constexpr const char* QuenSourceControlPlugInEntryPointName =
    "quenSourceControlPlugInEntryPoint";

} // namespace quen
