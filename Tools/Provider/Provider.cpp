#include "Tools/Provider/Provider.h"

#include "Host/PlugInLoader.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace quen::tools {

std::string defaultPlugInPath() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    if (const char* const variable = std::getenv("QUEN_PLUG_IN")) {
        return variable;
    }
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / QUEN_MODULE_PATH).string();
}

QuenSourceControlProtocolPtr loadProviderOrExplain(const std::string& path, std::string& problem) {
    Error error;
    auto provider = loadProvider(path.empty() ? defaultPlugInPath() : path, &error);
    problem = error.localizedDescription().str();
    return provider;
}

} // namespace quen::tools
