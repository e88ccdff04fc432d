#include "Tools/Provider/Provider.h"

#include "Host/Embedding/InstalledModule.h"
#include "Host/PlugInLoader.h"

#include <cstdlib>

namespace quen::tools {

std::string defaultPlugInPath() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    if (const char* const variable = std::getenv("QUEN_PLUG_IN")) {
        return variable;
    }
    return installedModule().str();
}

QuenSourceControlProtocolPtr loadProviderOrExplain(const std::string& path, std::string& problem) {
    Error error;
    auto provider = loadProvider(path.empty() ? defaultPlugInPath() : path, &error);
    problem = error.localizedDescription().str();
    return provider;
}

} // namespace quen::tools
